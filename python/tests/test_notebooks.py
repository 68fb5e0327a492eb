"""The notebooks, cell by cell."""

import json
import os
import shutil
from pathlib import Path

import pytest

matplotlib = pytest.importorskip("matplotlib", reason="python3-matplotlib is not installed")

NOTEBOOKS = Path(__file__).resolve().parent.parent / "notebooks"


@pytest.mark.parametrize("name", sorted(path.name for path in NOTEBOOKS.glob("*.ipynb")))
def test_a_notebook_runs_from_its_first_cell_to_its_last(name, tmp_path, monkeypatch):
    matplotlib.use("Agg")
    shutil.copytree(NOTEBOOKS, tmp_path, dirs_exist_ok=True)
    monkeypatch.chdir(tmp_path)
    notebook = json.loads(Path(name).read_text(encoding="utf-8"))
    codes = ["".join(cell["source"]) for cell in notebook["cells"] if cell["cell_type"] == "code"]
    names = {"__name__": "__main__"}
    for number, code in enumerate(codes, start=1):
        exec(compile(code, f"{name}, cell {number}", "exec"), names)
    assert len(codes) >= 4


def test_notebooks_are_kept_without_output():
    for path in NOTEBOOKS.glob("*.ipynb"):
        cells = json.loads(path.read_text(encoding="utf-8"))["cells"]
        assert not any(cell.get("outputs") or cell.get("execution_count") for cell in cells), path.name
    assert os.listdir(NOTEBOOKS)
