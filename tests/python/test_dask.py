"""Parts of a selection on several processes, of which one dies."""

from __future__ import annotations

import os
import re
import signal
import urllib.request
from datetime import datetime
from pathlib import Path
from time import sleep

import pandas as pd
import pytest

import lumo

distributed = pytest.importorskip("distributed")

MAX_CALLS = 3
CALL = re.compile(r"^(\S+Z) (\S+) .*?(\d+(?:\.\d+)?) ?ms", re.MULTILINE)


def most_at_once(log: str) -> int:
    """From the log, which has a line for each reply with its time and how long it took."""
    ends = []
    for when, operation, took in CALL.findall(log):
        end = datetime.fromisoformat(when.replace("Z", "+00:00")).timestamp()
        if operation == "GetRecordAttributesByRef":
            ends += [(end - float(took) / 1000 + 0.002, 1), (end, -1)]
    most = now = 0
    for _, step in sorted(ends):
        now += step
        most = max(most, now)
    return most


def test_a_worker_that_is_killed_loses_no_rows_and_no_limit_is_passed(tmp_path: Path) -> None:
    import dask
    import lumo.dask

    log = tmp_path / "calls.log"
    with lumo.sandbox(records=1200, log_file=log) as server:
        materials = server["ENG_MATERIALS"]["Materials"]
        expected = materials.to_columns(["Density", "Recyclable"]).to_pandas(marks=True)
        reads = len(log.read_text())
        slow = urllib.request.Request(
            f"{server.url}/control/faults",
            b"GetRecordAttributesByRef stall 1 every 1",
            method="PUT",
        )
        urllib.request.urlopen(slow).close()
        settings = {
            f"distributed.scheduler.locks.{name}": time
            for name, time in (("lease-timeout", "6s"), ("lease-validation-interval", "1s"))
        }
        with dask.config.set(settings), distributed.LocalCluster(
            n_workers=2, threads_per_worker=4, processes=True, dashboard_address=None
        ) as cluster, distributed.Client(cluster) as client:
            frame = lumo.dask.read(
                materials, ["Density", "Recyclable"], records_each=100, max_calls=MAX_CALLS,
                connection={"auth": "anonymous"}, chunk_size=50,
            )  # fmt: skip
            future = client.compute(frame)
            victim = client.run(os.getpid)
            while len(CALL.findall(log.read_text()[reads:])) < 3 * MAX_CALLS:
                sleep(0.05)
            os.kill(next(iter(victim.values())), signal.SIGKILL)
            read = future.result(timeout=240)
            assert frame.npartitions == -(-len(expected) // 100)
        text = log.read_text()[reads:]
    pd.testing.assert_frame_equal(read, expected)
    most = most_at_once(text)
    print(f"{len(read)} rows from 2 workers, one killed; {most} calls at once at most")
    assert 1 < most <= MAX_CALLS


def test_parts_are_read_as_the_whole_is_and_no_password_goes_to_other_machines() -> None:
    import lumo.dask

    with lumo.sandbox(seed="minimal") as server:
        table = server["ENG_MATERIALS"]["Materials"]
        for pair in (("lumo", "secret"), ["lumo", "secret"]):
            with pytest.raises(lumo.Error, match="password"):
                lumo.dask.read(table, ["Density"], connection={"auth": pair})
        units = {"Density": "g/cm^3"}
        frame = lumo.dask.read(
            table, (name for name in ["Density"]), records_each=5, units=units,
            connection={"auth": "anonymous"},
        )  # fmt: skip
        here = table.to_columns(["Density"], units=units).to_pandas(marks=True)
        pd.testing.assert_frame_equal(frame.compute(scheduler="synchronous"), here)
