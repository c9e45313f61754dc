"""The Arrow C stream interface as its text describes it, read by ctypes alone."""

from __future__ import annotations

import ctypes
import struct
from collections.abc import Iterator
from typing import Any


class Schema(ctypes.Structure):
    pass


class Array(ctypes.Structure):
    pass


class Stream(ctypes.Structure):
    pass


Schema._fields_ = [
    ("format", ctypes.c_char_p),
    ("name", ctypes.c_char_p),
    ("metadata", ctypes.c_void_p),
    ("flags", ctypes.c_int64),
    ("n_children", ctypes.c_int64),
    ("children", ctypes.POINTER(ctypes.POINTER(Schema))),
    ("dictionary", ctypes.POINTER(Schema)),
    ("release", ctypes.CFUNCTYPE(None, ctypes.POINTER(Schema))),
    ("private_data", ctypes.c_void_p),
]
Array._fields_ = [
    ("length", ctypes.c_int64),
    ("null_count", ctypes.c_int64),
    ("offset", ctypes.c_int64),
    ("n_buffers", ctypes.c_int64),
    ("n_children", ctypes.c_int64),
    ("buffers", ctypes.POINTER(ctypes.c_void_p)),
    ("children", ctypes.POINTER(ctypes.POINTER(Array))),
    ("dictionary", ctypes.POINTER(Array)),
    ("release", ctypes.CFUNCTYPE(None, ctypes.POINTER(Array))),
    ("private_data", ctypes.c_void_p),
]
Stream._fields_ = [
    ("get_schema", ctypes.CFUNCTYPE(ctypes.c_int, ctypes.POINTER(Stream), ctypes.POINTER(Schema))),
    ("get_next", ctypes.CFUNCTYPE(ctypes.c_int, ctypes.POINTER(Stream), ctypes.POINTER(Array))),
    ("get_last_error", ctypes.CFUNCTYPE(ctypes.c_char_p, ctypes.POINTER(Stream))),
    ("release", ctypes.CFUNCTYPE(None, ctypes.POINTER(Stream))),
    ("private_data", ctypes.c_void_p),
]


def address_of(capsule: object) -> int:
    """Of the stream in a capsule."""
    get = ctypes.pythonapi.PyCapsule_GetPointer
    get.restype, get.argtypes = ctypes.c_void_p, [ctypes.py_object, ctypes.c_char_p]
    return int(get(capsule, b"arrow_array_stream"))


def _metadata(address: int | None) -> dict[str, str]:
    if not address:
        return {}
    place = address

    def number() -> int:
        nonlocal place
        place += 4
        return int(struct.unpack("=i", ctypes.string_at(place - 4, 4))[0])

    def text() -> str:
        nonlocal place
        size = number()
        place += size
        return ctypes.string_at(place - size, size).decode()

    return {text(): text() for _ in range(number())}


class Reader:
    """What a stream holds: the fields, and the buffers of each batch."""

    def __init__(self, capsule: object) -> None:
        self._capsule = capsule
        self._stream = Stream.from_address(address_of(capsule))

    def fields(self) -> dict[str, tuple[str, dict[str, str]]]:
        """Format and metadata of the columns by their names."""
        schema = Schema()
        assert self._stream.get_schema(self._stream, schema) == 0
        children = [schema.children[i].contents for i in range(schema.n_children)]
        fields = {
            one.name.decode(): (one.format.decode(), _metadata(one.metadata)) for one in children
        }
        schema.release(schema)
        return fields

    def batches(self) -> Iterator[dict[str, Any]]:
        """Length, and the address of the figures of each column."""
        names = list(self.fields())
        while True:
            array = Array()
            assert self._stream.get_next(self._stream, array) == 0
            if not array.release:
                return
            figures = {name: array.children[i].contents.buffers[1] for i, name in enumerate(names)}
            yield {"length": array.length, "figures": figures}
            array.release(array)
