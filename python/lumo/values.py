"""What attributes hold.

Figures carry their unit, the server's symbol. A missing value is None; one that makes no sense for
a record is `lumo.NOT_APPLICABLE`. Words are tuples of texts, dates are `datetime.datetime`.
"""

from __future__ import annotations

import datetime
from collections.abc import Callable, Iterator, Mapping, Sequence
from dataclasses import dataclass, field
from typing import TYPE_CHECKING, Any, Union, overload

import numpy as np
import numpy.typing as npt

from . import _core
from .errors import Error, ErrorCode

if TYPE_CHECKING:
    import pandas as pd
    from matplotlib.axes import Axes

Figures = npt.NDArray[np.float64]


class NotApplicable:
    """The type of `NOT_APPLICABLE`: the record says that the attribute makes no sense for it."""

    _only: NotApplicable | None = None

    def __new__(cls) -> NotApplicable:
        if cls._only is None:
            cls._only = super().__new__(cls)
        return cls._only

    def __bool__(self) -> bool:
        return False

    def __repr__(self) -> str:
        return "NOT_APPLICABLE"


NOT_APPLICABLE = NotApplicable()


def moment(microseconds: int) -> datetime.datetime | str:
    """Of microseconds since 1970; as text where Python has no such date."""
    try:
        return datetime.datetime(1970, 1, 1) + datetime.timedelta(microseconds=microseconds)
    except OverflowError:
        return str(np.datetime64(microseconds, "us"))


def text_of(figure: float | None) -> str:
    """A figure for people."""
    return "" if figure is None else f"{figure:.6g}"


def _convert(units: _core.Units | None, figure: float, source: str, target: str) -> float:
    if units is None:
        raise Error(ErrorCode.INVALID_ARGUMENT, "a value that was not read has no server's factors")
    return float(units.convert(figure, source, target))


def converted(convert: Callable[[Figures], Figures], figures: Any) -> Any:
    """What `Units.convert` makes of more than a plain figure."""
    if isinstance(figures, (Quantity, Range, Points)):
        raise TypeError("a value with a unit of its own is converted by its in_units")
    if isinstance(figures, np.ma.MaskedArray):
        array: Any = np.ma.array
        return array(convert(np.asarray(figures, dtype=float)), mask=figures.mask)
    if hasattr(figures, "isna"):  # of pandas
        figures = figures.to_numpy(dtype=float, na_value=np.nan)
    made = convert(np.asarray(figures, dtype=float))
    return made if made.ndim else float(made)


@dataclass(frozen=True)
class Quantity:
    """One figure."""

    value: float
    unit: str = ""
    estimated: bool = False
    _units: _core.Units | None = field(default=None, repr=False, compare=False)

    def in_units(self, unit: str) -> Quantity:
        """In another unit, by the server's own factors. Raises `Error` (INVALID_ARGUMENT)."""
        value = _convert(self._units, self.value, self.unit, unit)
        return Quantity(value, unit, self.estimated, self._units)

    def __float__(self) -> float:
        return self.value

    def __str__(self) -> str:
        return f"{text_of(self.value)} {self.unit}".strip()


@dataclass(frozen=True)
class Range:
    """A range of figures; an end that is None is open."""

    low: float | None
    high: float | None
    unit: str = ""
    estimated: bool = False
    _units: _core.Units | None = field(default=None, repr=False, compare=False)

    @property
    def middle(self) -> float | None:
        """The end that there is where the other one is open; None where both are."""
        ends = [end for end in (self.low, self.high) if end is not None]
        return sum(ends) / len(ends) if ends else None

    def in_units(self, unit: str) -> Range:
        """In another unit, by the server's own factors. Raises `Error` (INVALID_ARGUMENT)."""
        low, high = (
            None if end is None else _convert(self._units, end, self.unit, unit)
            for end in (self.low, self.high)
        )
        return Range(low, high, unit, self.estimated, self._units)

    def __str__(self) -> str:
        if self.low == self.high:
            return f"{text_of(self.low)} {self.unit}".strip()
        return f"{text_of(self.low)}..{text_of(self.high)} {self.unit}".strip()


@dataclass(frozen=True)
class Point:
    """One figure among several, and what it depends on."""

    value: float
    parameters: Mapping[str, float | str] = field(default_factory=dict, hash=False)


