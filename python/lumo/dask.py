"""Reading on several machines with Dask. Reads only; see docs/python.md for when it pays.

A selection is cut into parts, each a line of text without user and password; workers read them,
and a semaphore of the cluster keeps the calls at once to what the server bears. Workers log on as
their own environment or profile says::

    import lumo.dask
    from distributed import Client

    with Client("scheduler:8786"):
        frame = lumo.dask.read(materials, ["Density", "Price"], max_calls=4)
        print(frame["Price.low"].mean().compute())
"""

from __future__ import annotations

from collections.abc import Mapping
from contextlib import nullcontext
from typing import TYPE_CHECKING, Any, Union

from . import _core
from .errors import Error, ErrorCode
from .options import Attributes, names_of
from .server import Selection, Table, connect

if TYPE_CHECKING:
    import dask.dataframe
    import pandas as pd

_SECRET = ("password", "proxy_password")


def _semaphore(server: str, max_calls: int) -> Any:
    """One for each server, in the cluster whose client is current; none without a cluster."""
    try:
        from distributed import Semaphore, get_client

        get_client()
    except (ImportError, ValueError):
        return None
    return Semaphore(max_leases=max_calls, name=f"lumo {server}")


def _read_part(
    part: str, server: str, long: str | None, units: Mapping[str, str],
    connection: Mapping[str, Any], options: Mapping[str, Any], semaphore: Any
) -> pd.DataFrame:  # fmt: skip
    """On a worker, one call at a time, all of them under a lease of the semaphore."""
    with semaphore if semaphore is not None else nullcontext():
        stream = connect(server, **connection).read(part, **options)
        return stream.to_columns(long=long).in_units(units).to_pandas(marks=True)


def read(
    records: Union[Table, Selection],
    attributes: Attributes = None,
    *,
    records_each: int = 1000,
    max_calls: int = 4,
    long: str | None = None,
    units: Mapping[str, str] | None = None,
    connection: Mapping[str, Any] | None = None,
    **options: Any,
) -> dask.dataframe.DataFrame:
    """The records as a frame of Dask, a partition for each `records_each` of them.

    The identities of the records are asked for now, the values when the frame is computed.
    `max_calls` is the most calls at once to the server from the whole cluster; each partition makes
    one at a time. The first read of a server in a cluster sets it. Without a cluster the process's
    own limit holds. `connection` has options of `connect` for the workers, such as
    {"auth": "ticket"}, but no password: workers take theirs from LUMO_PASSWORD_FILE or their
    profile. `long`, `units` and `options` are those of `to_pandas`. Partitions always have the
    columns "record.notApplicable" and "record.estimated". A worker that dies loses nothing but
    time: its parts are read again.
    """
    import dask
    import dask.dataframe

    connection = dict(connection or {})
    is_secret = any(name in connection for name in _SECRET)
    if is_secret or not isinstance(connection.get("auth"), (str, type(None))):
        raise Error(
            ErrorCode.INVALID_ARGUMENT,
            "a password does not go to other machines; set LUMO_PASSWORD_FILE there",
        )
    names = names_of(long if attributes is None else attributes) or None
    options = {**options, "concurrency": 1, "progress": False}
    units = dict(units or {})
    nothing = records.with_ids([]).to_columns(names, long=long, units=units, **options)
    lines = records.partitions(records_each, names)
    if not lines:
        return dask.dataframe.from_pandas(nothing.to_pandas(marks=True), npartitions=1)
    server = _core.Partition(lines[0]).server
    semaphore = _semaphore(server, max_calls)
    task = dask.delayed(_read_part, pure=True)
    parts = [task(line, server, long, units, connection, options, semaphore) for line in lines]
    meta = nothing.to_pandas(marks=True)
    return dask.dataframe.from_delayed(parts, meta=meta, prefix="lumo", verify_meta=False)
