"""Charts with matplotlib: curves, and property charts of many materials.

Axes are asked of matplotlib only when something is drawn, so that reading needs none.
"""

from __future__ import annotations

import math
from collections.abc import Mapping, Sequence
from typing import TYPE_CHECKING, Any, NamedTuple

import numpy as np
import numpy.typing as npt

from .errors import Error, ErrorCode
from .values import Curve, Curves, Figures

if TYPE_CHECKING:
    import pandas as pd
    from matplotlib.axes import Axes

_BAND, _ELLIPSE = 0.25, 0.55
_SMALLEST = 0.012  # of an ellipse, as a part of the axis
_LINES = 4  # of an index, across the chart


def _new_axes(ax: Axes | None) -> Axes:
    if ax is not None:
        return ax
    import matplotlib.pyplot as plt

    made: Axes = plt.subplots(layout="constrained")[1]
    return made


def _label(name: str, unit: str) -> str:
    return f"{name} ({unit})" if unit else name


def plot_curve(curve: Curve, ax: Axes | None = None, **style: Any) -> Axes:
    """See `Curve.plot`. What the interpolation says is drawn between the points."""
    ax = _new_axes(ax)
    style.setdefault("label", curve.title or None)
    if curve.x_words:
        (line,) = ax.plot(curve.x_words, curve.middle, "o", **style)
    elif curve.interpolation == "none" or len(curve) < 2:
        (line,) = ax.plot(curve.x, curve.middle, "o", **style)
    else:
        x = np.asarray(curve.x)
        if curve.interpolation == "cubic spline":
            between: Any = np.geomspace if curve.x_is_logarithmic else np.linspace
            x = np.unique(np.concatenate([x, between(x.min(), x.max(), 200)]))
            y = curve.at(x)
        else:
            y = curve.middle
        (line,) = ax.plot(x, y, **style)
        ax.plot(curve.x, curve.middle, "o", color=line.get_color(), markersize=4)
    if len(curve.y_high) and not curve.x_words:
        ax.fill_between(curve.x, curve.y, curve.y_high, color=line.get_color(), alpha=_BAND, lw=0)
    if curve.x_is_logarithmic:
        ax.set_xscale("log")
    ax.set_xlabel(_label(curve.x_name, curve.x_unit))
    ax.set_ylabel(curve.y_unit)
    return ax


def plot_curves(curves: Curves, ax: Axes | None = None, **style: Any) -> Axes:
    """See `Curves.plot`."""
    ax = _new_axes(ax)
    for curve in curves:
        plot_curve(curve, ax, **style)
    if curves.is_logarithmic:
        ax.set_yscale("log")
    if len(curves) > 1 and any(curve.title for curve in curves):
        ax.legend()
    return ax


class Index(NamedTuple):
    """A merit index for a chart: lines along which y**power / x is the same, such as E^(1/2)/rho
    for light, stiff beams, which is `Index(1 / 2)`."""

    power: float = 1.0  #: of y
    label: str = ""  #: at the line


class _Bubbles(NamedTuple):
    """The ranges of rows that can be drawn, which on logarithmic axes are those above zero."""

    low: Figures
    high: Figures
    unit: str
    name: str


def _ranges(frame: pd.DataFrame, name: str) -> _Bubbles:
    ends = [f"{name}.low", f"{name}.high"] if f"{name}.low" in frame else [name, name]
    missing = [end for end in ends if end not in frame]
    if missing:
        text = f'the frame has no column "{missing[0]}"'
        raise Error(ErrorCode.NOT_FOUND, text)
    try:
        low, high = (frame[end].to_numpy(dtype=float, na_value=np.nan) for end in ends)
    except (TypeError, ValueError):
        text = f'the column "{ends[0]}" does not hold figures'
        raise Error(ErrorCode.INVALID_ARGUMENT, text) from None
    # An open end is drawn as a figure.
    low, high = np.where(np.isnan(low), high, low), np.where(np.isnan(high), low, high)
    return _Bubbles(low, high, frame.attrs.get("units", {}).get(ends[0], ""), name)


def _families(frame: pd.DataFrame, by: str | Sequence[str] | None) -> Sequence[str]:
    if by is None:
        return [""] * len(frame)
    if isinstance(by, str):
        column = "record.folder" if by == "folder" else by
        if column not in frame:
            raise Error(ErrorCode.NOT_FOUND, f'the frame has no column "{column}" for by="{by}"')
        return [str(one).split("/")[0] if by == "folder" else str(one) for one in frame[column]]
    if len(by) != len(frame):
        raise Error(ErrorCode.INVALID_ARGUMENT, "by= needs a family for each row of the frame")
    return [str(one) for one in by]


def _smallest(figures: _Bubbles, shown: npt.NDArray[np.bool_]) -> float:
    """The decades that an ellipse spans at least, so that figures without a range can be seen."""
    return _SMALLEST * max(
        1.0, float(np.log10(figures.high[shown].max() / figures.low[shown].min()))
    )


