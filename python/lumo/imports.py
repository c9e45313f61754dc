"""Frames on their way to a server."""

from __future__ import annotations

import datetime
import os
import reprlib
from collections.abc import Callable, Mapping
from decimal import Decimal
from numbers import Integral, Real
from typing import Any, TypeVar

import numpy as np
import pandas as pd

from . import _core
from .errors import Error, ErrorCode
from .values import NotApplicable, Quantity, Range

_PARTS = (".low", ".high")
_FIGURES = ("number", "range of numbers")
_REPORT = ["row", "kind", "record.identity", "record.folder", "record.name",
           "attribute", "before", "after", "why"]  # fmt: skip

Cell = tuple[str, str, Any, str]
Fault = tuple[str, str]
T = TypeVar("T")


class _Unfit(Exception):
    """Why a cell cannot be taken, which is told as a fault of its row."""

    def __init__(self, takes: str, value: Any) -> None:
        super().__init__(f"takes {takes}, not {reprlib.repr(value)}")


def _is_missing(cell: Any) -> bool:
    return isinstance(cell, NotApplicable) or (pd.api.types.is_scalar(cell) and bool(pd.isna(cell)))


def _attribute_of(name: str, known: Mapping[str, _core.Attribute]) -> _core.Attribute:
    """Of a column, which has the name of its attribute, or that of an end of a range."""
    for part in _PARTS:
        base = name.removesuffix(part)
        if base != name and base in known and known[base].type == "range of numbers":
            return known[base]
    if name in known and known[name].type not in ("curve", "table", "file", "picture", "link"):
        return known[name]
    raise Error(
        ErrorCode.INVALID_ARGUMENT,
        f'the column "{name}" cannot be imported from a frame; leave it out with drop(columns=...)',
    )


def _text(value: Any) -> str:
    """Numbers are texts when they are whole, as designations are."""
    if isinstance(value, bool) or not isinstance(value, (str, Integral)):
        raise _Unfit("a text", value)
    text = str(value)
    try:
        text.encode()
    except UnicodeEncodeError:
        raise _Unfit("characters that can be sent", value) from None
    return text


def _words(value: Any) -> list[str]:
    words = value.tolist() if isinstance(value, np.ndarray) else value
    if not isinstance(words, (tuple, list, set, frozenset)):
        raise _Unfit("words", value)
    return [_text(one) for one in words]


def _figure(value: Any) -> float:
    if isinstance(value, (Real, Decimal)) and not isinstance(value, bool):
        try:
            return float(value)
        except OverflowError:
            pass
    raise _Unfit("a number", value)


def _whole(value: Any) -> int:
    figure = _figure(value)
    if not figure.is_integer() or abs(figure) > 2**31:
        raise _Unfit("a whole number of 32 bits", value)
    return int(figure)


def _logical(value: Any) -> bool:
    if not isinstance(value, (bool, np.bool_, Real)) or value not in (0, 1):
        raise _Unfit("yes or no", value)
    return bool(value)


def _moment(value: Any) -> int:
    if isinstance(value, datetime.datetime) and value.tzinfo is not None:
        try:
            value = value.astimezone(datetime.timezone.utc).replace(tzinfo=None)
        except OverflowError:
            raise _Unfit("a date", value) from None
    if not isinstance(value, (datetime.date, np.datetime64)):
        raise _Unfit("a date", value)
    return int(np.datetime64(value, "us").astype("int64"))


_PLAIN: dict[str, tuple[str, Callable[[Any], Any]]] = {
    "whole number": ("integer", _whole),
    "yes or no": ("logical", _logical),
    "words": ("words", _words),
    "date": ("moment", _moment),
}


def _cell(attribute: _core.Attribute, value: Any, unit: str) -> Cell:
    """One value that is there."""
    if isinstance(value, str) and attribute.type not in ("text", "long text"):
        return (attribute.name, "typed", _text(value), unit)
    if attribute.type in _FIGURES:
        one = value if isinstance(value, (Quantity, Range)) else Quantity(_figure(value))
        if isinstance(one, Range):
            low, high = (None if end is None else _figure(end) for end in (one.low, one.high))
        else:
            low = high = _figure(one.value)
        is_range = isinstance(one, Range) or attribute.type == "range of numbers"
        kind = "range" if is_range else "number"
        return (attribute.name, kind, (low, high, one.estimated), _text(one.unit or unit))
    kind, take = _PLAIN.get(attribute.type, ("text", _text))
    return (attribute.name, kind, take(value), "")


