"""Symbols of units in the words of pint, judged by the server's factors and by pint's own."""

from __future__ import annotations

from typing import Any

import numpy as np
import pandas as pd
import pytest

import lumo

# Every symbol that the sandbox has, and what no one can translate for sure.
REFUSED = {"HV", "EUR/kg", "USD/kg", "EUR/lb", "USD/lb"}


def conversions(server: lumo.Sandbox) -> dict[tuple[str, str], float]:
    """What 12.5 of a symbol is in another one, by the server, for all units of all its tables."""
    found: dict[tuple[str, str], float] = {}
    for database in server.databases.values():
        for table in (database[name] for name in database):
            own = {one.unit for one in table.attributes.values()}
            for one in table.attributes.values():
                own |= {part.unit for part in (*one.parameters, *one.columns)}
            for unit in own - {""}:
                for target in {unit, *table.units.targets(unit)}:
                    found[unit, target] = table.units.convert(12.5, unit, target)
    return found


def test_every_symbol_of_the_sandbox_is_right_or_refused(server: lumo.Sandbox) -> None:
    pint = pytest.importorskip("pint")
    registry = pint.UnitRegistry()

    def quantity(figure: float, symbol: str) -> Any:
        expression = registry.parse_expression(lumo.pint_unit(symbol))
        if isinstance(expression, (int, float)):
            return registry.Quantity(figure * expression)
        return registry.Quantity(figure * expression.magnitude, expression.units)

    ours = conversions(server)
    refused = set()
    for symbol in {symbol for pair in ours for symbol in pair}:
        try:
            lumo.pint_unit(symbol)
        except lumo.Error as error:
            assert error.code is lumo.ErrorCode.INVALID_ARGUMENT
            refused.add(symbol)
    assert refused == REFUSED
    compared = set()
    for (source, target), figure in ours.items():
        if source not in REFUSED and target not in REFUSED:
            one = quantity(1.0, target)
            theirs = quantity(12.5, source).to(one.units).magnitude / one.magnitude
            assert theirs == pytest.approx(figure, rel=1e-5, abs=1e-5), (source, target)
            compared |= {source, target}
    assert compared == {symbol for pair in ours for symbol in pair} - REFUSED
    assert len(compared) > 40
    print(f"{len(compared)} symbols are right, {len(refused)} refused, {len(ours)} conversions")


def test_figures_of_all_kinds_are_converted(materials: lumo.Table) -> None:
    def kelvin(figures: Any) -> Any:
        return materials.units.convert(figures, "degC", "K")

    for figure in (25, 25.0, np.int64(25), np.float32(25), np.array(25)):
        assert kelvin(figure) == 298.15 and type(kelvin(figure)) is float
    for dtype in ("Int64", "Float64"):
        column = pd.Series([25, None], dtype=dtype)
        for figures in (column, column.array, [25, np.nan], (25, None)):
            np.testing.assert_array_equal(kelvin(figures), [298.15, np.nan])
    masked = kelvin(np.ma.array([25.0, 1.0], mask=[False, True]))
    assert masked.tolist() == [298.15, None]
    for wrong in ("abc", [1, [2, 3]], object(), lumo.Quantity(25, "degC")):
        with pytest.raises((TypeError, ValueError)):
            kelvin(wrong)


@pytest.mark.parametrize(
    ("symbol", "expression"),
    [
        ("W/m.K", "(watt) / ((meter)*(kelvin))"),
        ("W/m.degC", "(watt) / ((meter)*(delta_degree_Celsius))"),
        ("MPa.m^0.5", "(megapascal)*(meter)**0.5"),
        ("10^6 psi", "1000000.0*(pound_force_per_square_inch)"),
        ("1/K", "1.0 / ((kelvin))"),
        ("degF", "degree_Fahrenheit"),
        ("", "dimensionless"),
    ],
)
def test_a_dot_binds_closer_than_a_slash(symbol: str, expression: str) -> None:
    assert lumo.pint_unit(symbol) == expression


@pytest.mark.parametrize(
    "symbol",
    ["HRC", "W//m", "W/", ".m", "kg*m", "m^", "EUR/kg", "kdegC", "m2", "-", "MPa.m^1/2", "ohm/2.m",
     "2.m", "m\n", "m^\u0662", "10^400", "10^-400", "0^-1",
     pytest.param(f"{10**400}^1", id="many digits")],
)  # fmt: skip
def test_what_is_not_known_is_refused(symbol: str) -> None:
    with pytest.raises(lumo.Error):
        lumo.pint_unit(symbol)
