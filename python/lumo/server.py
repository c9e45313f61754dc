"""Servers, their databases and tables, and records of these."""

from __future__ import annotations

import os
from collections.abc import Callable, Iterable, Iterator, Mapping, Sequence
from typing import TYPE_CHECKING, Any, Literal, TypedDict, Union

from . import _core, _html, _progress
from .columns import Columns
from .errors import Error, ErrorCode
from .values import Value

if TYPE_CHECKING:
    from typing_extensions import Unpack

    import pandas as pd

Attributes = Union[str, Iterable[str], None]
Auth = Union[None, Literal["ticket", "password", "anonymous"], tuple[str, str]]


class ConnectOptions(TypedDict, total=False):
    """What `connect` takes by name. Times are in seconds. What is left out comes from the
    environment, then from the profile of the server in ~/.config/lumo/servers.ini."""

    user: str | None
    password: str | None
    domain: str | None
    namespace: str | None  #: base of the vendor's namespace
    application_name: str | None
    ca_file: str | None  #: certificates of authorities, PEM
    ca_folder: str | None  #: the same as a folder of files under their hashed names
    certificate_file: str | None  #: the client's own, PEM
    key_file: str | None
    proxy: str | None
    proxy_user: str | None
    proxy_password: str | None
    resolve_timeout: float | None  #: 10 by default; 0 waits for ever, as in the next two
    connect_timeout: float | None  #: 60 by default
    stall_timeout: float | None  #: longest silence of the server, 300 by default
    max_concurrency: int | None  #: calls at once from this process, 4 by default
    max_attempts: int | None  #: tries of a call that reads, 5 by default
    max_retry_time: float | None  #: no try begins later than this after the first, 600 by default
    on_call: Callable[[_core.CallEvent], object] | None  #: told of each try of each call


class ReadOptions(TypedDict, total=False):
    """What all functions that read records take by name."""

    unit_system: str | None  #: such as "SI"; the attributes' own units by default
    currency: str | None
    chunk_size: int | None  #: records in a call; adapts to the server by default
    concurrency: int | None  #: calls at once; as many as the connection may make by default
    ordered: bool | None  #: False hands chunks over as they come
    with_files: bool | None  #: the bytes of files and pictures, not only their addresses
    time_limit: float | None  #: seconds for the whole read
    #: a function that is told of each step on the calling thread; False shows no progress bar,
    #: True always one; by default there is one in terminals and notebooks when it takes long
    progress: bool | Callable[[_core.Progress], object] | None


def _names(attributes: Attributes) -> list[str]:
    if attributes is None:
        return []
    return [attributes] if isinstance(attributes, str) else list(attributes)


def connect(server: str = "", *, auth: Auth = None, **options: Unpack[ConnectOptions]) -> Server:
    """The way to a server, by its URL or by the name of a profile; sends nothing yet.

    Without a server it is the one of LUMO_URL, then the default profile. `auth` is "ticket" for the
    current user's Kerberos ticket, "anonymous", or a user with a password; `user=` and `password=`
    say the same. Raises `Error` (INVALID_ARGUMENT)::

        server = lumo.connect("https://server/service_layer", auth="ticket")
    """
    given: dict[str, Any] = dict(options)
    if isinstance(auth, tuple):
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
        return self._client.url

    @property
    def databases(self) -> dict[str, Database]:
        """By their keys, in the server's order."""
        return {key: Database(self._client, key, name) for key, name in self._client.databases()}

    def __getitem__(self, database: str) -> Database:
        """By key or name, in whatever case, or by a beginning that no other has."""
        return Database(self._client, *self._client.find_database(database))

    def __iter__(self) -> Iterator[str]:
        return iter(self.databases)

    def __len__(self) -> int:
        return len(self.databases)

    def read(self, partition: str, **options: Unpack[ReadOptions]) -> RecordStream:
        """Reads a part of a selection that another process or machine made, see
        `Selection.partitions`; its address is of no matter."""
        part = _core.Partition(partition)
        table = Table(self._client.open_table(part.database, part.table))
        return table.with_ids(part.records).read(part.attributes, **options)

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
        return self._client.tables(self.key)

    def __getitem__(self, table: str) -> Table:
        """By a name in whatever case, or by a beginning that no other has."""
        return Table(self._client.open_table(self.key, table))

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

    def named(self, names: Iterable[str]) -> Selection:
        """Just these, by name, path, "id:69" or GUID, in their order."""
        return Selection(self._selection().named(list(names)))

    def with_ids(self, ids: Iterable[_core.RecordId]) -> Selection:
        """Just these, in their order."""
        return Selection(self._selection().with_ids(list(ids)))

    def ids(self) -> list[_core.RecordId]:
        """Identities of the records, without their values."""
        return self._selection().ids()

    def partitions(self, records_each: int, attributes: Attributes = None) -> list[str]:
        """The records in parts, each a line of text for another process or machine, which reads it
        by `Server.read`. No user and no password is in it."""
        return self._selection().partitions(records_each, _names(attributes))

    def read(self, attributes: Attributes = None, **options: Unpack[ReadOptions]) -> RecordStream:
        """The records one after the other, with these attributes or with all::

            for record in materials.read(["Density"]):
                print(record.name, record["Density"])
        """
        reporter = _progress.Reporter(options)
        core = self._selection().read(_names(attributes), **reporter.options)
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
        names = [long] if long is not None and attributes is None else _names(attributes)
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
        return self._core.subsets

    @property
    def unit_systems(self) -> list[str]:
        return self._core.unit_systems

    @property
    def currencies(self) -> list[str]:
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
        return Record(self._core.get(name, _names(attributes), **reporter.options))

    def __getitem__(self, name: str) -> Record:
        return self.get(name)

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
        "record.identity" say more of which record is meant. Other columns are attributes, or the
        ends of ranges; units are those of `attrs["units"]` or `units`, else the attributes' own.
        Cells without a value leave the record as it is.

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


class Record(Mapping[str, Value]):
    """A record with the values that were read, by their attributes."""

    def __init__(self, core: _core.Record) -> None:
        self._core = core

    @property
    def id(self) -> _core.RecordId:
        return self._core.id

    @property
    def name(self) -> str:
        return self._core.name

    @property
    def full_name(self) -> str:
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
        return attribute in self.attributes

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
        self._chunk: Iterator[_core.Record] = iter(())

    @property
    def attributes(self) -> dict[str, _core.Attribute]:
        """Those that are read, with the units of their figures."""
        return {one.name: one for one in self._core.attributes}

    @property
    def progress(self) -> _core.Progress:
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
        self._reporter.close()
        self._core.close()

    def __next__(self) -> Record:
        for record in self._chunk:
            return Record(record)
        try:
            chunk = self._core.next_chunk()
        except BaseException:
            self._reporter.close()
            raise
        if chunk is None:
            self._reporter.close()
            raise StopIteration
        self._chunk = iter(chunk)
        return self.__next__()

    def __enter__(self) -> RecordStream:
        return self

    def __exit__(self, *exception: object) -> None:
        self.close()