def _ellipse(
    ax: Axes, x: tuple[float, float], y: tuple[float, float], least: tuple[float, float], color: Any
) -> None:
    """From end to end of two ranges on logarithmic axes."""
    from matplotlib.patches import Polygon

    (left, right), (bottom, top) = np.log10(x), np.log10(y)
    across, up = max(right - left, least[0]) / 2, max(top - bottom, least[1]) / 2
    turn = np.linspace(0, 2 * math.pi, 61)  # the ends of both ranges are among them
    corners = np.column_stack(
        [
            10 ** ((left + right) / 2 + across * np.cos(turn)),
            10 ** ((bottom + top) / 2 + up * np.sin(turn)),
        ]
    )
    ax.add_patch(Polygon(corners, closed=True, facecolor=color, edgecolor=color, alpha=_ELLIPSE))
    ax.update_datalim(corners)


def _index_lines(
    ax: Axes, index: Index, x: _Bubbles, y: _Bubbles, shown: npt.NDArray[np.bool_]
) -> None:
    """Some lines through the chart, each with its value of the index."""
    middle_x = np.sqrt(x.low * x.high)[shown]
    middle_y = np.sqrt(y.low * y.high)[shown]
    merits = np.log10(middle_y**index.power / middle_x)
    limits = ax.get_xlim(), ax.get_ylim()
    across = np.geomspace(float(limits[0][0]), float(limits[0][1]), 50)
    for merit in np.linspace(merits.min(), merits.max(), _LINES + 2)[1:-1]:
        up = (10**merit * across) ** (1 / index.power)
        ax.plot(across, up, ":", color="0.35", lw=1, zorder=1)
        inside = np.flatnonzero((up > limits[1][0]) & (up < limits[1][1]))
        if len(inside):
            place = inside[len(inside) // 8]
            ax.annotate(
                f"{10**merit:.2g}",
                (across[place], up[place]),
                color="0.35",
                fontsize=8,
                ha="center",
                va="center",
                bbox={"fc": "white", "ec": "none", "pad": 1},
            )
    ax.set_xlim(limits[0])
    ax.set_ylim(limits[1])
    name = index.label or f"({y.name})^{index.power:.3g} / ({x.name})"
    ax.plot([], [], ":", color="0.35", lw=1, label=name)


def ashby(
    frame: pd.DataFrame,
    x: str,
    y: str,
    *,
    by: str | Sequence[str] | None = "folder",
    index: float | Index | None = None,
    ax: Axes | None = None,
    colors: Mapping[str, Any] | None = None,
) -> Axes:
    """Draws a property chart: an ellipse for each material, from end to end of its ranges.

    `frame` comes from `to_pandas`; `x` and `y` are attributes or columns of it. `by` gives each
    material a family, which has a colour: "folder" for the first folder, the name of a column, or
    a family for each row. `index` draws lines of the same y**index / x. Axes are logarithmic, so
    that figures which are not above zero are left out. Returns the axes. Raises `Error`::

        frame = materials.to_pandas(["Density", "Young's modulus"])
        lumo.ashby(frame, "Density", "Young's modulus", index=1 / 2)
    """
    wanted = index if index is None or isinstance(index, Index) else Index(float(index))
    if wanted is not None and (wanted.power == 0 or not math.isfinite(wanted.power)):
        raise Error(ErrorCode.INVALID_ARGUMENT, "the power of an index is a number other than 0")
    figures_x, figures_y = _ranges(frame, x), _ranges(frame, y)
    families = _families(frame, by)
    with np.errstate(invalid="ignore"):
        shown = (figures_x.low > 0) & (figures_y.low > 0)
        shown &= np.isfinite(figures_x.high) & np.isfinite(figures_y.high)
    if not shown.any():
        raise Error(
            ErrorCode.INVALID_ARGUMENT, f'no row has figures above zero for "{x}" and "{y}"'
        )
    ax = _new_axes(ax)
    ax.set_xscale("log")
    ax.set_yscale("log")
    least = _smallest(figures_x, shown), _smallest(figures_y, shown)
    names = sorted({family for family, there in zip(families, shown) if there})
    from matplotlib import colormaps

    wheel = colormaps["tab10" if len(names) <= 10 else "tab20"].colors
    for place, name in enumerate(names):
        color = (colors or {}).get(name, wheel[place % len(wheel)])
        ax.scatter([], [], color=color, alpha=_ELLIPSE, label=name or None)
        for row in np.flatnonzero(shown):
            if families[row] == name:
                _ellipse(
                    ax,
                    (figures_x.low[row], figures_x.high[row]),
                    (figures_y.low[row], figures_y.high[row]),
                    least,
                    color,
                )
    ax.autoscale_view()
    if wanted is not None:
        _index_lines(ax, wanted, figures_x, figures_y, shown)
    ax.set_xlabel(_label(x, figures_x.unit))
    ax.set_ylabel(_label(y, figures_y.unit))
    if names != [""] or index is not None:
        ax.legend(fontsize=8)
    return ax