@dataclass(frozen=True)
class Points(Sequence[Point]):
    """Figures that hold for different values of their parameters."""

    points: tuple[Point, ...]
    unit: str = ""
    estimated: bool = False
    parameter_units: Mapping[str, str] = field(default_factory=dict, hash=False)
    _units: _core.Units | None = field(default=None, repr=False, compare=False)

    @overload
    def __getitem__(self, place: int) -> Point:
        ...

    @overload
    def __getitem__(self, place: slice) -> tuple[Point, ...]:
        ...

    def __getitem__(self, place: int | slice) -> Point | tuple[Point, ...]:
        return self.points[place]

    def __len__(self) -> int:
        return len(self.points)

    def in_units(self, unit: str) -> Points:
        """With the figures in another unit; parameters keep theirs. Raises `Error`."""
        points = tuple(
            Point(_convert(self._units, one.value, self.unit, unit), one.parameters)
            for one in self.points
        )
        return Points(points, unit, self.estimated, self.parameter_units, self._units)

    def __str__(self) -> str:
        if len(self.points) == 1:
            return f"{text_of(self.points[0].value)} {self.unit}".strip()
        return f"{len(self.points)} figures in {self.unit or 'no unit'}"


class Curve:
    """y over x, as the server has it.

    `x`, `y` and `y_high` are read-only arrays that lie where the toolkit keeps the curve. Where y
    has ranges, `y` is their low end and `y_high` the high one, NaN for a single figure among them;
    `y_high` is empty when there are none.
    """

    def __init__(self, core: _core.Curve, units: _core.Units) -> None:
        self._core = core
        self._units = units

    @property
    def x_name(self) -> str:
        """The parameter that the x-axis is of."""
        return self._core.x_name

    @property
    def x_unit(self) -> str:
        """In which x stands; empty for words."""
        return self._core.x_unit

    @property
    def y_unit(self) -> str:
        """In which `y` and `y_high` stand."""
        return self._core.y_unit

    @property
    def x(self) -> Figures:
        """NaN where the axis has words."""
        return self._core.x

    @property
    def y(self) -> Figures:
        """One figure for each x; where there are ranges the low end."""
        return self._core.y

    @property
    def y_high(self) -> Figures:
        """The high ends where y has ranges."""
        return self._core.y_high

    @property
    def x_words(self) -> list[str]:
        """The words of an axis that has words; empty for an axis of numbers."""
        return self._core.x_words

    @property
    def estimated(self) -> list[bool]:
        """For each point; empty when none is."""
        return self._core.estimated

    @property
    def x_is_logarithmic(self) -> bool:
        """Values between points are found on a logarithmic axis."""
        return self._core.x_is_logarithmic

    @property
    def interpolation(self) -> str:
        """How values between points are found: "none", "linear" or "cubic spline"."""
        return self._core.interpolation

    @property
    def parameters(self) -> dict[str, float | str]:
        """What holds for the whole curve, such as {"Condition": "T6"}."""
        return self._core.parameters

    @property
    def parameter_units(self) -> dict[str, str]:
        """Of the parameters that are figures."""
        return self._core.parameter_units

    @property
    def middle(self) -> Figures:
        """y, the middle where it has ranges."""
        if not len(self.y_high):
            return self.y
        with np.errstate(invalid="ignore"):
            middle = np.where(np.isnan(self.y_high), self.y, (self.y + self.y_high) / 2)
        open_end = np.where(np.isinf(self.y), self.y_high, self.y)
        return np.asarray(np.where(np.isfinite(middle), middle, open_end))

    @overload
    def at(self, x: float) -> float:
        ...

    @overload
    def at(self, x: Sequence[float] | Figures) -> Figures:
        ...

    def at(self, x: float | Sequence[float] | Figures) -> float | Figures:
        """y at that place of the x-axis, the middle of a range, as the attribute's interpolation
        says; NaN outside of the curve, and between points that are not to be joined."""
        found = self._core.at(np.asarray(x, dtype=float))
        return float(found) if np.isscalar(x) else found

    def in_units(self, unit: str) -> Curve:
        """With y in another unit; the x-axis keeps its own. Raises `Error`."""
        return Curve(self._core.in_units(self._units, unit), self._units)

    def plot(self, ax: Axes | None = None, **style: Any) -> Axes:
        """Draws the curve with matplotlib, on these axes or on new ones; `style` goes to
        `Axes.plot`. Ranges are drawn as a band."""
        from .charts import plot_curve

        return plot_curve(self, ax, **style)

    def to_pandas(self) -> pd.Series[float]:
        """y over x, the middle where y has ranges."""
        import pandas as pd

        index: Any = self.x_words if self.x_words else self.x
        name = f"{self.y_unit}"
        return pd.Series(np.array(self.middle), index=pd.Index(index, name=self.x_name), name=name)

    @property
    def title(self) -> str:
        """What holds for the whole curve, for a legend."""
        units = self.parameter_units
        texts = []
        for name, value in self.parameters.items():
            figure = value if isinstance(value, str) else text_of(value)
            texts.append(f"{name} {figure} {units.get(name, '')}".strip())
        return ", ".join(texts)

    def __len__(self) -> int:
        return len(self.x)

    def __repr__(self) -> str:
        title = f", {self.title}" if self.title else ""
        return f"<Curve of {len(self)} points in {self.y_unit} over {self.x_name}{title}>"

    def _repr_html_(self) -> str:
        from ._html import curve_html

        return curve_html(self)


