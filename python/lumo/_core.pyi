# The types of the module that C++ makes; programs use the package above it.

from collections.abc import Callable
from typing import Any

import numpy as np
import numpy.typing as npt

from .values import NotApplicable, Value

__version__: str

_Figures = npt.NDArray[np.float64]
_Flags = npt.NDArray[np.bool_]

class Progress:
    """How far a read has come."""

    @property
    def records_done(self) -> int:
        """Handed over."""
    @property
    def records_total(self) -> int:
        """0 while nobody knows."""
    @property
    def bytes(self) -> int:
        """Received."""
    @property
    def workers(self) -> int:
        """Calls that may run at once now."""
    @property
    def chunk(self) -> int:
        """Records in the next call."""

class CallEvent:
    """One try of a call, as it ended; times are seconds since the try began."""

    @property
    def operation(self) -> str:
        """Such as "GetTables"."""
    @property
    def attempt(self) -> int:
        """Counted from 1."""
    @property
    def http_status(self) -> int:
        """0 without a reply."""
    @property
    def failure(self) -> str | None:
        """Value of an `ErrorCode`; None on success."""
    @property
    def bytes_sent(self) -> int:
        """Of the body, as `bytes_received`."""
    @property
    def bytes_received(self) -> int:
        """0 without a reply."""
    @property
    def name_lookup(self) -> float:
        """The server's address is known."""
    @property
    def connect(self) -> float:
        """The connection stands."""
    @property
    def tls(self) -> float:
        """TLS is agreed on."""
    @property
    def first_byte(self) -> float:
        """The reply begins."""
    @property
    def total(self) -> float:
        """The try is over."""

class RecordId:
    """A record, by what the server knows it by."""

    def __init__(self, database: str, identity: int = 0, guid: str = "") -> None: ...
    @property
    def database(self) -> str:
        """Key."""
    @property
    def identity(self) -> int:
        """Of the record's history; 0 when it is not known."""
    @property
    def guid(self) -> str:
        """Of one version; empty when it is not known."""

class Curve:
    @property
    def x_name(self) -> str: ...
    @property
    def x_unit(self) -> str: ...
    @property
    def y_unit(self) -> str: ...
    @property
    def x(self) -> _Figures: ...
    @property
    def y(self) -> _Figures: ...
    @property
    def y_high(self) -> _Figures: ...
    @property
    def x_words(self) -> list[str]: ...
    @property
    def estimated(self) -> list[bool]: ...
    @property
    def x_is_logarithmic(self) -> bool: ...
    @property
    def interpolation(self) -> str: ...
    @property
    def parameters(self) -> dict[str, float | str]: ...
    @property
    def parameter_units(self) -> dict[str, str]: ...
    def at(self, places: _Figures) -> _Figures: ...
    def in_units(self, units: Units, unit: str) -> Curve: ...

class Units:
    """Units of a table and the server's own factors between them; no others convert."""

    def knows(self, unit: str) -> bool:
        """Whether the server told of this unit."""
    def targets(self, unit: str) -> list[str]:
        """What figures of that unit can be converted into, itself included."""
    def can_convert(self, source: str, target: str) -> bool:
        """Whether it told how one becomes the other."""
    def convert(self, figures: Any, source: str, target: str) -> Any:
        """A figure, or an array of them: numpy's, masked, or of pandas, where NA becomes NaN.

        Raises `Error` (INVALID_ARGUMENT), and numpy's own errors for what is not figures."""

class Parameter:
    """What figures and curves depend on."""

    @property
    def name(self) -> str:
        """As the server has it."""
    @property
    def unit(self) -> str:
        """In which its figures stand."""
    @property
    def is_discrete(self) -> bool:
        """Takes words, not numbers."""
    @property
    def is_logarithmic(self) -> bool:
        """The scale of its axis."""
    @property
    def words(self) -> list[str]:
        """Those that a discrete one takes."""
    @property
    def numbers(self) -> list[float]:
        """Those that a restricted one takes."""

class GridColumn:
    @property
    def name(self) -> str: ...
    @property
    def type(self) -> str: ...
    @property
    def unit(self) -> str: ...
    @property
    def words(self) -> list[str]: ...

