"""A program of a user, for mypy --strict: the three lines and what they give."""

from __future__ import annotations

import lumo


def lightest(server: lumo.Server) -> str:
    materials = server["ENG_MATERIALS"]["Materials"]
    best: list[tuple[float, str]] = []
    for record in materials.where("density < 3000 kg/m^3").read(["Density"], unit_system="SI"):
        density = record.number("Density", "kg/m^3")
        value = record["Density"]
        if density is not None and isinstance(value, lumo.Range):
            best.append((density, f"{record.name}: {value.in_units('g/cm^3')}"))
    return min(best)[1]


def strength(record: lumo.Record, place: float) -> float | None:
    curves = record["Yield strength against temperature"]
    return curves[0].at(place) if isinstance(curves, lumo.Curves) else None


def wrong(table: lumo.Table, record: lumo.Record) -> None:
    """What mypy has to find: an error that is not there any more is one, too."""
    table.read(chunk_size="many")  # type: ignore[arg-type]
    table.read(chunks_size=5)  # type: ignore[call-arg]
    lumo.connect(auth="tickets")  # type: ignore[arg-type]
    record["Density"].low  # type: ignore[union-attr]
    table.where("density < 1 kg/m^3", match="some")  # type: ignore[arg-type]
