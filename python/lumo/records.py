"""Records, and streams of them."""

from __future__ import annotations

from collections.abc import Iterator, Mapping
from typing import Any, TypeVar, overload

from . import _core, _html, _progress
from .columns import Columns
from .errors import ErrorCode, is_found
from .values import Value

T = TypeVar("T")


class Record(Mapping[str, Value]):
    """A record with the values that were read, by their attributes."""

    def __init__(self, core: _core.Record) -> None:
        self._core = core

    @property
    def id(self) -> _core.RecordId:
        """By what the server knows it by."""
        return self._core.id

    @property
    def name(self) -> str:
        """That the tree shows."""
        return self._core.name

    @property
    def full_name(self) -> str:
        """In words, where the tree shows a short name."""
        return self._core.full_name

    @property
    def folder(self) -> str:
        """Names of the folders above it with "/" between them."""
        return self._core.folder

    @property
    def attributes(self) -> dict[str, _core.Attribute]:
        """Those that were read, with the units of their figures."""
        return {one.name: one for one in self._core.attributes}

    def __getitem__(self, attribute: str) -> Value:
        """None when the record has no value. Raises `Error` for an attribute that was not read."""
        return self._core.get(attribute)

    def number(self, attribute: str, unit: str) -> float | None:
        """The figure in that unit, the middle of a range; None when there is none."""
        return self._core.number(attribute, unit)

    def __iter__(self) -> Iterator[str]:
        return iter(self.attributes)

    def __len__(self) -> int:
        return len(self.attributes)

    def __contains__(self, attribute: object) -> bool:
        return is_found(attribute, self._core.get, ErrorCode.INVALID_ARGUMENT)

    @overload
    def get(self, attribute: str, /) -> Value:
        ...

    @overload
    def get(self, attribute: str, /, default: Value | T) -> Value | T:
        ...

    def get(self, attribute: str, /, default: Any = None) -> Any:
        """The value; `default` for an attribute that was not read."""
        return self[attribute] if attribute in self else default

    def __eq__(self, other: object) -> bool:
        return self is other

    def __hash__(self) -> int:
        return id(self)

    def _ipython_key_completions_(self) -> list[str]:
        return list(self)

    def __repr__(self) -> str:
        return f"<lumo.Record {self.name!r} in {self.folder!r}>"

    def _repr_html_(self) -> str:
        return _html.record_html(self)


class RecordStream(Iterator[Record]):
    """Records as they are read, once, in the order of the selection unless the options say
    otherwise. Reading ahead begins with the first record; `close`, or leaving a `with`, gives up
    what is under way. Not to be used by several threads at once."""

    def __init__(self, core: _core.RecordStream, reporter: _progress.Reporter) -> None:
        self._core = core
        self._reporter = reporter

    @property
    def attributes(self) -> dict[str, _core.Attribute]:
        """Those that are read, with the units of their figures."""
        return {one.name: one for one in self._core.attributes}

    @property
    def progress(self) -> _core.Progress:
        """How far the read has come."""
        return self._core.progress

    def chunks(self) -> Iterator[Columns]:
        """The rest as columns, a chunk for each call to the server."""
        attributes = self._core.attributes
        with self._reporter:
            while (columns := self._core.next_columns()) is not None:
                yield Columns(columns, attributes)

    def to_columns(self, *, long: str | None = None) -> Columns:
        """The rest as one table."""
        with self._reporter:
            return Columns(self._core.columns(long or ""), self._core.attributes)

    def close(self) -> None:
        """Gives up what is under way."""
        self._reporter.close()
        self._core.close()

    def __next__(self) -> Record:
        try:
            record = self._core.next_record()
        except BaseException:
            self._reporter.close()
            raise
        if record is None:
            self._reporter.close()
            raise StopIteration
        return Record(record)

    def __enter__(self) -> RecordStream:
        return self

    def __exit__(self, *exception: object) -> None:
        self.close()
