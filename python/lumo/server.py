"""Servers, their databases and tables, and records of these."""

from __future__ import annotations

import os
from collections.abc import Iterable, Iterator, Mapping
from typing import TYPE_CHECKING, Any, Literal

from . import _core, _html, _progress
from .columns import Columns
from .errors import Error, ErrorCode, is_found
from .options import Attributes, Auth, ConnectOptions, ReadOptions, names_of
from .records import Record, RecordStream

if TYPE_CHECKING:
    from typing_extensions import Unpack

    import pandas as pd


def connect(server: str = "", *, auth: Auth = None, **options: Unpack[ConnectOptions]) -> Server:
    """The way to a server, by its URL or by the name of a profile; sends nothing yet.

    Without a server it is the one of LUMO_URL, then the default profile. `auth` is "ticket" for the
    current user's Kerberos ticket, "anonymous", or a user with a password; `user=` and `password=`
    say the same. Raises `Error` (INVALID_ARGUMENT)::

        server = lumo.connect("https://server/service_layer", auth="ticket")
    """
    given: dict[str, Any] = dict(options)
    if isinstance(auth, tuple) and len(auth) == 2:
        given["user"], given["password"] = auth
        auth = "password"
    elif auth is None and given.get("user"):
        auth = "password"
    if auth not in (None, "ticket", "password", "anonymous"):
        raise Error(
            ErrorCode.INVALID_ARGUMENT,
            'auth is "ticket", "password", "anonymous" or a tuple of user and password',
        )
    if auth == "password" and not given.get("user"):
        given["user"] = os.environ.get("LUMO_USER")
        auth = "password" if given["user"] else None
    return Server(_core.Client(server, log_on=auth, **given))


class Server:
    """A server. Safe to use from several threads; connections are shared and made when needed.

    ::

        server["ENG_MATERIALS"]["Materials"]
    """

    def __init__(self, client: _core.Client) -> None:
        self._client = client

    @property
    def url(self) -> str:
        """Of the server."""
        return self._client.url

    @property
    def databases(self) -> dict[str, Database]:
        """By their keys, in the server's order."""
        return {key: Database(self._client, key, name) for key, name in self._client.databases()}

    def __getitem__(self, database: str) -> Database:
        """By key or name, in whatever case, or by a beginning that no other has."""
        return Database(self._client, *self._client.find_database(database))

    def __contains__(self, database: object) -> bool:
        return is_found(database, self._client.find_database)

    def __iter__(self) -> Iterator[str]:
        return iter(self.databases)

    def __len__(self) -> int:
        return len(self.databases)

    def read(self, partition: str, **options: Unpack[ReadOptions]) -> RecordStream:
        """Reads a part of a selection that another process or machine made, see
        `Selection.partitions`; its address is of no matter."""
        part = _core.Partition(partition)
        table = Table(self._client.open_table(part.database, part.table))
        return table.with_ids(part.records).read(part.attributes or None, **options)

    def _ipython_key_completions_(self) -> list[str]:
        return list(self.databases)

    def __repr__(self) -> str:
        return f"<lumo.Server {self.url}>"

    def _repr_html_(self) -> str:
        rows = [(key, one.name, ", ".join(one.tables)) for key, one in self.databases.items()]
        return _html.table_html(self.url, ("key", "database", "tables"), rows)


class Database:
    """A database of a server."""

    def __init__(self, client: _core.Client, key: str, name: str) -> None:
        self._client = client
        self.key = key
        self.name = name

    @property
    def tables(self) -> list[str]:
        """Names of its tables."""
        return self._client.tables(self.key)

    def __getitem__(self, table: str) -> Table:
        """By a name in whatever case, or by a beginning that no other has."""
        return Table(self._client.open_table(self.key, table))

    def __contains__(self, table: object) -> bool:
        return is_found(table, self.__getitem__)

    def __iter__(self) -> Iterator[str]:
        return iter(self.tables)

    def __len__(self) -> int:
        return len(self.tables)

    def _ipython_key_completions_(self) -> list[str]:
        return self.tables

    def __repr__(self) -> str:
        return f"<lumo.Database {self.key!r}: {self.name}>"


