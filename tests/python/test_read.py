"""Reading records: names, values, options, and what comes as records and as columns alike."""

from __future__ import annotations

import copy
import dataclasses
import datetime
import pickle
import threading

import numpy as np
import pandas as pd
import pytest

import lumo


def test_three_lines_lead_from_a_server_to_a_table(
    server: lumo.Sandbox, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.setenv("LUMO_URL", server.url)
    materials = lumo.connect()["ENG_MATERIALS"]["Materials"]
    frame = materials.where("density < 3000 kg/m^3").to_pandas(["Density", "Young's modulus"])
    assert frame.loc["AW-6061-T6", "Density.low"] == 2690
    assert frame.loc["AW-6061-T6", "Young's modulus.high"] == 70
    assert (frame["Density.low"] < 3000).all()
    assert frame.attrs["units"]["Density.low"] == "kg/m^3"


def test_a_server_is_a_mapping_of_databases_and_tables(server: lumo.Sandbox) -> None:
    assert list(server) == ["ENG_MATERIALS", "ELEMENTS"]
    assert server["eng_mat"].key == "ENG_MATERIALS"  # whatever case, a beginning is enough
    assert server["Chemical Elements"].tables == ["Elements"]
    assert "Material Producers" in list(server["ENG_MATERIALS"])
    database = server["ENG_MATERIALS"]
    table = database["Materials"]
    record = table.get("AW-6061-T6", ["Density"])
    for place, names in (
        (server, ("ENG_MATERIALS", "Engineering Materials", "chemical")),
        (database, ("Materials", "material producers")),
        (table, ("AW-6061-T6", "Metals and alloys/Aluminium alloys/AW-6061-T6", "id:69")),
        (record, ("Density", "density")),
    ):
        for name in names:  # whatever is found by [] is in it
            assert place[name] is not None and name in place  # type: ignore[index, operator]
        assert not [one for one in ("Nope", 5, None) if one in place]  # type: ignore[operator]
    assert "m" not in database  # several tables begin so
    assert record.get("density") == record["Density"] and record.get("Nope", 5) == 5
    assert record.get("Price") is None


def test_a_record_has_each_kind_of_value(materials: lumo.Table) -> None:
    record = materials["AW-6061-T6"]
    assert record["Density"] == lumo.Range(2690, 2730, "kg/m^3")
    assert record["Recyclable"] is True
    assert record["Year of first use"] == 1935
    assert record["Last reviewed"] == datetime.datetime(2026, 3, 17, 9, 30)
    assert record["Durability: sea water"] == ("Acceptable",)
    assert record["Glass transition temperature"] is None
    assert isinstance(record["Data sheet"], lumo.Link)
    points = record["Hardness by condition"]
    assert isinstance(points, lumo.Points)
    assert points[0].parameters == {"Temperature": 20, "Condition": "T6"}
    assert points.parameter_units == {"Temperature": "degC"}
    grid = record["Composition"]
    assert isinstance(grid, lumo.Grid)
    assert grid.columns == ("Element", "Least", "Most")
    assert grid.to_pandas().set_index("Element").loc["Mg", "Most"] == 1.2
    picture = materials.get("AW-6061-T6", "Photo", with_files=True)["Photo"]
    assert isinstance(picture, lumo.File)
    assert picture.data.startswith(b"\x89PNG")


def test_values_travel_and_are_keys(materials: lumo.Table) -> None:
    record = materials["AW-6061-T6"]
    for value in record.values():
        for copied in (pickle.loads(pickle.dumps(value)), copy.deepcopy(value)):
            if isinstance(value, lumo.Curves):
                for one, other in zip(value, copied):
                    np.testing.assert_array_equal(one.x, other.x)
                    np.testing.assert_array_equal(one.at(one.x), other.at(one.x))
                    assert one.parameters == other.parameters
                    assert one.parameter_units == other.parameter_units
                    assert repr(one.in_units("GPa")) == repr(other.in_units("GPa"))
                continue
            assert copied == value and hash(copied) == hash(value)
            if isinstance(value, lumo.Range):  # by the server's factors still
                other_units = materials.units.targets(value.unit)
                assert [copied.in_units(one) for one in other_units] == [
                    value.in_units(one) for one in other_units
                ]
    density = record["Density"]
    assert isinstance(density, lumo.Range)
    assert dataclasses.asdict(density)["low"] == 2690


def test_missing_and_not_applicable_are_kept_apart(marked_materials: lumo.Table) -> None:
    name = "Melting point"
    columns = marked_materials.to_columns([name], concurrency=1, chunk_size=100)
    marks = columns[f"{name}.low"]
    frame = columns.to_pandas()
    values = [one[name] for one in marked_materials.read(name, concurrency=1, chunk_size=100)]
    assert {type(value) for value in values} == {lumo.Range, lumo.NotApplicable, type(None)}
    for row, value in enumerate(values):
        assert marks.not_applicable[row] == (value is lumo.NOT_APPLICABLE)
        assert marks.valid[row] == isinstance(value, lumo.Range)
        assert marks.estimated[row] == (isinstance(value, lumo.Range) and value.estimated)
        assert frame["record.notApplicable"].iloc[row] == (
            (name,) if marks.not_applicable[row] else ()
        )
        assert frame["record.estimated"].iloc[row] == ((name,) if marks.estimated[row] else ())
    empty = frame[frame[f"{name}.low"].isna()]  # rows keep their marks when some are chosen
    assert {bool(one) for one in empty["record.notApplicable"]} == {True, False}
    assert marks.estimated.any()


def test_selections_narrow_and_name(materials: lumo.Table) -> None:
    light = materials.where("density < 3000 kg/m^3").below("Metals and alloys")
    names = [one.name for one in light.read("Density")]
    assert "AW-6061-T6" in names and "AW-6061-T6" in light
    assert "304" not in light and "Nope" not in light  # one is a record of the table
    assert all(one.folder.startswith("Metals and alloys") for one in light.read("Density"))
    assert len(light.where("density < 3000 kg/m^3", match="all").ids()) <= len(names)
    assert [one.id for one in light.read("Density")] == light.ids()
    pair = ["304", "AW-6061-T6"]
    assert [one.name for one in materials.named(pair).read("Density")] == pair
    assert len(materials.named("AW-6061-T6").ids()) == 1
    with pytest.raises(lumo.Error, match="leave the list out"):
        materials.to_columns([])
    assert materials.in_subset("Polymers").ids()
    assert materials.text("weld").ids()


def test_units_and_unit_systems_are_the_servers(materials: lumo.Table) -> None:
    record = materials["AW-6061-T6"]
    density = record["Density"]
    assert isinstance(density, lumo.Range)
    assert density.in_units("g/cm^3") == lumo.Range(2.69, 2.73, "g/cm^3")
    assert record.number("Density", "g/cm^3") == pytest.approx(2.71)
    si = materials.named(["AW-6061-T6"]).to_pandas(["Young's modulus"], unit_system="SI")
    assert si["Young's modulus.low"].iloc[0] == pytest.approx(66.6e9)
    assert si.attrs["units"]["Young's modulus.low"] == "Pa"
    chosen = materials.named(["AW-6061-T6"])
    frame = chosen.to_pandas(["Density", "Price"], units={"Density": "g/cm^3"})
    assert frame["Density.high"].iloc[0] == pytest.approx(2.73)
    assert frame.attrs["units"] == {
        "Density.low": "g/cm^3", "Density.high": "g/cm^3",
        "Price.low": "EUR/kg", "Price.high": "EUR/kg",
    }  # fmt: skip
    with pytest.raises(lumo.Error, match="kg/m\\^3") as refused:
        density.in_units("GPa")
    assert refused.value.code is lumo.ErrorCode.INVALID_ARGUMENT
    celsius = np.array([[0.0, 100.0], [np.nan, -273.15]])
    kelvin = materials.units.convert(celsius, "degC", "K")
    np.testing.assert_allclose(kelvin, celsius + 273.15, atol=1e-9)


def test_a_stream_tells_its_progress_on_the_calling_thread(materials: lumo.Table) -> None:
    seen: list[tuple[int, int]] = []

    def note(progress: lumo.Progress) -> None:
        seen.append((threading.get_ident(), progress.records_done))

    count = len(materials.to_columns(["Density"], chunk_size=20, progress=note))
    assert {thread for thread, _ in seen} == {threading.get_ident()}
    assert seen[-1][1] == count
    assert len({done for _, done in seen}) > 3


def test_an_exception_of_a_callback_ends_the_read_and_comes_out(materials: lumo.Table) -> None:
    def stop(progress: lumo.Progress) -> None:
        if progress.records_done > 10:
            raise KeyError("enough")

    with pytest.raises(KeyError, match="enough"):
        materials.to_columns(["Density"], chunk_size=10, progress=stop)


def test_calls_are_told_of(server: lumo.Sandbox) -> None:
    events: list[lumo.CallEvent] = []
    client = lumo.connect(server.url, auth="anonymous", on_call=events.append)
    client["ENG_MATERIALS"]["References"].to_columns()
    assert {"GetDatabases", "GetRecordAttributesByRef"} <= {one.operation for one in events}
    assert all(one.http_status == 200 and one.failure is None for one in events)


def test_a_partition_is_read_from_a_line_of_text(
    materials: lumo.Table, server: lumo.Sandbox
) -> None:
    light = materials.where("density < 3000 kg/m^3")
    parts = light.partitions(20, ["Density"])
    read = [one for part in parts for one in server.read(part)]
    assert [one.id for one in read] == light.ids()
    assert list(read[0]) == ["Density"]


def test_the_rest_of_a_stream_is_all_that_was_not_handed_over(materials: lumo.Table) -> None:
    expected = [str(one.name) for one in materials.read(["Density"])]
    for count in (1, 7, 20, 21):
        taken, rest = [], []
        for way in (taken, rest):
            stream = materials.read(["Density"], chunk_size=20)
            way += [next(stream).name for _ in range(count)]
            if way is taken:
                way += stream.to_columns()["record.name"].objects.tolist()
                continue
            chunks = stream.chunks()
            way += next(chunks)["record.name"].objects.tolist()
            way += [next(stream).name for _ in range(3)]
            way += [name for one in chunks for name in one["record.name"].objects]
        assert taken == rest == expected
    stream = materials.read(long := "Hardness by condition", chunk_size=100)
    assert [next(stream).name for _ in range(2)] == ["S235JR", "C45"]  # the first without a value
    expected_long = materials.to_pandas(long=long).drop(index="C45")
    pd.testing.assert_frame_equal(stream.to_columns(long=long).to_pandas(), expected_long)


def test_a_stream_is_closed_and_not_shared(materials: lumo.Table) -> None:
    def again(_: lumo.Progress) -> None:
        stream.close()

    stream = materials.read(["Density"], progress=again)
    with pytest.raises(lumo.Error, match="in use"):
        stream.to_columns()
    with materials.read(["Density"], chunk_size=5) as stream:
        next(stream)
    for use in (stream.to_columns, lambda: next(stream)):
        with pytest.raises(lumo.Error, match="closed"):
            use()
    with pytest.raises(TypeError, match="chunks_size"):
        materials.read(["Density"], chunks_size=5)  # type: ignore[call-arg]
