"""The guide's blocks and the notebooks of the examples do what they say."""

from __future__ import annotations

import os
import re
import sys
from pathlib import Path

import pytest

import lumo

SOURCE = Path(__file__).absolute().parents[2]
sys.path.insert(0, str(SOURCE / "tests" / "docs"))

from blocks import blocks, pages  # noqa: E402


@pytest.fixture(autouse=True)
def surroundings(server: lumo.Sandbox, monkeypatch: pytest.MonkeyPatch, tmp_path: Path) -> None:
    monkeypatch.setenv("LUMO_URL", server.url)
    monkeypatch.chdir(tmp_path)
    for name in ("IPYTHONDIR", "JUPYTER_CONFIG_DIR", "JUPYTER_RUNTIME_DIR"):
        monkeypatch.setenv(name, str(tmp_path))


def run_page(page: Path) -> dict[str, object]:
    names: dict[str, object] = {}
    for block in blocks(page, SOURCE):
        if block.language == "python" and not block.reason:
            exec(compile(block.text, block.place, "exec"), names)
    return names


def test_the_guides_blocks_run(capsys: pytest.CaptureFixture[str]) -> None:
    page = SOURCE / "docs" / "python.md"
    assert "frame" in run_page(page)
    shown = capsys.readouterr().out
    for promised in re.findall(r"^ *print\(.*\) +# (.*)$", page.read_text(), re.MULTILINE):
        assert promised.split(",")[0] in shown


def test_the_readmes_lines_run() -> None:
    assert len(run_page(SOURCE / "README.md")["frame"]) > 50  # type: ignore[arg-type]


def test_no_other_page_has_blocks() -> None:
    found = {page.name for page in pages(SOURCE) for one in blocks(page, SOURCE) if one.language == "python"}
    assert found == {"README.md", "python.md"}


@pytest.mark.parametrize(
    "notebook", sorted((SOURCE / "examples" / "python").glob("*.ipynb")), ids=lambda one: one.stem
)
def test_notebooks_run(notebook: Path, monkeypatch: pytest.MonkeyPatch, tmp_path: Path) -> None:
    nbformat = pytest.importorskip("nbformat")
    nbclient = pytest.importorskip("nbclient")
    kernel = tmp_path / "kernels" / "tested"
    kernel.mkdir(parents=True)
    (kernel / "kernel.json").write_text(
        '{"display_name": "tested", "language": "python", "argv": '
        f'["{sys.executable}", "-m", "ipykernel_launcher", "-f", "{{connection_file}}"]}}'
    )
    monkeypatch.setenv("JUPYTER_PATH", str(tmp_path))
    document = nbformat.read(notebook, as_version=4)
    client = nbclient.NotebookClient(document, timeout=300, kernel_name="tested")
    found = str(Path(lumo.__file__).absolute().parents[1])
    executed = client.execute(cwd=str(tmp_path), env={**os.environ, "PYTHONPATH": found})
    outputs = [one for cell in executed.cells if cell.cell_type == "code" for one in cell.outputs]
    kinds = {kind for one in outputs for kind in one.get("data", {})}
    assert "text/html" in kinds
    assert not [one for one in outputs if one.output_type == "error"]
