"""What connecting and reading take by name."""

from __future__ import annotations

import os
from collections.abc import Callable, Iterable
from typing import Literal, TypedDict, Union

from . import _core
from .errors import Error, ErrorCode

Attributes = Union[str, Iterable[str], None]
Path = Union[str, "os.PathLike[str]", None]
Auth = Union[None, Literal["ticket", "password", "anonymous"], tuple[str, str]]


class ConnectOptions(TypedDict, total=False):
    """What `connect` takes by name. Times are in seconds. What is left out comes from the
    environment, then from the profile of the server in ~/.config/lumo/servers.ini."""

    user: str | None
    password: str | None
    domain: str | None
    namespace: str | None  #: base of the vendor's namespace
    application_name: str | None
    ca_file: Path  #: certificates of authorities, PEM
    ca_folder: Path  #: the same as a folder of files under their hashed names
    certificate_file: Path  #: the client's own, PEM
    key_file: Path
    proxy: str | None
    proxy_user: str | None
    proxy_password: str | None
    resolve_timeout: float | None  #: 10 by default; 0 waits for ever, as in the next two
    connect_timeout: float | None  #: 60 by default
    stall_timeout: float | None  #: longest silence of the server, 300 by default
    max_concurrency: int | None  #: calls at once from this process, 4 by default
    max_attempts: int | None  #: tries of a call that reads, 5 by default
    max_retry_time: float | None  #: no try begins later than this after the first, 600 by default
    on_call: Callable[[_core.CallEvent], object] | None  #: told of each try of each call


class ReadOptions(TypedDict, total=False):
    """What all functions that read records take by name."""

    unit_system: str | None  #: such as "SI"; the attributes' own units by default
    currency: str | None
    chunk_size: int | None  #: records in a call; adapts to the server by default
    concurrency: int | None  #: calls at once; as many as the connection may make by default
    ordered: bool | None  #: False hands chunks over as they come
    with_files: bool | None  #: the bytes of files and pictures, not only their addresses
    time_limit: float | None  #: seconds for the whole read
    #: a function that is told of each step on the calling thread; False shows no progress bar,
    #: True always one; by default there is one in terminals and notebooks when it takes long
    progress: bool | Callable[[_core.Progress], object] | None


def names_of(attributes: Attributes) -> list[str]:
    """Empty for all. An empty list, which nobody means to be all, is refused."""
    if attributes is None:
        return []
    names = [attributes] if isinstance(attributes, str) else list(attributes)
    if not names:
        raise Error(
            ErrorCode.INVALID_ARGUMENT, "there is no attribute to read; leave the list out for all"
        )
    return names