class _Columns:
    """The columns of a frame that hold values, with the attributes that they belong to."""

    def __init__(
        self, frame: pd.DataFrame, known: Mapping[str, _core.Attribute], units: Mapping[str, str]
    ) -> None:
        self._parts: dict[str, dict[str, list[Any]]] = {}
        self._known = known
        self._units: dict[str, str] = {}
        said = frame.attrs.get("units", {})
        with_units: dict[str, None] = {}  # the names that `units` may give
        for place, name in enumerate(map(str, frame.columns)):
            if name.startswith("record."):
                continue
            attribute = _attribute_of(name, known)
            part = name.removeprefix(attribute.name)
            self._parts.setdefault(attribute.name, {})[part] = frame.iloc[:, place].tolist()
            wishes = [given[key] for given in (units, said) for key in (name, attribute.name)
                      if key in given]  # fmt: skip
            unit = next(iter(wishes), attribute.unit)
            if self._units.setdefault(attribute.name, unit) != unit:
                text = f'the ends of "{attribute.name}" have different units'
                raise Error(ErrorCode.INVALID_ARGUMENT, text)
            if attribute.type in _FIGURES:
                with_units.update({name: None, attribute.name: None})
        unknown = [name for name in units if name not in with_units]
        if unknown:
            text = f'units= gives one for "{unknown[0]}", which is not a column of figures here'
            if with_units:
                text += f"; there are {', '.join(with_units)}"
            raise Error(ErrorCode.INVALID_ARGUMENT, text)
        for name, parts in self._parts.items():
            if "" not in parts and len(parts) < 2:
                missing = next(part for part in _PARTS if part not in parts)
                text = f'a range needs both ends: the frame has no column "{name}{missing}"'
                raise Error(ErrorCode.INVALID_ARGUMENT, text)

    def row(self, place: int) -> tuple[list[Cell], list[Fault]]:
        """The values of a row, and what is wrong with others."""
        cells: list[Cell] = []
        faults: list[Fault] = []
        for name, parts in self._parts.items():
            given = {part: values[place] for part, values in parts.items()}
            there = {part: one for part, one in given.items() if not _is_missing(one)}
            try:
                if "" in there:
                    cells.append(_cell(self._known[name], there[""], self._units[name]))
                elif there:
                    low, high = (_figure(there[one]) if one in there else None for one in _PARTS)
                    cells.append((name, "range", (low, high, False), self._units[name]))
            except _Unfit as unfit:
                faults.append((name, str(unfit)))
        return cells, faults


def _identity(value: Any) -> int:
    identity = int(value) if isinstance(value, str) and value.isdecimal() else value
    if _whole(identity) < 0:
        raise _Unfit("an identity", value)
    return _whole(identity)


class _Heads:
    """What says which records are meant: a column of that name, or the index."""

    def __init__(self, frame: pd.DataFrame) -> None:
        self._columns = {
            name: frame[name].tolist()
            for name in ("record.name", "record.folder", "record.identity")
            if name in frame
        }
        self._columns.setdefault("record.name", frame.index.tolist())

    def take(
        self, name: str, place: int, read: Callable[[Any], T], none: T, faults: list[Fault]
    ) -> T:
        """`none` where there is nothing, or something that does not fit."""
        column = self._columns.get(name)
        if column is None or _is_missing(column[place]):
            return none
        try:
            return read(column[place])
        except _Unfit as unfit:
            faults.append((name, str(unfit)))
            return none


def _frame_of(report: dict[str, Any]) -> pd.DataFrame:
    lines = []
    for number, kind, identity, folder, name, changes, faults, _ in report["rows"]:
        head = (number - 1, kind, identity, folder, name)
        told = [(attribute, before, after, "") for attribute, before, after in changes]
        told += [(attribute, "", "", why) for attribute, why in faults]
        lines += [(*head, *one) for one in told or [("", "", "", "")]]
    made = pd.DataFrame(lines, columns=_REPORT)
    kinds = [kind for _, kind, *_ in report["rows"]]
    made.attrs["counts"] = {kind: kinds.count(kind) for kind in dict.fromkeys(kinds)}
    made.attrs.update(
        {name: report[name] for name in ("faults", "new_folders", "stopped", "written")}
    )
    return made


def import_frame(
    table: _core.Table,
    frame: pd.DataFrame,
    *,
    dry_run: bool = True,
    journal: str | os.PathLike[str] | None = None,
    units: Mapping[str, str] | None = None,
    make_folders: bool = False,
    keep_going: bool = False,
) -> pd.DataFrame:
    """See `Table.import_frame`."""
    if not dry_run and journal is None:
        raise Error(
            ErrorCode.INVALID_ARGUMENT, "a run needs a journal=, a file that is not there yet"
        )
    twice = frame.columns[frame.columns.duplicated()]
    if len(twice):
        raise Error(ErrorCode.INVALID_ARGUMENT, f'the column "{twice[0]}" comes twice')
    known = {one.name: one for one in table.attributes}
    columns, heads = _Columns(frame, known, units or {}), _Heads(frame)
    made = table.new_import()
    for place in range(len(frame)):
        cells, faults = columns.row(place)
        name = heads.take("record.name", place, _text, "", faults)
        folder = heads.take("record.folder", place, _text, "", faults)
        identity = heads.take("record.identity", place, _identity, 0, faults)
        made.add(place + 1, identity, folder, name, cells, faults)
    file = "" if dry_run or journal is None else os.fspath(journal)
    return _frame_of(made.run(file, make_folders, keep_going))
