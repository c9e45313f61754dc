"""Frames on their way to a server: looked at first, then written once."""

from __future__ import annotations

from collections.abc import Iterator
from pathlib import Path

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


def test_what_a_frame_cannot_bring_is_refused(table: lumo.Table) -> None:
    frame = table.to_pandas(["Composition"])
    with pytest.raises(lumo.Error, match="Composition.rows.*drop"):
        table.import_frame(frame)
    with pytest.raises(lumo.Error, match="journal"):
        table.import_frame(frame[[]], dry_run=False)
    ends = table.to_pandas(["Density"])
    with pytest.raises(lumo.Error, match="different units"):
        table.import_frame(ends, units={"Density.low": "g/cm^3"})
