#!/usr/bin/env python3
"""Runs the blocks of README, guides and CONTRIBUTING against a sandbox, page by page.

    blocks.py SOURCE LUMO SANDBOX       runs the blocks of the shell, and looks at data
    blocks.py SOURCE --programs FOLDER  writes those of C++ and CMake for the test that builds them

A block says its language. One that cannot be run has the reason in a comment above it, such as
`<!-- not run: needs a cluster -->`; `text` is not for running. Blocks of Python are run by
`tests/python/test_docs.py`, blocks such as `sh kerberos` by `tests/networks/run.sh`.
"""

from __future__ import annotations

import json
import os
import re
import subprocess
import sys
import tempfile
from collections.abc import Iterator
from pathlib import Path
from typing import NamedTuple

SERVER = "https://server/service_layer"  # as pages write it


class Block(NamedTuple):
    place: str  #: "README.md:16"
    language: str  #: all that stands behind the fence
    text: str
    reason: str  #: why it is not run; empty when it is


def pages(source: Path) -> list[Path]:
    patterns = ("*.md", "docs/*.md", "docs/adr/*.md", "sandbox/README.md", "fuzz/README.md")
    return sorted(page for pattern in patterns for page in source.glob(pattern))


def blocks(page: Path, source: Path) -> Iterator[Block]:
    lines: list[str] | None = None
    reason = language = place = previous = ""
    for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), 1):
        if lines is None and line.startswith("```"):
            mark = re.fullmatch(r"<!-- not run: (.+) -->", previous)
            reason, language = mark.group(1) if mark else "", line[3:].strip()
            place, lines = f"{page.relative_to(source)}:{number}", []
        elif lines is not None and line == "```":
            yield Block(place, language, "".join(f"{one}\n" for one in lines), reason)
            lines = None
        elif lines is not None:
            lines.append(line)
        elif line.startswith("    ") and not previous:
            sys.exit(f"{page}:{number}: a block without a fence, which says no language")
        previous = line


def write_programs(source: Path, folder: Path) -> None:
    """`guide.cpp` has the blocks that are not programs, each between braces of its own."""
    guide, cmake, programs = [], [], 0
    for page in pages(source):
        for block in blocks(page, source):
            if block.reason or block.language not in ("cpp", "cmake"):
                continue
            if block.language == "cmake":
                cmake.append(block.text)
            elif "int main(" in block.text:
                name = {"README": "first", "exact-library": "exact"}[page.stem]
                (folder / f"{name}.cpp").write_text(block.text)
                programs += 1
            else:
                line = int(block.place.split(":")[1]) + 1
                guide.append(f'{{\n#line {line} "{page}"\n{block.text}}}\n')
    assert programs >= 2 and len(guide) >= 9 and len(cmake) >= 2, (programs, len(guide), len(cmake))
    assert len(set(cmake)) == 1, "README and guide do not say the same for CMake"
    (folder / "guide.inc").write_text("".join(guide))
    (folder / "blocks.cmake").write_text(cmake[0])


# What a page leaves to people: how long a server runs, the browser, the address that it prints.
SHELL = """set -euo pipefail
lumo() {
  if [ "${1-}" = browse ]; then timeout 60 lumo "$@" --idle 1; else command lumo "$@"; fi
}
lumo-sandbox() { command lumo-sandbox "$@" --ttl 1; }
"""


class Shell:
    """A folder, a home and a sandbox for one page."""

    def __init__(self, folder: Path, tools: list[str], server: subprocess.Popen[str]) -> None:
        assert server.stdout is not None
        self.url = json.loads(server.stdout.readline())["url"]
        self.folder = folder / "work"
        home = folder / "home"
        for one in (self.folder, home):
            one.mkdir()
        (home / ".lab-password").write_text("x\n")
        (home / ".sandbox-password").write_text("x\n")
        self.profiles = home / ".config" / "lumo" / "servers.ini"
        self.profiles.parent.mkdir(parents=True)
        self.environment = {
            **{name: text for name, text in os.environ.items() if not name.startswith("LUMO_")},
            "PATH": os.pathsep.join([*tools, os.environ["PATH"]]),
            "HOME": str(home),
            "BROWSER": "true",
            "LUMO_URL": self.url,
            "LUMO_PASSWORD": "x",
            "url": self.url,
        }
        self.environment.pop("XDG_CONFIG_HOME", None)

    def run(self, text: str, place: str) -> str:
        done = subprocess.run(
            ["bash", "-c", SHELL + text.replace(SERVER, self.url)],
            cwd=self.folder,
            env=self.environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            timeout=120,
        )
        if done.returncode != 0:
            sys.exit(f"{place} ends with {done.returncode}:\n{text}\n{done.stdout}{done.stderr}")
        return done.stdout

    def show(self, text: str, place: str) -> None:
        """Each command behind a "$" puts out what stands below it."""
        for command, promised in re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", text, re.MULTILINE):
            printed = self.run(command, place)
            if printed != promised:
                sys.exit(f"{place}: {command}\nputs out\n{printed}and not\n{promised}")

    def reach(self, profiles: str, place: str) -> None:
        """Each profile reaches the server."""
        self.profiles.write_text(re.sub(r"https://\S+", self.url, profiles))
        names = re.findall(r"^\[(.+)\]$", profiles, re.MULTILINE)
        for name in names:
            self.run(f"unset LUMO_URL LUMO_PASSWORD; lumo databases --server {name}", place)
        assert names, place


def run_page(page: Path, source: Path, tools: list[str]) -> int:
    found = list(blocks(page, source))
    count = 0
    with tempfile.TemporaryDirectory() as folder, subprocess.Popen(
        [f"{tools[1]}/lumo-sandbox", "--stop-on-eof"],
        stdin=subprocess.PIPE,
        stdout=subprocess.PIPE,
        text=True,
    ) as server:
        shell = Shell(Path(folder), tools, server)
        for block in found:
            if block.reason:
                continue
            if block.language == "sh":
                shell.run(block.text, block.place)
            elif block.language == "console":
                shell.show(block.text, block.place)
            elif block.language == "ini":
                shell.reach(block.text, block.place)
            elif block.language == "json":
                json.loads(block.text)
            elif block.language in ("sh kerberos", "sh ntlm", "sh tls"):
                assert page.name == "networks.md", f"{block.place} is run by nobody"
                continue
            elif block.language in ("cpp", "cmake", "python", "text"):
                continue
            else:
                sys.exit(f"{block.place}: nobody runs {block.language!r}")
            count += 1
        assert server.stdin is not None
        server.stdin.close()
    return count


def main() -> None:
    source = Path(sys.argv[1]).absolute()
    if sys.argv[2] == "--programs":
        write_programs(source, Path(sys.argv[3]))
        return
    tools = [str(Path(one).absolute().parent) for one in sys.argv[2:4]]
    count = sum(run_page(page, source, tools) for page in pages(source))
    print(f"ran {count} blocks")
    assert count > 20, "blocks are not found"


if __name__ == "__main__":
    main()
