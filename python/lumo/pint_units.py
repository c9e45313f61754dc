"""Symbols of units, as a server writes them, in the words of pint.

General libraries of units read "W/m.K" as W/m*K, while servers mean W/(m.K): the "." binds closer
than the "/". So that nobody is wrong by a factor in silence, symbols are read by a grammar of our
own, and one with an unknown word in it is refused::

    symbol = product ("/" product)*        the first product over all the others
    product = factor ("." factor)*
    factor = word ("^" number)?  |  number "^" number  |  "1"

Other numbers are refused: whoever writes "MPa.m^1/2" means a root.
"""

from __future__ import annotations

import math
import re

from .errors import Error, ErrorCode

_PREFIXES = {
    "": "",
    "G": "giga",
    "M": "mega",
    "k": "kilo",
    "c": "centi",
    "m": "milli",
    "u": "micro",
    "n": "nano",
}

# Words that take the prefixes above.
_PREFIXED = {
    "A": "ampere",
    "F": "farad",
    "g": "gram",
    "Hz": "hertz",
    "J": "joule",
    "K": "kelvin",
    "m": "meter",
    "mol": "mole",
    "N": "newton",
    "ohm": "ohm",
    "Pa": "pascal",
    "s": "second",
    "S": "siemens",
    "T": "tesla",
    "V": "volt",
    "W": "watt",
    "Wb": "weber",
}

# Words that stand for themselves alone.
_PLAIN = {
    "%": "0.01",
    "BTU": "Btu",
    "day": "day",
    "deg": "degree",
    "ft": "foot",
    "h": "hour",
    "in": "inch",
    "ksi": "kilopound_force_per_square_inch",
    "l": "liter",
    "lb": "pound",
    "lbf": "force_pound",
    "min": "minute",
    "psi": "pound_force_per_square_inch",
    "rad": "radian",
    "strain": "1",  # a length over a length
    "ustrain": "1e-6",
    "year": "year",
}

# Temperatures as such, and as differences where they stand in a product.
_TEMPERATURES = {
    "degC": ("degree_Celsius", "delta_degree_Celsius"),
    "degF": ("degree_Fahrenheit", "delta_degree_Fahrenheit"),
    "degR": ("degree_Rankine", "degree_Rankine"),
    "K": ("kelvin", "kelvin"),
}

_FACTOR = re.compile(r"(?P<word>[A-Za-z%]+)(\^(?P<power>-?\d+(\.\d+)?))?", re.ASCII)
_NUMBER = re.compile(r"(?P<base>\d+)\^(?P<power>-?\d+)", re.ASCII)


def _refuse(symbol: str, why: str) -> Error:
    return Error(ErrorCode.INVALID_ARGUMENT, f'the unit "{symbol}" {why}')


def _factors(symbol: str, product: str) -> list[str]:
    """Splits at the dots that are not in a number: "MPa.m^0.5" has two factors."""
    factors = re.split(r"(?<!\d)\.|\.(?!\d)", product)
    if not all(factors):
        raise _refuse(symbol, "has a factor missing")
    return factors


def _word(symbol: str, word: str) -> str:
    if word in _TEMPERATURES:
        return _TEMPERATURES[word][1]
    if word in _PLAIN:
        return _PLAIN[word]
    for prefix, name in _PREFIXES.items():
        base = word[len(prefix) :]
        if word.startswith(prefix) and base in _PREFIXED:
            return name + _PREFIXED[base]
    raise _refuse(symbol, f'has the unknown word "{word}"')


def _power(symbol: str, text: str, base: float, power: int) -> str:
    try:
        figure = base**power
    except (OverflowError, ZeroDivisionError):
        figure = 0.0
    if figure == 0 or math.isinf(figure):
        raise _refuse(symbol, f'has "{text}", which is too large or too small')
    return repr(figure)


def _factor(symbol: str, text: str) -> str:
    if text == "1":
        return "1.0"
    number = _NUMBER.fullmatch(text)
    if number:
        return _power(symbol, text, float(number["base"]), int(number["power"]))
    match = _FACTOR.fullmatch(text)
    if not match:
        raise _refuse(symbol, f'has "{text}", which is not a unit')
    word = _word(symbol, match["word"])
    return f"({word})**{match['power']}" if match["power"] else f"({word})"


def pint_unit(symbol: str) -> str:
    """The symbol as an expression of pint: "W/m.K" is "(watt) / ((meter)*(kelvin))".

    A temperature that stands alone is one on its scale; in a product it is a difference. Blanks
    stand for dots. Raises `Error` (INVALID_ARGUMENT) for a symbol that is not known for sure, such
    as one of hardness or money::

        registry.Quantity(160, registry.parse_expression(lumo.pint_unit("W/m.degC")).units)
    """
    if not symbol:
        return "dimensionless"
    if symbol in _TEMPERATURES:
        return _TEMPERATURES[symbol][0]
    products = re.sub(r" +", ".", symbol.strip(" ")).split("/")
    made = [
        "*".join(_factor(symbol, factor) for factor in _factors(symbol, product))
        for product in products
    ]
    return " / ".join([made[0], *(f"({product})" for product in made[1:])])