class _Readable:
    """What tables and selections share."""

    def _selection(self) -> _core.Selection:
        raise NotImplementedError

    def where(self, condition: str, *, match: Literal["overlap", "all"] = "overlap") -> Selection:
        """Those that fulfil the condition, and all conditions before: "density < 3000 kg/m^3".

        A range fulfils it when some part of it does, or with match="all" when the whole does.
        """
        return Selection(self._selection().where(condition, match))

    def text(self, words: str) -> Selection:
        """Those that a text search finds."""
        return Selection(self._selection().text(words))

    def below(self, folder: str) -> Selection:
        """Those in that folder and the folders below, by its path: "Metals and alloys/Ferrous"."""
        return Selection(self._selection().below(folder))

    def in_subset(self, subset: str) -> Selection:
        """Those in that subset."""
        return Selection(self._selection().in_subset(subset))

    def named(self, names: str | Iterable[str]) -> Selection:
        """Just these, or this one, by name, path, "id:69" or GUID, in their order."""
        given = [names] if isinstance(names, str) else list(names)
        return Selection(self._selection().named(given))

    def with_ids(self, ids: Iterable[_core.RecordId]) -> Selection:
        """Just these, in their order."""
        return Selection(self._selection().with_ids(list(ids)))

    def ids(self) -> list[_core.RecordId]:
        """Identities of the records, without their values."""
        return self._selection().ids()

    def partitions(self, records_each: int, attributes: Attributes = None) -> list[str]:
        """The records in parts, each a line of text for another process or machine, which reads it
        by `Server.read`. No user and no password is in it."""
        return self._selection().partitions(records_each, names_of(attributes))

    def read(self, attributes: Attributes = None, **options: Unpack[ReadOptions]) -> RecordStream:
        """The records one after the other, with these attributes or with all::

        for record in materials.read(["Density"]):
            print(record.name, record["Density"])
        """
        reporter = _progress.Reporter(options)
        core = self._selection().read(names_of(attributes), **reporter.options)
        return RecordStream(core, reporter)

    def to_columns(
        self,
        attributes: Attributes = None,
        *,
        long: str | None = None,
        units: Mapping[str, str] | None = None,
        **options: Unpack[ReadOptions],
    ) -> Columns:
        """The values as columns in Arrow's layout, which numpy, pandas, polars, DuckDB and pyarrow
        see without a copy.

        `long` names an attribute of points, curves or a table, of which each point or row becomes
        a row. `units` gives units for attributes or columns: {"Density": "g/cm^3"}.
        """
        names = long if attributes is None else attributes
        with self.read(names, **options) as stream:
            columns = stream.to_columns(long=long)
        return columns.in_units(units) if units else columns

    def to_pandas(
        self,
        attributes: Attributes = None,
        *,
        long: str | None = None,
        units: Mapping[str, str] | None = None,
        **options: Unpack[ReadOptions],
    ) -> pd.DataFrame:
        """The values as a frame with the records' names as its index; see `Columns.to_pandas`::

        materials.to_pandas(["Density"], units={"Density": "g/cm^3"})
        materials.to_pandas(long="Yield strength against temperature")
        """
        return self.to_columns(attributes, long=long, units=units, **options).to_pandas()

    def __iter__(self) -> Iterator[Record]:
        return iter(self.read())

    def __arrow_c_stream__(self, requested_schema: object = None) -> object:
        return self.to_columns().__arrow_c_stream__(requested_schema)


class Selection(_Readable):
    """Some records of a table. Nothing is sent before they are read."""

    def __init__(self, core: _core.Selection) -> None:
        self._core = core

    def _selection(self) -> _core.Selection:
        return self._core

    def __contains__(self, name: object) -> bool:
        found: list[_core.RecordId] = []
        is_there = is_found(name, lambda text: found.extend(self._core.named([text]).ids()))
        return is_there and found[0].identity in {one.identity for one in self.ids()}

    def __repr__(self) -> str:
        return "<lumo.Selection>"


