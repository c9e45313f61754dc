"""Frames on their way to a server: looked at first, then written once."""

from __future__ import annotations

import datetime
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import numpy as np
import pandas as pd
import pytest

import lumo


@pytest.fixture
def table() -> Iterator[lumo.Table]:
    with lumo.sandbox(seed="minimal") as server:
        yield server["ENG_MATERIALS"]["Materials"]


def test_what_was_read_is_the_same_and_a_change_is_told_and_written(
    table: lumo.Table, tmp_path: Path
) -> None:
    names = ["Density", "Recyclable", "Year of first use", "Last reviewed", "Designation"]
    frame = table.to_pandas(names, units={"Density": "g/cm^3"})
    same = table.import_frame(frame)
    assert set(same["kind"]) == {"same"} and len(same) == len(frame)

    frame.loc["AW-6061-T6", "Density.high"] = 2.75
    frame.loc["AW-6061-T6", "Year of first use"] = 1936
    report = table.import_frame(frame)
    assert report.attrs["counts"]["change"] == 1 and not report.attrs["written"]
    changes = report[report["kind"] == "change"].set_index("attribute")
    assert set(changes.index) == {"Density", "Year of first use"}
    assert changes.loc["Year of first use", "before"] == "1935"
    assert "2750" in changes.loc["Density", "after"]  # in the attribute's own unit
    assert table.named(["AW-6061-T6"]).to_pandas(["Density"])["Density.high"].iloc[0] == 2730

    journal = tmp_path / "run.journal"
    report = table.import_frame(frame, dry_run=False, journal=journal)
    assert report.attrs["written"] and report.attrs["stopped"] is None and journal.exists()
    assert table["AW-6061-T6"]["Density"] == lumo.Range(2690, 2750, "kg/m^3")
    assert set(table.import_frame(frame)["kind"]) == {"same"}


def test_new_records_and_all_faults_of_all_rows_are_told(table: lumo.Table) -> None:
    folder = table["AW-6061-T6"].folder
    frame = pd.DataFrame(
        {
            "record.folder": [folder, folder, "No such folder"],
            "Density": [2.8, "heavy", 2.9],
            "Durability: sea water": [("Excellent",), ("Superb",), None],
            "Number of suppliers": [3, None, 1.5],
        },
        index=["New alloy", "Bad alloy", "Lost alloy"],
    )
    report = table.import_frame(frame, units={"Density": "g/cm^3"})
    kinds = report.drop_duplicates("row").set_index("record.name")["kind"]
    assert kinds["New alloy"] == "create"
    assert kinds["Bad alloy"] == kinds["Lost alloy"] == "refused"
    faults = report[report["why"] != ""]
    told = set(zip(faults["record.name"], faults["attribute"]))
    assert {("Bad alloy", "Density"), ("Bad alloy", "Durability: sea water")} <= told
    assert "Lost alloy" in set(faults["record.name"])
    with pytest.raises(lumo.Error) as missing:
        _ = table["New alloy"]  # nothing was written
    assert missing.value.code is lumo.ErrorCode.NOT_FOUND


ALLOY = "AW-6061-T6"


def told(table: lumo.Table, name: str, value: Any, index: Any = ALLOY, **units: str) -> str:
    """What becomes of a cell, or why it is refused."""
    frame = pd.DataFrame({name: pd.Series([value], dtype=object).to_numpy()}, index=[index])
    report = table.import_frame(frame, units=units)
    assert len(report) == 1 and report["attribute"][0] in (name, "record.name", "")
    return str(report["after"][0] or report["why"][0] or report["kind"][0])


