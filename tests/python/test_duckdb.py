"""DuckDB reads the Arrow streams as an engine that shares no code with us, and counts the same.

Its library comes with npm's @duckdb/node-api. LUMO_DUCKDB names libduckdb.so; without it the test
looks below the build folder's duckdb/, where `npm install --prefix <build>/duckdb @duckdb/node-api`
puts it.
"""

from __future__ import annotations

import ctypes
import datetime
import os
from collections.abc import Callable, Iterator
from pathlib import Path
from typing import Any

import pytest
from arrow import address_of

import lumo


class Result(ctypes.Structure):
    _fields_ = [("content", ctypes.c_uint64 * 6)]


def library() -> ctypes.CDLL:
    build = Path(lumo.__file__).absolute().parents[2]
    found = [os.environ.get("LUMO_DUCKDB"), *build.glob("duckdb/**/libduckdb.so")]
    paths = [path for path in found if path]
    if not paths:
        pytest.skip("there is no DuckDB: npm install --prefix <build>/duckdb @duckdb/node-api")
    duckdb = ctypes.CDLL(str(paths[0]))
    duckdb.duckdb_value_varchar.restype = ctypes.c_void_p
    duckdb.duckdb_result_error.restype = ctypes.c_char_p
    duckdb.duckdb_value_varchar.argtypes = [
        ctypes.POINTER(Result),
        ctypes.c_uint64,
        ctypes.c_uint64,
    ]
    return duckdb


class Engine:
    """A database in memory."""

    def __init__(self) -> None:
        self._duckdb = library()
        self._database, self._connection = ctypes.c_void_p(), ctypes.c_void_p()
        assert self._duckdb.duckdb_open(None, ctypes.byref(self._database)) == 0
        assert self._duckdb.duckdb_connect(self._database, ctypes.byref(self._connection)) == 0

    def load(self, capsule: object) -> None:
        """Makes the table t of a stream; the scan of a stream cannot leave columns out."""
        stream = ctypes.c_void_p(address_of(capsule))
        assert self._duckdb.duckdb_arrow_scan(self._connection, b"stream", stream) == 0
        self.row('create table t as select * from "stream"')

    def row(self, query: str) -> list[str | None]:
        result = Result()
        state = self._duckdb.duckdb_query(self._connection, query.encode(), ctypes.byref(result))
        assert state == 0, self._duckdb.duckdb_result_error(ctypes.byref(result))
        count = self._duckdb.duckdb_column_count(ctypes.byref(result))
        cells = []
        for column in range(count):
            text = self._duckdb.duckdb_value_varchar(ctypes.byref(result), column, 0)
            cells.append(ctypes.string_at(text).decode() if text else None)
            self._duckdb.duckdb_free(ctypes.c_void_p(text))
        self._duckdb.duckdb_destroy_result(ctypes.byref(result))
        return cells

    def close(self) -> None:
        self._duckdb.duckdb_disconnect(ctypes.byref(self._connection))
        self._duckdb.duckdb_close(ctypes.byref(self._database))


@pytest.fixture
def engine() -> Iterator[Engine]:
    engine = Engine()
    yield engine
    engine.close()


def micros(when: datetime.datetime) -> int:
    return (when - datetime.datetime(1970, 1, 1)) // datetime.timedelta(microseconds=1)


def words(given: tuple[str, ...]) -> str:
    return "|".join(given)


# A column; what of a record's value stands in it; what DuckDB sums, orders, and ours likewise.
Form = tuple[str, Callable[[Any], Any], str, Callable[[Any], float], str, Callable[[Any], Any]]
SAME: Callable[[Any], Any] = lambda value: value  # noqa: E731
FORMS: dict[str, Form] = {
    "range": ("Density.low", lambda v: v.low, "{}", float, "{}", SAME),
    "integer": ("Number of suppliers", SAME, "{}", float, "{}", SAME),
    "logical": ("Recyclable", SAME, "{}::int", float, "{}::int", int),
    "moment": ("Last reviewed", micros, "epoch_us({})", float, "epoch_us({})", SAME),
    "text": ("Designation", SAME, "strlen({})", lambda v: len(v.encode()), "{}", str.encode),
    "long text": ("Typical uses", SAME, "length({})", len, "{}", str.encode),
    "words": ("Durability: sea water", words, "length(array_to_string({}, '|'))", len,
              "array_to_string({}, '|')", str.encode),
    "points": ("Hardness by condition.points", len, "{}", float, "{}", SAME),
    "curves": ("Yield strength against temperature.curves", len, "{}", float, "{}", SAME),
    "grid": ("Composition.rows", len, "{}", float, "{}", SAME),
    "link": ("Data sheet", lambda v: v.url, "length({})", len, "{}", str.encode),
    "picture": ("Photo.data", lambda v: v.data, "octet_length({})", len, "hex({})",
                lambda v: v.hex().upper().encode()),
    "file": ("Processing note.fileName", lambda v: v.name, "length({})", len, "{}",
             str.encode),
}  # fmt: skip


def test_duckdb_counts_sums_and_orders_as_we_do(materials: lumo.Table, engine: Engine) -> None:
    attributes = sorted({name.rpartition(".")[0] or name for name, *_ in FORMS.values()})
    engine.load(materials.to_columns(attributes, with_files=True).__arrow_c_stream__())
    records = list(materials.read(attributes, with_files=True))
    assert engine.row("select count(*) from t") == [str(len(records))]
    for kind, (column, part, summed, sum_of, ordered, order_of) in FORMS.items():
        attribute = column if column in attributes else column.rpartition(".")[0]
        ours = [part(record[attribute]) for record in records if record[attribute] is not None]
        ours = [value for value in ours if value is not None]
        field = f'"{column}"'
        count, total, least, most = engine.row(
            f"select count({field}), sum({summed.format(field)}), min({ordered.format(field)}), "
            f"max({ordered.format(field)}) from t"
        )
        assert ours and count == str(len(ours)), kind
        assert float(total or 0) == pytest.approx(sum(map(sum_of, ours)), rel=1e-12), kind
        for theirs, our in ((least, min(map(order_of, ours))), (most, max(map(order_of, ours)))):
            assert theirs is not None
            assert theirs.encode() == our if isinstance(our, bytes) else float(theirs) == our, kind
    print(f"{len(FORMS)} kinds of columns, {len(records)} rows")


def test_duckdb_reads_marks_and_long_forms(marked_materials: lumo.Table, engine: Engine) -> None:
    columns = marked_materials.to_columns(["Density"], concurrency=1, chunk_size=100)
    engine.load(columns.__arrow_c_stream__())
    marks = columns["Density.low"]
    assert engine.row(
        """select count(*) filter (len("record.notApplicable") = 1),
                  count(*) filter (list_contains("record.estimated", 'Density')),
                  count("Density.low") from t"""
    ) == [
        str(marks.not_applicable.sum()), str(marks.estimated.sum()), str(marks.valid.sum()),
    ]  # fmt: skip


@pytest.mark.parametrize("kind", ["Composition", "Yield strength against temperature"])
def test_duckdb_reads_long_forms(materials: lumo.Table, engine: Engine, kind: str) -> None:
    frame = materials.to_pandas(long=kind)
    engine.load(materials.to_columns(long=kind).__arrow_c_stream__())
    column = "Most" if kind == "Composition" else kind
    count, total = engine.row(f'select count(*), sum("{column}") from t')
    assert count == str(len(frame))
    assert float(total or 0) == pytest.approx(frame[column].sum(), rel=1e-12)