@dataclass(frozen=True)
class Curves(Sequence[Curve]):
    """The curves of one attribute."""

    curves: tuple[Curve, ...]
    is_gridded: bool = False  #: the server keeps single values, each with its parameters
    is_hidden: bool = False  #: the server does not show the graph
    is_logarithmic: bool = False  #: the y-axis is

    @overload
    def __getitem__(self, place: int) -> Curve:
        ...

    @overload
    def __getitem__(self, place: slice) -> tuple[Curve, ...]:
        ...

    def __getitem__(self, place: int | slice) -> Curve | tuple[Curve, ...]:
        return self.curves[place]

    def __len__(self) -> int:
        return len(self.curves)

    def plot(self, ax: Axes | None = None, **style: Any) -> Axes:
        """Draws all curves on the same axes, with a legend where they differ."""
        from .charts import plot_curves

        return plot_curves(self, ax, **style)

    def __str__(self) -> str:
        return f"{len(self.curves)} curve" + ("" if len(self.curves) == 1 else "s")

    def _repr_html_(self) -> str:
        return "".join(curve._repr_html_() for curve in self.curves)


@dataclass(frozen=True)
class Link:
    """An address, and the text to show for it."""

    url: str
    description: str = ""

    def __str__(self) -> str:
        return self.description or self.url


@dataclass(frozen=True)
class File:
    """A file or a picture."""

    name: str = ""  #: empty for a picture, as the description
    content_type: str = ""
    description: str = ""
    url: str = ""  #: where the bytes are, when they did not come along
    data: bytes = field(default=b"", repr=False)

    def __str__(self) -> str:
        return self.name or self.description or self.content_type


@dataclass(frozen=True)
class Grid:
    """A table of values."""

    columns: tuple[str, ...]
    rows: tuple[tuple[Value, ...], ...]
    #: of the columns that have one
    units: Mapping[str, str] = field(default_factory=dict, hash=False)

    def to_pandas(self) -> pd.DataFrame:
        """The table with figures as numbers, and with `attrs["units"]`."""
        import pandas as pd

        def plain(cell: Value) -> object:
            if isinstance(cell, Range):
                return cell.middle
            return cell.value if isinstance(cell, Quantity) else cell

        rows = [[plain(cell) for cell in row] for row in self.rows]
        frame = pd.DataFrame(rows, columns=list(self.columns))
        frame.attrs["units"] = dict(self.units)
        return frame

    def __iter__(self) -> Iterator[tuple[Value, ...]]:
        return iter(self.rows)

    def __len__(self) -> int:
        return len(self.rows)

    def __str__(self) -> str:
        return f"table of {len(self.rows)} rows"


Value = Union[
    None, NotApplicable, str, datetime.datetime, int, bool, Quantity, Range, Points,
    tuple[Any, ...], Curves, Link, File, Grid, dict[str, list[_core.RecordId]],
]  # fmt: skip