def test_values_of_the_package_and_dates_of_all_kinds_come_back(table: lumo.Table) -> None:
    own = table[ALLOY]["Density"]
    assert isinstance(own, lumo.Range)
    assert told(table, "Density", own) == told(table, "Density", own.in_units("g/cm^3")) == "same"
    assert told(table, "Density", lumo.Quantity(2.7, "g/cm^3")) == "2700 kg/m^3"
    assert told(table, "Density", lumo.Quantity(2.7), Density="g/cm^3") == "2700 kg/m^3"
    assert told(table, "Density", lumo.Range(None, 2800.0)) == "..2800 kg/m^3"
    assert told(table, "Recyclable", np.bool_(False)) == told(table, "Recyclable", 0.0) == "no"
    assert told(table, "Designation", 6061) == "6061"
    hour = datetime.timezone(datetime.timedelta(hours=1))
    for date, text in {
        datetime.datetime(1500, 1, 2): "1500-01-02T00:00:00",
        datetime.date(1500, 1, 2): "1500-01-02T00:00:00",
        datetime.datetime(2020, 1, 1, tzinfo=hour): "2019-12-31T23:00:00",
        pd.Timestamp("2020-01-01 12:00"): "2020-01-01T12:00:00",
    }.items():
        assert told(table, "Last reviewed", date) == text


def test_a_cell_of_another_kind_is_a_fault_of_its_row(table: lumo.Table) -> None:
    for name, values in {
        "Last reviewed": (2020, 43831.0, pd.Timedelta(1)),
        "Recyclable": (7, 0.5, b"1"),
        "Designation": (["a"], b"abc", 304.0, "\ud800"),
        "Year of first use": (float("inf"), 2**70, 0.5, True),
        "Durability: sea water": (5, (None,), b"ab"),
        "Density": (b"2700", True, lumo.Points(()), lumo.Quantity(None)),  # type: ignore[arg-type]
    }.items():
        for value in values:
            assert told(table, name, value).startswith("takes "), (name, value)
    for nothing in (None, np.nan):
        assert told(table, "Recyclable", True, index=nothing) == "the record has no name"
    assert told(table, "Recyclable", True, index=304.5) == "takes a text, not 304.5"
    frame = pd.DataFrame({"record.identity": [69.5, -1, 2**40], "Density.low": "2700",
                          "Density.high": 2800}, index=["a", "b", "c"])  # fmt: skip
    report = table.import_frame(frame)
    assert set(report["kind"]) == {"refused"}
    assert list(report["attribute"]) == ["Density", "record.identity"] * 3


def test_what_a_frame_cannot_bring_is_refused(table: lumo.Table) -> None:
    frame = table.to_pandas(["Composition"])
    with pytest.raises(lumo.Error, match="Composition.rows.*drop"):
        table.import_frame(frame)
    with pytest.raises(lumo.Error, match="journal"):
        table.import_frame(frame[[]], dry_run=False)
    ends = table.to_pandas(["Density"])
    with pytest.raises(lumo.Error, match="different units"):
        table.import_frame(ends, units={"Density.low": "g/cm^3"})
    for wrong in ("density", "Densty.low", "Density ", "Number of suppliers"):
        with pytest.raises(lumo.Error, match=f'"{wrong}".* there are Density.low, Density'):
            table.import_frame(ends, units={wrong: "g/cm^3"})
    with pytest.raises(TypeError):
        table.import_frame(ends, units={"Density": 5})  # type: ignore[dict-item]
    for columns in (["Density.low"], ["Density.high"]):  # one end would make the other open
        with pytest.raises(lumo.Error, match="both ends"):
            table.import_frame(ends[columns])
    with pytest.raises(lumo.Error, match="comes twice"):
        table.import_frame(ends[["Density.low", "Density.high", "Density.low"]])


def test_units_that_are_given_go_before_those_of_the_frame(table: lumo.Table) -> None:
    frame = table.named([ALLOY]).to_pandas(["Density"])
    assert frame.attrs["units"]["Density.low"] == "kg/m^3"
    frame[["Density.low", "Density.high"]] /= 1000
    assert list(table.import_frame(frame, units={"Density": "g/cm^3"})["kind"]) == ["same"]
