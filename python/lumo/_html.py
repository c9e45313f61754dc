"""What notebooks show."""

from __future__ import annotations

from collections.abc import Iterable, Sequence
from html import escape
from typing import TYPE_CHECKING

import numpy as np

from .values import Curve, Curves, Figures, Value, text_of

if TYPE_CHECKING:
    from .columns import Columns
    from .records import Record

_ROWS = 10
_WIDTH, _HEIGHT, _MARGIN = 360, 220, 45


def table_html(title: str, heads: Sequence[str], rows: Iterable[Sequence[object]]) -> str:
    """A table with a title; texts are escaped."""

    def line(cells: Iterable[object], tag: str) -> str:
        made = "".join(
            f'<{tag} style="text-align:left">{escape(str(cell))}</{tag}>' for cell in cells
        )
        return f"<tr>{made}</tr>"

    body = "".join(line(row, "td") for row in rows)
    caption = f'<caption style="text-align:left"><b>{escape(title)}</b></caption>'
    return f"<table>{caption}<thead>{line(heads, 'th')}</thead><tbody>{body}</tbody></table>"


def value_text(value: Value) -> str:
    """A value in a cell, for people."""
    if value is None:
        return ""
    if value is True or value is False:
        return "yes" if value else "no"
    if isinstance(value, tuple):
        return ", ".join(map(str, value))
    if isinstance(value, float):
        return text_of(value)
    if isinstance(value, dict):
        return ", ".join(f"{len(records)} of {name}" for name, records in value.items())
    return "not applicable" if repr(value) == "NOT_APPLICABLE" else str(value)


def record_html(record: Record) -> str:
    """The card of a record: its values, and its curves drawn."""
    values = {name: record[name] for name in record}
    rows = [(name, value_text(value)) for name, value in values.items() if value is not None]
    card = table_html(f"{record.name} ({record.folder})", ("attribute", "value"), rows)
    for name, value in values.items():
        if isinstance(value, Curves):
            card += f"<b>{escape(name)}</b><br>{value._repr_html_()}"
    return card


def columns_html(columns: Columns) -> str:
    """The first rows of a table."""
    from ._pandas import frame_of

    frame = frame_of(columns, ("record.identity", "record.guid", "record.fullName"))
    units = columns.units
    shown = frame.head(_ROWS).rename(
        columns=lambda name: f"{name} [{units[name]}]" if name in units else name
    )
    return f"{shown.to_html()}<p>{len(columns)} rows, {len(columns.names)} columns</p>"


def _scale(figures: Figures, low: float, high: float) -> tuple[Figures, float, float]:
    """Places between two ends of an axis, and the least and the largest figure."""
    finite = figures[np.isfinite(figures)]
    least, most = (float(finite.min()), float(finite.max())) if len(finite) else (0.0, 1.0)
    span = most - least or 1.0
    return low + (figures - least) / span * (high - low), least, most


def curve_html(curve: Curve) -> str:
    """The curve as a picture in SVG, with the ends of its axes."""
    x = np.arange(len(curve), dtype=float) if curve.x_words else np.asarray(curve.x)
    middle = curve.middle
    places, left, right = _scale(x, _MARGIN, _WIDTH - 10)
    heights, bottom, top = _scale(middle, _HEIGHT - _MARGIN, 10)
    points = [f"{px:.1f},{py:.1f}" for px, py in zip(places, heights) if np.isfinite(px + py)]
    base = _HEIGHT - _MARGIN
    ends = (
        (curve.x_words[0], curve.x_words[-1]) if curve.x_words else (text_of(left), text_of(right))
    )

    def text(px: float, py: float, words: str, anchor: str) -> str:
        return f'<text x="{px}" y="{py}" text-anchor="{anchor}">{escape(words)}</text>'

    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{_WIDTH}" height="{_HEIGHT}" '
        'font-family="sans-serif" font-size="11" role="img">',
        f"<title>{escape(repr(curve))}</title>",
        f'<path d="M{_MARGIN},10 V{base} H{_WIDTH - 10}" fill="none" stroke="gray"/>',
        f'<polyline points="{" ".join(points)}" fill="none" stroke="#1f77b4" stroke-width="2"/>',
        text(_MARGIN, base + 14, ends[0], "middle"),
        text(_WIDTH - 10, base + 14, ends[1], "end"),
        text((_MARGIN + _WIDTH) / 2, base + 30, f"{curve.x_name} {curve.x_unit}".strip(), "middle"),
        text(_MARGIN - 4, base, text_of(bottom), "end"),
        text(_MARGIN - 4, 20, text_of(top), "end"),
        text(_MARGIN + 4, 10, f"{curve.y_unit}  {curve.title}".strip(), "start"),
        "</svg>",
    ]
    return "".join(parts)