class Table(_Readable):
    """A table of a database: all its records, unless they are narrowed by `where` and the like."""

    def __init__(self, core: _core.Table) -> None:
        self._core = core

    def _selection(self) -> _core.Selection:
        return self._core.all()

    @property
    def name(self) -> str:
        """As the server has it."""
        return self._core.name

    @property
    def database(self) -> str:
        """Key of its database."""
        return self._core.database

    @property
    def attributes(self) -> dict[str, _core.Attribute]:
        """By name, in the server's order; asked for once."""
        return {one.name: one for one in self._core.attributes}

    @property
    def subsets(self) -> list[str]:
        """Names of its subsets."""
        return self._core.subsets

    @property
    def unit_systems(self) -> list[str]:
        """Names of the unit systems that it can be read in."""
        return self._core.unit_systems

    @property
    def currencies(self) -> list[str]:
        """Codes of the currencies that it can be read in."""
        return self._core.currencies

    @property
    def units(self) -> _core.Units:
        """The server's own factors, by which alone figures are converted."""
        return self._core.units

    def attribute(self, name: str) -> _core.Attribute:
        """By a name in whatever case, or by a beginning that no other has."""
        return self._core.find_attribute(name)

    def get(
        self, name: str, attributes: Attributes = None, **options: Unpack[ReadOptions]
    ) -> Record:
        """One record by its name, its path, "id:69" or a GUID, with these attributes or with all.

        Raises `Error`: NOT_FOUND, with names that are alike; AMBIGUOUS.
        """
        reporter = _progress.Reporter({**options, "progress": options.get("progress") or False})
        return Record(self._core.get(name, names_of(attributes), **reporter.options))

    def __getitem__(self, name: str) -> Record:
        return self.get(name)

    def __contains__(self, name: object) -> bool:
        any_one = next((one.name for one in self._core.attributes), None)
        return is_found(name, lambda text: self.get(text, any_one))

    def import_frame(
        self,
        frame: pd.DataFrame,
        *,
        dry_run: bool = True,
        journal: str | os.PathLike[str] | None = None,
        units: Mapping[str, str] | None = None,
        make_folders: bool = False,
        keep_going: bool = False,
    ) -> pd.DataFrame:
        """Makes and changes records from a frame such as `to_pandas` makes; at first only looks.

        The index, or the column "record.name", has the names; "record.folder" and
        "record.identity" say more of which record is meant. Other columns are attributes, or both
        ends of ranges; `units` gives units for either, else they are those of `attrs["units"]`,
        else the attributes' own. A `Quantity` or `Range` has its own. Cells without a value leave
        the record as it is; one end of a range without a value is open. A cell of another kind
        than its attribute, such as a number for a date, is a fault of its row.

        With `dry_run` nothing is written. Without, `journal` is a file that must not exist yet: a
        run that ends early can be resumed or undone by it (`lumo import --resume`). Rows with
        faults keep everything from being written unless `keep_going` leaves them out.

        The report is a frame with a line for each change and each fault: `kind` is "create",
        "change", "same", "refused" or "waiting", and `row` counts from 0. `attrs` has "counts",
        "faults" of the whole, "new_folders", "stopped" and "written". Raises `Error`.
        """
        from .imports import import_frame

        return import_frame(
            self._core, frame, dry_run=dry_run, journal=journal, units=units,
            make_folders=make_folders, keep_going=keep_going,
        )  # fmt: skip

    def _ipython_key_completions_(self) -> list[str]:
        frame = self.to_columns([next(iter(self.attributes))], progress=False)
        return [str(name) for name in frame["record.name"].objects]

    def __repr__(self) -> str:
        return f"<lumo.Table {self.name!r} of {self.database!r}>"

    def _repr_html_(self) -> str:
        rows = [(one.name, one.type, one.unit) for one in self.attributes.values()]
        return _html.table_html(self.name, ("attribute", "type", "unit"), rows)
