"""The program `talvek`: where it is, and how it is started."""

from __future__ import annotations

import os
import shutil
import subprocess
import sys
from collections.abc import Sequence
from pathlib import Path

from talvek.errors import Cancelled, MeshError, ParameterError, Refused, RunError, TalvekError

_NAME = "talvek.exe" if sys.platform == "win32" else "talvek"

_ERRORS: dict[int, type[TalvekError]] = {
    2: ParameterError,
    11: MeshError,
    12: ParameterError,
    14: MeshError,
    15: MeshError,
    16: ParameterError,
    17: ParameterError,
    20: Refused,
    130: Cancelled,
}


def find_program() -> str:
    """The path of the program: what TALVEK_PROGRAM names, or comes with this package, or is on the PATH."""
    named = os.environ.get("TALVEK_PROGRAM")
    if named:
        return named
    packaged = Path(__file__).parent / "program" / "bin" / _NAME
    found = str(packaged) if packaged.exists() else shutil.which(_NAME)
    if found is None:
        raise RunError("the program talvek is not there: not in this package, not on the PATH, not in TALVEK_PROGRAM")
    return found


def error_of(status: int, messages: str) -> TalvekError:
    """The exception for a status with which the program ended, with what it said."""
    lines = [line.removeprefix("talvek: ") for line in messages.splitlines() if not line.startswith("talvek: warning:")]
    kind: type[TalvekError] = _ERRORS.get(130 if status in (-2, -15) else status, RunError)
    return kind("\n".join(lines).strip() or f"the program ended with status {status}")


def call(arguments: Sequence[str]) -> str:
    """Run the program to its end and return what it prints."""
    # Descriptors are not inherited anyway, and leaving them alone lets a process start in a fraction of the time.
    done = subprocess.run([find_program(), *arguments], capture_output=True, close_fds=False, check=False)
    if done.returncode != 0:
        raise error_of(done.returncode, done.stderr.decode("utf-8", "replace"))
    return done.stdout.decode("utf-8")


def version() -> str:
    """The program's name and version, as ``talvek 2.2.0``."""
    return call(["--version"]).strip()
