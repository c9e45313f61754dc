"""Curves between their points, charts, and what notebooks show."""

from __future__ import annotations

import math
import xml.etree.ElementTree as xml
from html.parser import HTMLParser
from typing import Any

import numpy as np
import pandas as pd
import pytest

import lumo

pyplot = pytest.importorskip("matplotlib.pyplot")
STRENGTH = "Yield strength against temperature"


@pytest.fixture
def curve(materials: lumo.Table) -> lumo.Curve:
    curves = materials["AW-6061-T6"][STRENGTH]
    assert isinstance(curves, lumo.Curves)
    return curves[0]


def test_a_curve_is_read_between_its_points(curve: lumo.Curve) -> None:
    assert (curve.x_name, curve.x_unit, curve.y_unit) == ("Temperature", "degC", "MPa")
    assert curve.parameters == {"Condition": "T6"} and curve.title == "Condition T6"
    assert curve.at(100) == 262
    assert curve.at(62) == pytest.approx((276 + 262) / 2)
    found = curve.at([24, 62, 1000])
    assert found[:2] == pytest.approx([276, 269]) and math.isnan(found[2])
    assert curve.in_units("GPa").at(100) == pytest.approx(0.262)
    assert curve.to_pandas().loc[100.0] == 262
    x = curve.x
    assert not x.flags.writeable
    expected = x.copy()
    del curve
    np.testing.assert_array_equal(x, expected)  # the view outlives the curve


def test_a_curve_of_ranges_has_a_middle_and_a_band(materials: lumo.Table) -> None:
    curves = materials["42CrMo4"][STRENGTH]
    assert isinstance(curves, lumo.Curves)
    curve = next(one for one in curves if len(one.y_high))
    for place, middle in zip(curve.x, curve.middle):
        assert curve.at(float(place)) == pytest.approx(middle)
    axes = curve.plot()
    assert len(axes.collections) == 1 and axes.get_xlabel() == "Temperature (degC)"
    pyplot.close("all")


def test_a_property_chart_has_an_ellipse_for_each_material(materials: lumo.Table) -> None:
    frame = materials.to_pandas(["Density", "Young's modulus"])
    both = frame.dropna(subset=["Density.low", "Young's modulus.low"])
    families = {folder.split("/")[0] for folder in both["record.folder"]}
    axes = lumo.ashby(frame, "Density", "Young's modulus", index=lumo.Index(1 / 2, "stiff beam"))
    assert axes.get_xscale() == axes.get_yscale() == "log"
    assert axes.get_xlabel() == "Density (kg/m^3)"
    assert len(axes.patches) == len(both)
    corners = axes.patches[0].get_xy()
    names = [text.get_text() for text in axes.get_legend().get_texts()]
    assert set(names) == families | {"stiff beam"}
    widths = {}  # an ellipse goes from end to end of its ranges
    for patch in axes.patches:
        corners = patch.get_xy()
        widths[round(corners[:, 1].max(), 6)] = corners[:, 0]
    wood = both.loc[both["Density.high"] / both["Density.low"] > 1.5].iloc[0]
    places = widths[round(wood["Young's modulus.high"], 6)]
    assert places.min() == pytest.approx(wood["Density.low"], rel=1e-2)
    assert places.max() == pytest.approx(wood["Density.high"], rel=1e-2)
    for line in (line for line in axes.lines if len(line.get_xdata())):
        merit = np.sqrt(line.get_ydata()) / line.get_xdata()
        np.testing.assert_allclose(merit, merit[0])
    pyplot.close("all")


def test_charts_take_families_by_column_or_row_and_refuse_what_is_not_there() -> None:
    frame = pd.DataFrame(
        {"a": [1.0, 2.0, np.nan, 0.0], "b.low": [1.0, np.nan, 1.0, 1.0],
         "b.high": [2.0, 3.0, 2.0, 2.0], "kind": ["x", "y", "x", "y"]}
    )  # fmt: skip
    assert len(lumo.ashby(frame, "a", "b", by="kind").patches) == 2
    assert len(lumo.ashby(frame, "a", "b", by=None).patches) == 2
    assert len(lumo.ashby(frame, "a", "b", by=["p", "q", "r", "s"], index=1).patches) == 2
    for wrong in ({"x": "c"}, {"by": "c"}, {"by": ["p"]}, {"x": "kind"}, {"by": "folder"},
                  {"index": 0}, {"index": math.nan}):  # fmt: skip
        arguments: dict[str, Any] = {"x": "a", "y": "b", "by": None, **wrong}
        with pytest.raises(lumo.Error):
            lumo.ashby(frame, **arguments)
    with pytest.raises(lumo.Error, match="above zero"):
        lumo.ashby(frame[3:], "a", "b", by=None)
    pyplot.close("all")


class _Balanced(HTMLParser):
    """Fails for an element that is not closed in its turn."""

    def __init__(self, text: str) -> None:
        super().__init__()
        self.open: list[str] = []
        self.feed(text)
        assert not self.open

    def handle_starttag(self, tag: str, attrs: list[tuple[str, str | None]]) -> None:
        if tag not in ("br", "path", "polyline"):
            self.open.append(tag)

    def handle_endtag(self, tag: str) -> None:
        if tag not in ("path", "polyline"):
            assert self.open.pop() == tag


def test_notebooks_show_servers_tables_cards_and_curves(
    server: lumo.Sandbox, materials: lumo.Table, curve: lumo.Curve
) -> None:
    card = materials["AW-6061-T6"]._repr_html_()
    assert "2690..2730 kg/m^3" in card and card.count("<svg") > 2
    columns = materials.to_columns(["Density"])._repr_html_()
    assert "Density.low [kg/m^3]" in columns and "285 rows" in columns
    assert "Young&#x27;s modulus" in materials._repr_html_()
    for html in (card, columns, materials._repr_html_(), server._repr_html_()):
        _Balanced(html)
    drawing = xml.fromstring(curve._repr_html_())
    line = next(one for one in drawing if one.tag.endswith("polyline"))
    assert len(line.attrib["points"].split()) == len(curve)


def test_names_are_completed(server: lumo.Sandbox, materials: lumo.Table) -> None:
    assert server._ipython_key_completions_() == ["ENG_MATERIALS", "ELEMENTS"]
    assert "Materials" in server["ENG_MATERIALS"]._ipython_key_completions_()
    assert "AW-6061-T6" in materials._ipython_key_completions_()
    assert "Density" in materials["AW-6061-T6"]._ipython_key_completions_()
