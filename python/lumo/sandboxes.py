"""Servers on this machine, for trials."""

from __future__ import annotations

import json
import os
import select
import shutil
import subprocess
from pathlib import Path
from typing import Any, Literal

from . import _core
from .errors import Error, ErrorCode
from .server import Server, connect

_START = 120  # seconds that a server may take to make its data
_STOP = 20


def _program() -> str:
    """The program of the build tree, beside the installation, or on the PATH."""
    given = os.environ.get("LUMO_SANDBOX")
    if given:
        return given
    folders = Path(os.path.abspath(__file__)).parents
    candidates = [folders[2] / "sandbox", *(folder / "bin" for folder in folders)]
    for folder in candidates:
        if os.access(folder / "lumo-sandbox", os.X_OK) and (folder / "lumo-sandbox").is_file():
            return str(folder / "lumo-sandbox")
    found = shutil.which("lumo-sandbox")
    if found is None:
        raise Error(
            ErrorCode.NOT_FOUND,
            "there is no lumo-sandbox beside this package or on the PATH; install it, "
            "or name it in LUMO_SANDBOX",
        )
    return found


class _Process:
    """Ends its process when nothing uses its server any more."""

    def __init__(self, process: subprocess.Popen[str]) -> None:
        self.popen = process

    def end(self) -> None:
        """The server ends when its standard input does; one that does not is ended."""
        for pipe in (self.popen.stdin, self.popen.stdout):
            if pipe is not None:
                pipe.close()
        try:
            self.popen.wait(_STOP)
        except subprocess.TimeoutExpired:
            self.popen.kill()
            self.popen.wait()

    def __del__(self) -> None:
        self.end()


class Sandbox(Server):
    """A server with made-up data on this machine, which ends with `close`, with its `with`, when
    neither it nor a table of it is of use any more, or at the latest with the process that started
    it."""

    def __init__(self, process: _Process, client: _core.Client) -> None:
        super().__init__(client)
        self._process = process

    @property
    def pid(self) -> int:
        """Of the server's process."""
        return self._process.popen.pid

    def close(self) -> None:
        """Ends the server."""
        self._process.end()

    def __enter__(self) -> Sandbox:
        return self

    def __exit__(self, *exception: object) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<lumo.Sandbox {self.url}>"


def sandbox(
    *,
    seed: Literal["full", "minimal", "empty"] = "full",
    records: int = 0,
    log_on: Literal["none", "basic", "digest"] = "none",
    log_file: str | os.PathLike[str] | None = None,
    **options: Any,
) -> Sandbox:
    """Starts a server with made-up data on the loopback address, and connects to it::

        with lumo.sandbox() as server:
            print(server["ENG_MATERIALS"]["Materials"]["AW-6061-T6"])

    `records` adds so many made-up materials; `log_file` gets a line for each call; `log_on` asks
    for the user "lumo" with the password of LUMO_SANDBOX_PASSWORD. Other options are those of
    `connect`, and nobody logs on unless these say so. The program lumo-sandbox is looked for in the
    build tree, beside the installation and on the PATH; LUMO_SANDBOX names another. Raises
    `Error`.
    """
    command = [_program(), "--stop-on-eof", "--seed", seed, "--records", str(records)]
    command += ["--log-on", log_on]
    if log_file is not None:
        command.append(f"--log={os.fspath(log_file)}")
    # A session of its own, so that Ctrl-C in a terminal reaches Python alone.
    popen = subprocess.Popen(
        command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, start_new_session=True
    )
    process = _Process(popen)
    try:
        assert popen.stdout is not None
        ready, _, _ = select.select([popen.stdout], [], [], _START)
        line = popen.stdout.readline() if ready else ""
        if not line:
            raise Error(ErrorCode.UNAVAILABLE, f"{command[0]} did not start")
        if not {"auth", "user"} & options.keys():
            options["auth"] = "anonymous"
        options["kept"] = process  # by the connections, and these by whatever uses them
        client = connect(json.loads(line)["url"], **options)._client
        return Sandbox(process, client)
    except BaseException:
        popen.kill()
        process.end()
        raise
