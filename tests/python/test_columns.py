"""Columns: numpy, pandas and Arrow see the same memory and the same values."""

from __future__ import annotations

import gc
from collections.abc import Callable
from typing import Any

import numpy as np
import pandas as pd
import pytest
from arrow import Reader

import lumo


def test_views_have_the_columns_address_and_outlive_the_table(materials: lumo.Table) -> None:
    columns = materials.to_columns(["Density", "Year of first use", "Last reviewed"])
    addresses = next(Reader(columns.__arrow_c_stream__()).batches())["figures"]
    names = ["Density.low", "Density.high", "record.identity", "Year of first use", "Last reviewed"]
    views = {}
    for name in names:
        column = columns[name]
        views[name] = column.values
        assert views[name].__array_interface__["data"] == (column.address, True)
        assert addresses[name] == column.address
        assert not views[name].flags.owndata
    assert views["Last reviewed"].dtype == "datetime64[us]"
    copies = {name: view.copy() for name, view in views.items()}
    del columns, column
    gc.collect()
    for name in names:
        np.testing.assert_array_equal(views[name], copies[name])


def test_each_arrow_stream_is_a_new_one_and_names_units(materials: lumo.Table) -> None:
    columns = materials.to_columns(["Density", "Durability: sea water", "Last reviewed"])
    first, second = columns.__arrow_c_stream__(), columns.__arrow_c_stream__()
    assert sum(one["length"] for one in Reader(first).batches()) == len(columns)
    fields = Reader(second).fields()
    assert fields["Density.low"] == ("g", {"unit": "kg/m^3", "attribute": "Density"})
    assert fields["Durability: sea water"][0] == "+l"
    assert fields["Last reviewed"][0] == "tsu:"
    assert sum(one["length"] for one in Reader(second).batches()) == len(columns)
    converted = columns.in_units({"Density": "g/cm^3"})
    assert Reader(converted.__arrow_c_stream__()).fields()["Density.high"][1]["unit"] == "g/cm^3"
    assert columns.units["Density.high"] == "kg/m^3"  # the table itself stays as it is


def _middle(value: Any) -> float:
    return float("nan") if not isinstance(value, lumo.Range) else (value.low or 0.0)


def _is_there(value: Any) -> bool:
    return isinstance(value, tuple) or not pd.isna(value)


EXPECTED: dict[str, Callable[[Any], Any]] = {
    "Density.low": _middle,
    "Recyclable": lambda value: value if isinstance(value, bool) else pd.NA,
    "Number of suppliers": lambda value: value if isinstance(value, int) else pd.NA,
    "Durability: sea water": lambda value: value if isinstance(value, tuple) else None,
    "Last reviewed": lambda value: pd.Timestamp(value) if value else pd.NaT,
    "Typical uses": lambda value: value if isinstance(value, str) else None,
    "Data sheet": lambda value: value.url if isinstance(value, lumo.Link) else None,
}


def test_a_frame_says_what_the_records_say(materials: lumo.Table) -> None:
    names = [name.removesuffix(".low") for name in EXPECTED]
    frame = materials.to_pandas(names)
    for column, attribute in zip(EXPECTED, names):
        values = [EXPECTED[column](record[attribute]) for record in materials.read(attribute)]
        assert len(values) == len(frame)
        for made, expected in zip(frame[column], values):
            assert made == expected if _is_there(expected) else not _is_there(made)
    assert [str(frame[one].dtype) for one in EXPECTED] == [
        "float64", "boolean", "Int64", "object", "datetime64[ns]", "object", "object",
    ]  # fmt: skip


def test_single_words_are_categories_and_old_dates_are_kept(server: lumo.Sandbox) -> None:
    processes = server["ENG_MATERIALS"]["Processes"].to_pandas(["Process class"])
    assert list(processes["Process class"].cat.categories) == [
        "Shaping", "Joining", "Surface treatment",
    ]  # fmt: skip
    elements = server["ELEMENTS"]["Elements"].to_pandas(["Discovered", "Atomic number"])
    assert elements.loc["P", "Discovered"].year == 1669


@pytest.mark.parametrize(
    ("name", "columns"),
    [
        ("Hardness by condition", ["Temperature", "Condition", "Hardness by condition"]),
        (
            "Yield strength against temperature",
            ["Temperature", "Condition", "Yield strength against temperature"],
        ),
        ("Composition", ["Composition.row", "Element", "Least", "Most"]),
    ],
)
def test_long_forms_have_a_row_for_each_point(
    materials: lumo.Table, name: str, columns: list[str]
) -> None:
    frame = materials.to_pandas(long=name)
    assert set(columns) <= set(frame.columns)
    points = 0
    for record in materials.read(name):
        value = record[name]
        if isinstance(value, lumo.Curves):
            points += sum(len(curve) for curve in value)
        elif isinstance(value, (lumo.Points, lumo.Grid)):
            points += len(value)
        elif isinstance(value, lumo.Quantity):
            points += 1
    assert len(frame) == points > 20
    with pytest.raises(lumo.Error, match="long form"):
        materials.to_pandas(long="Density")


def test_units_of_a_long_form_leave_its_parameters(materials: lumo.Table) -> None:
    name = "Yield strength against temperature"
    columns = materials.to_columns(long=name, units={name: "ksi", "Temperature": "K"})
    assert columns.units == {"Temperature": "K", name: "ksi", f"{name}.low": "ksi",
                             f"{name}.high": "ksi"}  # fmt: skip
    grid = materials.to_columns(long="Composition")
    assert grid.in_units({"Composition": grid.units["Most"]}).units == grid.units


def test_an_empty_table_keeps_its_types(materials: lumo.Table) -> None:
    nothing = materials.where("density < 1e-6 kg/m^3").to_columns(["Density", "Recyclable"])
    assert len(nothing) == 0
    assert nothing["Density.low"].values.dtype == float
    assert list(nothing.to_pandas().dtypes.astype(str))[-3:] == ["float64", "float64", "boolean"]
    assert nothing.in_units({"Density": "g/cm^3"}).units["Density.low"] == "g/cm^3"
