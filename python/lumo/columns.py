"""Records as columns, and their ways into numpy, pandas and Arrow."""

from __future__ import annotations

from collections.abc import Iterator, Mapping, Sequence
from typing import TYPE_CHECKING, Any

import numpy as np
import numpy.typing as npt

from . import _core, _html

if TYPE_CHECKING:
    import pandas as pd

Array = npt.NDArray[Any]

#: Columns of the record itself that a frame leaves out: what the index has, and what few ask for.
_LEFT_OUT = ("record.name", "record.guid", "record.fullName")


class Columns:
    """Values of records as columns in the layout of Apache Arrow, made in C++.

    Attributes of ranges have two columns, "Density.low" and "Density.high"; before those of
    attributes stand "record.identity", "record.guid", "record.name", "record.fullName" and
    "record.folder". Libraries that know Arrow's stream interface read the table without a copy::

        polars.from_dataframe(columns)   # or pyarrow.table(columns), duckdb.sql("from columns")
    """

    def __init__(self, core: _core.Columns, attributes: Sequence[_core.Attribute]) -> None:
        self._core = core
        self._attributes = {one.name: one for one in attributes}

    @property
    def names(self) -> list[str]:
        """Of the columns, in their order."""
        return self._core.names

    @property
    def units(self) -> dict[str, str]:
        """Of the columns that have one."""
        units = ((one.name, one.unit) for one in map(self._core.column, self.names))
        return {name: unit for name, unit in units if unit}

    @property
    def attributes(self) -> dict[str, _core.Attribute]:
        """The attributes that were read."""
        return self._attributes

    def __getitem__(self, name: str) -> Column:
        return Column(self._core.column(name))

    def __contains__(self, name: object) -> bool:
        return name in self.names

    def __iter__(self) -> Iterator[str]:
        return iter(self.names)

    def __len__(self) -> int:
        """Rows."""
        return self._core.rows

    def in_units(self, units: Mapping[str, str]) -> Columns:
        """With figures in other units, by the server's own factors: {"Density": "g/cm^3"}.

        Names are attributes or columns. Raises `Error` (INVALID_ARGUMENT, NOT_FOUND).
        """
        return Columns(self._core.in_units(dict(units)), list(self._attributes.values()))

    def to_pandas(self, *, marks: bool | None = None) -> pd.DataFrame:
        """A frame with the records' names as index, with "record.identity" and "record.folder"
        before the columns of the attributes.

        Figures are floats with NaN for no value, integers "Int64", yes or no "boolean", dates
        "datetime64[ns]", a single word a category, several words tuples, texts objects. Units are
        in `attrs["units"]`. Where some value is "not applicable" or estimated, the columns
        "record.notApplicable" and "record.estimated" have tuples with the names of these
        attributes, so that this stays with the row; `marks` says whether
        they are there in any case or in none.
        """
        from ._pandas import frame_of

        return frame_of(self, _LEFT_OUT, marks)

    def __arrow_c_stream__(self, requested_schema: object = None) -> object:
        """A new stream at each call, each of all rows; units are in the fields' metadata."""
        return self._core.arrow_stream(requested_schema)

    def _ipython_key_completions_(self) -> list[str]:
        return self.names

    def __repr__(self) -> str:
        return f"<lumo.Columns: {len(self)} rows, {len(self.names)} columns>"

    def _repr_html_(self) -> str:
        return _html.columns_html(self)


class Column:
    """A column, which keeps its table alive."""

    def __init__(self, core: _core.Column) -> None:
        self._core = core

    @property
    def name(self) -> str:
        """Such as "Density.low"."""
        return self._core.name

    @property
    def attribute(self) -> str:
        """Empty for what belongs to the record itself."""
        return self._core.attribute

    @property
    def unit(self) -> str:
        """In which its figures stand; empty for none."""
        return self._core.unit

    @property
    def type(self) -> str:
        """ "number", "integer", "logical", "moment", "text", "words" or "bytes"."""
        return self._core.type

    @property
    def null_count(self) -> int:
        """Rows without a value."""
        return self._core.null_count

    @property
    def values(self) -> Array:
        """Figures, dates or truth values as they lie in memory: a read-only view without a copy
        but of truth values, which are bits. Rows without a value hold 0, see `valid`."""
        return self._core.values

    @property
    def address(self) -> int:
        """Where the figures lie in memory."""
        return self._core.address

    @property
    def objects(self) -> Array:
        """Texts, bytes or tuples of words, None where there is no value."""
        return self._core.objects

    @property
    def valid(self) -> npt.NDArray[np.bool_]:
        """Rows that have a value."""
        return self._core.valid

    @property
    def not_applicable(self) -> npt.NDArray[np.bool_]:
        """Rows that say that the attribute makes no sense for them."""
        return self._core.not_applicable

    @property
    def estimated(self) -> npt.NDArray[np.bool_]:
        """For each row, whether its figure is an estimate."""
        return self._core.estimated

    def to_numpy(self) -> Array:
        """The values, NaN, NaT or None where there is none: a view where all rows have one."""
        if self.type in ("text", "words", "bytes"):
            return self.objects
        values = self.values
        if not self.null_count:
            return values
        if self.type == "number":
            return np.where(self.valid, values, np.nan)
        if self.type == "moment":
            return np.where(self.valid, values, np.datetime64("NaT"))
        made = values.astype(object)
        made[~self.valid] = None
        return made

    def __array__(self, dtype: Any = None) -> Array:
        return np.asarray(self.to_numpy(), dtype=dtype)

    def __len__(self) -> int:
        return len(self._core)

    def __repr__(self) -> str:
        unit = f" in {self.unit}" if self.unit else ""
        return f"<lumo.Column {self.name!r}: {len(self)} values of {self.type}{unit}>"