class Attribute:
    """An attribute of a table."""

    @property
    def name(self) -> str:
        """As the server has it."""
    @property
    def identity(self) -> int:
        """By which requests name it."""
    @property
    def type(self) -> str:
        """In words: "range of numbers"."""
    @property
    def unit(self) -> str:
        """In which its figures stand."""
    @property
    def is_multi_valued(self) -> bool:
        """Takes several words."""
    @property
    def is_searchable(self) -> bool:
        """Conditions may be on it."""
    @property
    def words(self) -> list[str]:
        """Those that a discrete one takes."""
    @property
    def columns(self) -> list[GridColumn]:
        """Of a grid."""
    @property
    def parameters(self) -> list[Parameter]:
        """On which its figures or curves depend."""

class Column:
    @property
    def name(self) -> str: ...
    @property
    def attribute(self) -> str: ...
    @property
    def unit(self) -> str: ...
    @property
    def type(self) -> str: ...
    @property
    def null_count(self) -> int: ...
    @property
    def address(self) -> int: ...
    @property
    def values(self) -> npt.NDArray[Any]: ...
    @property
    def objects(self) -> npt.NDArray[Any]: ...
    @property
    def valid(self) -> _Flags: ...
    @property
    def not_applicable(self) -> _Flags: ...
    @property
    def estimated(self) -> _Flags: ...
    def __len__(self) -> int: ...

class Columns:
    @property
    def names(self) -> list[str]: ...
    @property
    def rows(self) -> int: ...
    @property
    def chunks(self) -> int: ...
    def column(self, name: str) -> Column: ...
    def in_units(self, units: dict[str, str]) -> Columns: ...
    def arrow_stream(self, requested_schema: object = None) -> object: ...

class Record:
    @property
    def id(self) -> RecordId: ...
    @property
    def name(self) -> str: ...
    @property
    def full_name(self) -> str: ...
    @property
    def folder(self) -> str: ...
    @property
    def attributes(self) -> list[Attribute]: ...
    def get(self, attribute: str) -> Value: ...
    def number(self, attribute: str, unit: str) -> float | None: ...

class RecordStream:
    def next_record(self) -> Record | None: ...
    def next_columns(self) -> Columns | None: ...
    def columns(self, long: str = "") -> Columns: ...
    def close(self) -> None: ...
    @property
    def attributes(self) -> list[Attribute]: ...
    @property
    def progress(self) -> Progress: ...

class Selection:
    def where(self, condition: str, match: str = "overlap") -> Selection: ...
    def text(self, words: str) -> Selection: ...
    def below(self, folder: str) -> Selection: ...
    def in_subset(self, subset: str) -> Selection: ...
    def named(self, names: list[str]) -> Selection: ...
    def with_ids(self, ids: list[RecordId]) -> Selection: ...
    def ids(self) -> list[RecordId]: ...
    def partitions(self, records_each: int, attributes: list[str]) -> list[str]: ...
    def read(self, attributes: list[str], **options: Any) -> RecordStream: ...

class Import:
    def add(
        self, number: int, identity: int, folder: str, name: str,
        cells: list[tuple[str, str, Any, str]], faults: list[tuple[str, str]],
    ) -> None: ...
    def run(self, journal: str, make_folders: bool, keep_going: bool) -> dict[str, Any]: ...

class Table:
    def new_import(self) -> Import: ...
    @property
    def name(self) -> str: ...
    @property
    def database(self) -> str: ...
    @property
    def attributes(self) -> list[Attribute]: ...
    @property
    def subsets(self) -> list[str]: ...
    @property
    def unit_systems(self) -> list[str]: ...
    @property
    def currencies(self) -> list[str]: ...
    @property
    def units(self) -> Units: ...
    def find_attribute(self, name: str) -> Attribute: ...
    def all(self) -> Selection: ...
    def get(self, name: str, attributes: list[str], **options: Any) -> Record: ...

class Client:
    def __init__(self, server: str, **options: Any) -> None: ...
    @property
    def url(self) -> str: ...
    def databases(self) -> list[tuple[str, str]]: ...
    def find_database(self, database: str) -> tuple[str, str]: ...
    def tables(self, database: str) -> list[str]: ...
    def open_table(self, database: str, table: str) -> Table: ...

class Partition:
    def __init__(self, text: str) -> None: ...
    @property
    def server(self) -> str: ...
    @property
    def database(self) -> str: ...
    @property
    def table(self) -> str: ...
    @property
    def attributes(self) -> list[str]: ...
    @property
    def records(self) -> list[RecordId]: ...
