"""Frames of pandas from columns."""

from __future__ import annotations

from collections.abc import Collection
from typing import TYPE_CHECKING, Any

import numpy as np
import pandas as pd

from . import _core

if TYPE_CHECKING:
    from .columns import Column, Columns


#: The days between which pandas can count nanoseconds.
_FIRST, _LAST = np.datetime64("1677-09-22", "us"), np.datetime64("2262-04-11", "us")


def _dates(column: Column) -> Any:
    """Nanoseconds where all dates can be counted so, else objects."""
    moments = column.to_numpy()
    known = moments[column.valid]
    if len(known) and (known.min() < _FIRST or known.max() > _LAST):
        return moments.astype(object)
    return moments.astype("datetime64[ns]")


def _words(column: Column, attribute: _core.Attribute | None) -> Any:
    texts = column.objects
    if attribute is None or attribute.type != "words" or column.type != "text":
        return texts
    unknown = sorted({text for text in texts if text is not None} - set(attribute.words))
    return pd.Categorical(texts, categories=[*attribute.words, *unknown])


def _series(column: Column, attribute: _core.Attribute | None) -> Any:
    if column.type == "number":
        return column.to_numpy()
    if column.type == "integer" and not column.attribute:
        return column.values
    if column.type == "integer":
        return pd.arrays.IntegerArray(column.values.copy(), ~column.valid)
    if column.type == "logical":
        return pd.arrays.BooleanArray(column.values, ~column.valid)
    if column.type == "moment":
        return _dates(column)
    return _words(column, attribute)


def _marks(columns: list[tuple[str, Any]], rows: int) -> list[tuple[str, ...]]:
    """For each row the names of the attributes that are marked."""
    marked: list[tuple[str, ...]] = [()] * rows
    for attribute, flags in columns:
        for row in np.flatnonzero(flags):
            if attribute not in marked[row]:
                marked[row] = (*marked[row], attribute)
    return marked


def frame_of(
    columns: Columns, left_out: Collection[str], marks: bool | None = None
) -> pd.DataFrame:
    """See `Columns.to_pandas`."""
    parts = {name: columns[name] for name in columns.names}
    attributes = columns.attributes
    made = {
        name: _series(column, attributes.get(column.attribute))
        for name, column in parts.items()
        if name not in left_out
    }
    of_attributes = [one for one in parts.values() if one.attribute]
    for name, flags in (("notApplicable", "not_applicable"), ("estimated", "estimated")):
        if marks is False:
            continue
        marked = _marks(
            [(one.attribute, getattr(one, flags)) for one in of_attributes], len(columns)
        )
        if marks or any(marked):
            made[f"record.{name}"] = pd.Series(marked, dtype=object).to_numpy()
    index = pd.Index(parts["record.name"].objects, name="record.name")
    frame = pd.DataFrame(made, index=index)
    frame.attrs["units"] = {name: unit for name, unit in columns.units.items() if name in made}
    return frame
