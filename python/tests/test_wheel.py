"""Wheels with the program inside, built without a network and used where nothing else is installed."""

import os
import shutil
import subprocess
import sys
import venv
import zipfile
from pathlib import Path

import numpy as np
import pytest

pytest.importorskip("build", reason="python3-build is not installed")
pytest.importorskip("wheel", reason="python3-wheel is not installed")

PACKAGE = Path(__file__).resolve().parent.parent
BUILD = Path(os.environ["TALVEK_BUILD"])

USE = """
import numpy, sys, talvek
vertices = numpy.array([[0, 0, 0], [100, 0, 0], [0, 100, 0]], dtype=numpy.float32)
result = talvek.run((vertices, [[0, 1, 2]]), sys.argv[1])
print(talvek.__file__)
print(result.delta[0] == talvek.rates.delta(3, 365), result.vertices(-1).shape)
"""


def copy_sources(folder):
    """The package and the header that states its version, without what an editable install leaves."""
    leave = shutil.ignore_patterns("build", "dist", "*.egg-info", "__pycache__")
    shutil.copytree(PACKAGE, folder / "python", ignore=leave)
    (folder / "include").mkdir()
    shutil.copy(PACKAGE.parent / "include" / "talvek.h", folder / "include")
    return folder / "python"


def build_wheel(folder, build=None):
    """A wheel; with the program of a build where one is given."""
    environment = {key: value for key, value in os.environ.items() if key not in ("PYTHONPATH", "TALVEK_PROGRAM")}
    if build is not None:
        install = ["cmake", "--install", str(build), "--prefix", str(folder / "prefix"), "--strip"]
        subprocess.run(install, check=True, capture_output=True)
        environment["TALVEK_PREFIX"] = str(folder / "prefix")
    command = [sys.executable, "-m", "build", "--wheel", "--no-isolation", "--outdir", str(folder / "dist")]
    done = subprocess.run([*command, str(copy_sources(folder))], env=environment, capture_output=True, text=True)
    assert done.returncode == 0, done.stdout + done.stderr
    [wheel] = (folder / "dist").iterdir()
    return wheel


def empty_environment(folder):
    """An environment with nothing but numpy."""
    venv.create(folder, with_pip=True)
    [packages] = folder.glob("lib/python3*/site-packages")
    (packages / "numpy").symlink_to(Path(np.__file__).parent)
    return folder / "bin" / "python"


def install_and_use(python, folder, *what):
    """Install something without a network, and weather a triangle with it in an environment of no other variables."""
    install = [str(python), "-m", "pip", "install", "--quiet", "--no-index", "--no-deps", *map(str, what)]
    subprocess.run(install, check=True, env={"PATH": os.defpath})
    done = subprocess.run([str(python), "-c", USE, str(folder / "run")], env={}, capture_output=True, text=True)
    assert done.returncode == 0, done.stderr
    return done.stdout.splitlines()


def test_the_wheel_for_linux_brings_the_program_along(tmp_path):
    wheel = build_wheel(tmp_path, BUILD)
    assert wheel.name.endswith("-py3-none-linux_x86_64.whl")
    names = zipfile.ZipFile(wheel).namelist()
    assert "talvek/program/bin/talvek" in names
    assert any(name.startswith("talvek/program/lib/libTalvekAPI.so.") for name in names)
    python = empty_environment(tmp_path / "empty")
    place, used = install_and_use(python, tmp_path, wheel)
    assert place.startswith(str(tmp_path / "empty"))
    assert used == "True (3, 3)"
    sweep = subprocess.run([str(python.parent / "talvek-sweep"), "--help"], env={}, capture_output=True, text=True)
    assert sweep.returncode == 0 and "collect" in sweep.stdout


def test_a_wheel_without_the_program_is_for_every_platform(tmp_path):
    assert build_wheel(tmp_path).name.endswith("-py3-none-any.whl")


def test_an_editable_install_uses_the_sources_where_they_are(tmp_path):
    venv.create(tmp_path / "env", with_pip=True, system_site_packages=True)
    sources = copy_sources(tmp_path)
    python = tmp_path / "env" / "bin" / "python"
    install = [str(python), "-m", "pip", "install", "--quiet", "--no-index", "--no-deps", "--no-build-isolation"]
    subprocess.run([*install, "--editable", str(sources)], check=True, env={"PATH": os.defpath})
    shown = subprocess.run(
        [str(python), "-c", "import talvek; print(talvek.__file__)"], env={}, capture_output=True, text=True, check=True
    )
    assert shown.stdout.strip() == str(sources / "src" / "talvek" / "__init__.py")


def test_the_wheel_for_windows_has_the_program_that_wine_runs(tmp_path):
    windows = BUILD.parent / "windows"
    if not (windows / "talvek.exe").exists():
        pytest.skip("no Windows build beside this one; and no Python for Windows to install the wheel with")
    wheel = build_wheel(tmp_path, windows)
    assert wheel.name.endswith("-py3-none-win_amd64.whl")
    zipfile.ZipFile(wheel).extractall(tmp_path / "unpacked")
    program = tmp_path / "unpacked" / "talvek" / "program" / "bin" / "talvek.exe"
    wine = [str(PACKAGE.parent / "scripts" / "wine"), str(windows / "wine"), str(program), "--version"]
    shown = subprocess.run(wine, capture_output=True, text=True, check=True).stdout
    assert shown.startswith("talvek ")
