"""Calls that fail, wait and are interrupted; and other threads meanwhile."""

from __future__ import annotations

import pickle
import signal
import subprocess
import sys
import threading
import time
import urllib.request
from collections.abc import Callable, Iterator
from pathlib import Path

import pytest

import lumo


@pytest.fixture
def small() -> Iterator[lumo.Sandbox]:
    with lumo.sandbox(seed="minimal", max_attempts=1) as server:
        yield server


def ask_for_faults(server: lumo.Sandbox, lines: str) -> None:
    request = urllib.request.Request(f"{server.url}/control/faults", lines.encode(), method="PUT")
    urllib.request.urlopen(request).close()


def test_errors_have_codes_and_hints_in_pythons_words(
    small: lumo.Sandbox, monkeypatch: pytest.MonkeyPatch, tmp_path: Path
) -> None:
    with pytest.raises(lumo.Error) as caught:
        small["ENG_MATERIALS"]["Materails"]
    assert caught.value.code is lumo.ErrorCode.NOT_FOUND
    assert str(caught.value).endswith("; did you mean Materials?")
    with pytest.raises(lumo.Error, match="match is") as caught:
        materials = small["ENG_MATERIALS"]["Materials"]
        materials.where("density < 1 kg/m^3", match="some")  # type: ignore[arg-type]
    ask_for_faults(small, "GetDatabases status 503")
    with pytest.raises(lumo.Error) as caught:
        list(small)
    error = pickle.loads(pickle.dumps(caught.value))  # it travels between processes
    assert (error.code, error.http_status) == (lumo.ErrorCode.UNAVAILABLE, 503)
    assert error.operation == "GetDatabases" and error.is_retryable
    assert str(error) == str(caught.value)
    monkeypatch.delenv("LUMO_URL", raising=False)
    monkeypatch.setenv("XDG_CONFIG_HOME", str(tmp_path))
    with pytest.raises(lumo.Error, match="give lumo.connect a URL, or set LUMO_URL") as caught:
        lumo.connect()
    assert caught.value.code is lumo.ErrorCode.INVALID_ARGUMENT


