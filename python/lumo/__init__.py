"""Values of a materials-information database server as Python has them.

Three lines from a server to a table::

    import lumo
    materials = lumo.connect()["ENG_MATERIALS"]["Materials"]
    frame = materials.where("density < 3000 kg/m^3").to_pandas(["Density", "Young's modulus"])

and without a server: ``with lumo.sandbox() as server:``.
"""

from ._core import Attribute, CallEvent, Parameter, Progress, RecordId, Units, __version__
from .charts import Index, ashby
from .columns import Column, Columns
from .errors import Attempt, Error, ErrorCode
from .pint_units import pint_unit
from .records import Record, RecordStream
from .sandboxes import Sandbox, sandbox
from .server import Database, Selection, Server, Table, connect
from .values import (
    NOT_APPLICABLE,
    Curve,
    Curves,
    File,
    Grid,
    Link,
    NotApplicable,
    Point,
    Points,
    Quantity,
    Range,
    Value,
)

__all__ = [
    "NOT_APPLICABLE",
    "Attempt",
    "Attribute",
    "CallEvent",
    "Column",
    "Columns",
    "Curve",
    "Curves",
    "Database",
    "Error",
    "ErrorCode",
    "File",
    "Grid",
    "Index",
    "Link",
    "NotApplicable",
    "Parameter",
    "Point",
    "Points",
    "Progress",
    "Quantity",
    "Range",
    "Record",
    "RecordId",
    "RecordStream",
    "Sandbox",
    "Selection",
    "Server",
    "Table",
    "Units",
    "Value",
    "__version__",
    "ashby",
    "connect",
    "pint_unit",
    "sandbox",
]
