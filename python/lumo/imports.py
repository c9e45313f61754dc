"""Frames on their way to a server."""

from __future__ import annotations

import os
from collections.abc import Mapping
from typing import Any

import pandas as pd

from . import _core
from .errors import Error, ErrorCode
from .values import NotApplicable

_PARTS = (".low", ".high")
_KINDS = {"whole number": "integer", "yes or no": "logical", "words": "words", "number": "number"}
_REPORT = ["row", "kind", "record.identity", "record.folder", "record.name",
           "attribute", "before", "after", "why"]  # fmt: skip

Cell = tuple[str, str, Any, str]


def _is_missing(cell: Any) -> bool:
    return (
        cell is None
        or isinstance(cell, NotApplicable)
        or (not isinstance(cell, (tuple, list)) and bool(pd.isna(cell)))
    )


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


def _cell(attribute: _core.Attribute, value: Any, unit: str) -> Cell:
    """One value that is there."""
    if isinstance(value, str) and attribute.type not in ("text", "long text"):
        return (attribute.name, "typed", value, unit)
    if attribute.type == "range of numbers":
        return (attribute.name, "range", (float(value), float(value)), unit)
    if attribute.type == "date":
        moment = pd.Timestamp(value).to_datetime64().astype("datetime64[us]")
        return (attribute.name, "moment", int(moment.astype("int64")), "")
    kind = _KINDS.get(attribute.type, "text")
    if kind == "words":
        value = list(value)
    elif kind == "text":
        value = str(value)
    elif kind == "integer" and value != int(value):
        return (attribute.name, "typed", str(value), "")  # is refused with its row
    else:
        value = {"integer": int, "logical": bool, "number": float}[kind](value)
    return (attribute.name, kind, value, unit if kind == "number" else "")


class _Columns:
    """The columns of a frame that hold values, with the attributes that they belong to."""

    def __init__(
        self, frame: pd.DataFrame, known: Mapping[str, _core.Attribute], units: Mapping[str, str]
    ) -> None:
        self._parts: dict[str, dict[str, Any]] = {}
        self._known = known
        self._units: dict[str, str] = {}
        said = {**frame.attrs.get("units", {}), **units}
        for name in map(str, frame.columns):
            if name.startswith("record."):
                continue
            attribute = _attribute_of(name, known)
            part = name.removeprefix(attribute.name)
            self._parts.setdefault(attribute.name, {})[part] = frame[name].tolist()
            unit = said.get(name, said.get(attribute.name, attribute.unit))
            if self._units.setdefault(attribute.name, unit) != unit:
                text = f'the ends of "{attribute.name}" have different units'
                raise Error(ErrorCode.INVALID_ARGUMENT, text)

    def row(self, place: int) -> list[Cell]:
        cells: list[Cell] = []
        for name, parts in self._parts.items():
            given = {part: values[place] for part, values in parts.items()}
            there = {part: one for part, one in given.items() if not _is_missing(one)}
            if "" in there:
                cells.append(_cell(self._known[name], there[""], self._units[name]))
            elif there:
                low, high = (there.get(part) for part in _PARTS)
                cells.append((name, "range", (low, high), self._units[name]))
        return cells


def _texts(frame: pd.DataFrame, name: str) -> list[str]:
    if name not in frame:
        return [""] * len(frame)
    return ["" if _is_missing(one) else str(one) for one in frame[name]]


def _identities(frame: pd.DataFrame) -> list[int]:
    if "record.identity" not in frame:
        return [0] * len(frame)
    return [0 if _is_missing(one) else int(one) for one in frame["record.identity"]]


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
    known = {one.name: one for one in table.attributes}
    columns = _Columns(frame, known, units or {})
    by_index = "record.name" not in frame
    names = [str(one) for one in frame.index] if by_index else _texts(frame, "record.name")
    folders, identities = _texts(frame, "record.folder"), _identities(frame)
    made = table.new_import()
    for place, name in enumerate(names):
        made.add(place + 1, identities[place], folders[place], name, columns.row(place))
    file = "" if dry_run or journal is None else os.fspath(journal)
    return _frame_of(made.run(file, make_folders, keep_going))