def test_log_on_is_by_user_and_password(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setenv("LUMO_SANDBOX_PASSWORD", "pass word")
    with lumo.sandbox(seed="minimal", log_on="digest") as server:
        with pytest.raises(lumo.Error, match="user=") as caught:
            list(server)
        assert caught.value.code is lumo.ErrorCode.UNAUTHENTICATED
        assert len(lumo.connect(server.url, auth=("lumo", "pass word"))) == 2
        with pytest.raises(
            lumo.Error, match="\\(user=\\).* check user, domain and password of lumo"
        ):
            list(lumo.connect(server.url, user="lumo", password="wrong"))


def test_a_call_that_was_repeated_tells_its_tries(small: lumo.Sandbox) -> None:
    client = lumo.connect(small.url, auth="anonymous", max_attempts=2)
    ask_for_faults(small, "GetDatabases status 503 x2")
    with pytest.raises(lumo.Error) as caught:
        list(client)
    assert [one.number for one in caught.value.attempts] == [1, 2]
    assert caught.value.attempts[0].code is lumo.ErrorCode.UNAVAILABLE


WAITS: dict[str, Callable[[lumo.Table], object]] = {
    "GetAttributeDetails": lambda table: table.attributes,
    "CriteriaSearch": lambda table: table.where("density < 3000 kg/m^3").ids(),
    "GetRecordAttributesByRef": lambda table: table.to_pandas(["Density"]),
}


@pytest.mark.parametrize("operation", WAITS)
def test_ctrl_c_ends_a_stalled_call_while_other_threads_go_on(
    small: lumo.Sandbox, operation: str
) -> None:
    table = small["ENG_MATERIALS"]["Materials"]
    if operation != "GetAttributeDetails":
        assert table.attributes
    ask_for_faults(small, f"{operation} stall 60")
    sent: list[float] = []
    turns = 0
    is_over = threading.Event()

    def interrupt() -> None:
        nonlocal turns
        begin = time.monotonic()
        while time.monotonic() < begin + 1:  # the call is under way, and this thread runs
            turns += 1
            time.sleep(0.001)
        sent.append(time.monotonic())
        signal.raise_signal(signal.SIGINT)
        is_over.wait(30)

    thread = threading.Thread(target=interrupt)
    thread.start()
    with pytest.raises(KeyboardInterrupt):
        WAITS[operation](table)
    took = time.monotonic() - sent[0]
    is_over.set()
    thread.join()
    print(f"{operation}: {took:.3f} s after Ctrl-C; the other thread made {turns} turns")
    assert took < 1
    assert turns > 10  # a thread that has to wait for the call makes none
    assert table.name  # the table is of use afterwards
    assert small.url and len(lumo.connect(small.url, auth="anonymous")) == 2


def test_options_of_a_wrong_type_are_named_and_short_times_are_limits(
    small: lumo.Sandbox, tmp_path: Path
) -> None:
    table = small["ENG_MATERIALS"]["Materials"]
    wrong: list[tuple[Callable[..., object], str, object]] = [
        (table.read, "chunk_size", "100"), (table.read, "chunk_size", 2.5),
        (table.read, "time_limit", "x"), (lumo.connect, "stall_timeout", "5"),
        (lumo.connect, "ca_file", 5), (lumo.connect, "password", 5),
    ]  # fmt: skip
    for function, name, value in wrong:
        with pytest.raises(TypeError, match=f"{name}= .*{type(value).__name__}$"):
            function(**{name: value, "server": small.url} if function is lumo.connect
                     else {name: value})  # fmt: skip
    with pytest.raises(lumo.Error, match="a tuple of user and password"):
        lumo.connect(small.url, auth=("lumo",))  # type: ignore[arg-type]
    with pytest.raises(lumo.Error, match="not negative"):
        table.read(concurrency=-3)
    with pytest.raises(lumo.Error, match="nowhere.pem"):
        list(lumo.connect(
            small.url.replace("http:", "https:"), auth="anonymous", max_attempts=1,
            ca_file=tmp_path / "nowhere.pem",
        ))  # fmt: skip
    ask_for_faults(small, "GetRecordAttributesByRef stall 5 x2")
    with pytest.raises(lumo.Error) as caught:
        table.read(["Density"], time_limit=0.0004).to_columns()
    assert caught.value.code is lumo.ErrorCode.TIMEOUT
    ask_for_faults(small, "GetDatabases stall 5")
    client = lumo.connect(small.url, auth="anonymous", max_attempts=1, stall_timeout=0.5)
    with pytest.raises(lumo.Error, match="than 0.5$"):
        list(client)


def test_threads_read_at_once(small: lumo.Sandbox) -> None:
    table = small["ENG_MATERIALS"]["Materials"]
    expected = table.to_pandas(["Density"])
    frames = []

    def read() -> None:
        for _ in range(5):
            frames.append(table.to_pandas(["Density"], chunk_size=3))

    threads = [threading.Thread(target=read) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len(frames) == 20
    assert all(frame.equals(expected) for frame in frames)


def test_a_sandbox_lives_as_long_as_something_of_it() -> None:
    server = lumo.sandbox(seed="minimal")
    process = Path(f"/proc/{server.pid}")
    stream = server["ENG_MATERIALS"]["Materials"].where("density > 0 kg/m^3").read(["Density"])
    del server
    assert len(stream.to_columns()) > 0
    stream.close()
    del stream
    assert not process.exists()


def test_a_sandbox_ends_with_the_process_that_started_it() -> None:
    code = "import lumo, os, signal; s = lumo.sandbox(seed='minimal'); print(s.pid, flush=True);"
    code += "os.kill(os.getpid(), signal.SIGKILL)"
    with subprocess.Popen([sys.executable, "-c", code], stdout=subprocess.PIPE, text=True) as child:
        assert child.stdout is not None
        pid = int(child.stdout.readline())
    limit = time.monotonic() + 60
    while Path(f"/proc/{pid}").exists() and time.monotonic() < limit:
        if Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[0] == "Z":
            break  # ended, and not collected yet
        time.sleep(0.05)
    else:
        assert not Path(f"/proc/{pid}").exists()


AT_THE_END = """
import atexit, sys, threading, time
# Behind the package's own, so that calls go out that are made later still.
atexit.register(lambda: print(time.monotonic() - begin < 5, table[name].name, flush=True))
import lumo

name, way = "AW-6061-T6", sys.argv[2]
client = lumo.connect(sys.argv[1], auth="anonymous", max_attempts=1, on_call=lambda event: None)
table = client["ENG_MATERIALS"]["Materials"]
table.attributes

def read():
    while True:
        try:
            if way == "errors":
                table["no such record"]
            for record in table.read(["Density", "Price"], progress=lambda progress: None):
                record["Density"]
        except lumo.Error:
            pass

for _ in range(3):
    threading.Thread(target=read, daemon=True).start()
time.sleep(0.5)
begin = time.monotonic()
"""


@pytest.mark.parametrize("way", ["reads", "errors", "stalled"])
def test_a_program_ends_while_its_threads_are_in_calls(small: lumo.Sandbox, way: str) -> None:
    if way == "stalled":
        ask_for_faults(small, "GetRecordAttributesByRef stall 60 x3")
    ended = subprocess.run(
        [sys.executable, "-c", AT_THE_END, small.url, way], capture_output=True, text=True
    )
    assert (ended.returncode, ended.stdout, ended.stderr) == (0, "True AW-6061-T6\n", "")


def test_a_progress_bar_shows_itself_when_asked(
    small: lumo.Sandbox, capsys: pytest.CaptureFixture[str]
) -> None:
    table = small["ENG_MATERIALS"]["Materials"]
    table.to_pandas(["Density"], chunk_size=5)
    assert capsys.readouterr().err == ""  # nobody looks on
    table.to_pandas(["Density"], chunk_size=5, progress=True)
    assert "records" in capsys.readouterr().err
