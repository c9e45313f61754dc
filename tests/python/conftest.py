"""A sandbox with its full content for all tests of a run, and small ones for single tests."""

from __future__ import annotations

import re
import threading
import urllib.request
from collections.abc import Iterator
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

import pytest

import lumo


@pytest.fixture(scope="session")
def server() -> Iterator[lumo.Sandbox]:
    with lumo.sandbox() as server:
        yield server


@pytest.fixture(scope="session")
def materials(server: lumo.Sandbox) -> lumo.Table:
    return server["ENG_MATERIALS"]["Materials"]


class _Marking(BaseHTTPRequestHandler):
    """Hands calls on to a sandbox, and marks ranges in its replies: of each three the first as not
    applicable, the second as estimated."""

    protocol_version = "HTTP/1.1"
    target = ""

    def do_POST(self) -> None:
        body = self.rfile.read(int(self.headers["Content-Length"]))
        headers = {name: self.headers[name] for name in ("Content-Type", "SOAPAction")}
        request = urllib.request.Request(self.target + self.path, body, headers)
        with urllib.request.urlopen(request) as reply:
            text = self.marked(reply.read().decode()).encode()
            self.send_response(reply.status)
            self.send_header("Content-Type", reply.headers["Content-Type"])
        self.send_header("Content-Length", str(len(text)))
        self.end_headers()
        self.wfile.write(text)

    @staticmethod
    def marked(text: str) -> str:
        parts = re.split("(?=<b:RangeDataValue )", text)
        for place in range(1, len(parts)):
            if place % 3 == 1:
                parts[place] = parts[place].replace(" ", ' b:isNotApplicable="true" ', 1)
            elif place % 3 == 2:
                parts[place] = parts[place].replace("Estimated>false", "Estimated>true", 1)
        return "".join(parts)

    def log_message(self, *_: object) -> None:
        pass


@pytest.fixture
def marked_materials(server: lumo.Sandbox) -> Iterator[lumo.Table]:
    """The materials, some of their ranges not applicable and some estimated."""
    handler = type("Marking", (_Marking,), {"target": server.url})
    with ThreadingHTTPServer(("127.0.0.1", 0), handler) as proxy:
        thread = threading.Thread(target=proxy.serve_forever, daemon=True)
        thread.start()
        client = lumo.connect(f"http://127.0.0.1:{proxy.server_port}", auth="anonymous")
        yield client["ENG_MATERIALS"]["Materials"]
        del client
        proxy.shutdown()
        thread.join()
