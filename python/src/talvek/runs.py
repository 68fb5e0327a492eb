"""Starting runs, and waiting for them."""

from __future__ import annotations

import contextlib
import dataclasses
import json
import os
import signal
import subprocess
import sys
import tempfile
import time
from collections.abc import Callable, Mapping, Sequence
from pathlib import Path
from types import TracebackType
from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from talvek.epochs import Epochs, as_arguments
from talvek.errors import ParameterError
from talvek.program import error_of, find_program
from talvek.rates import Material
from talvek.result import DATES, Result

Mesh = str | os.PathLike[str] | tuple[ArrayLike, ArrayLike]
Progress = Callable[[int, int], None]

_POLL_SECONDS = 0.02

# On Windows a process can be told to end by itself only through the console, and only as the head of a group.
if sys.platform == "win32":
    _NEW_GROUP, _CANCEL = subprocess.CREATE_NEW_PROCESS_GROUP, signal.CTRL_BREAK_EVENT
else:
    _NEW_GROUP, _CANCEL = 0, signal.SIGINT


def _write_mesh(path: Path, vertices: ArrayLike, faces: ArrayLike) -> None:
    """Write arrays as an OBJ file, with as many digits as single precision needs."""
    points = np.asarray(vertices, dtype=np.float32)
    corners = np.asarray(faces)
    if points.ndim != 2 or points.shape[1] != 3 or corners.ndim != 2 or corners.shape[1] != 3:
        raise ParameterError("a mesh is a pair of arrays: vertices of shape (V, 3) and faces of shape (F, 3)")
    if corners.size and (corners.min() < 0 or corners.max() >= len(points)):
        raise ParameterError(f"a face names a vertex outside 0 to {len(points) - 1}")
    with open(path, "w", encoding="ascii", newline="\n") as file:
        file.writelines("v %.9g %.9g %.9g\n" % (x, y, z) for x, y, z in points.tolist())
        file.writelines("f %d %d %d\n" % (a, b, c) for a, b, c in (corners + 1).tolist())


def _write_dates(folder: Path, ends: NDArray[np.datetime64] | None) -> None:
    """Leave the last days of the epochs beside the record, which has none for epochs that are given as options."""
    (folder / DATES).unlink(missing_ok=True)
    if ends is not None:
        (folder / DATES).write_text("\n".join(ends.astype(str)) + "\n", encoding="ascii")


def _material_arguments(material: Material | Mapping[str, float] | None) -> list[str]:
    if material is None:
        return []
    values: Mapping[str, Any] = dataclasses.asdict(material) if isinstance(material, Material) else material
    return [f"--{name}={float(value)!r}" for name, value in values.items()]


class Run:
    """A run under way. `start` makes it; several may go on side by side."""

    def __init__(self, arguments: Sequence[str], out: Path, progress: Progress | None) -> None:
        self._out = out
        self._progress = progress
        self._told = -1
        # Files, not pipes: nobody has to read for the program to go on.
        self._folder = tempfile.TemporaryDirectory(prefix="talvek-run-")
        self._lines = Path(self._folder.name) / "lines"
        self._messages = Path(self._folder.name) / "messages"
        with self._lines.open("ab") as lines, self._messages.open("ab") as messages:
            self._process = subprocess.Popen(
                [find_program(), *arguments],
                stdin=subprocess.DEVNULL,
                stdout=lines,
                stderr=messages,
                close_fds=False,
                creationflags=_NEW_GROUP,
            )

    def __enter__(self) -> Run:
        """The run itself."""
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        """Cancel a run that is still under way."""
        if self.poll() is None:
            self.cancel()
            self._process.wait()

    @property
    def epochs(self) -> tuple[int, int]:
        """How many epochs are done, and how many there are; (0, 0) before that is known."""
        done, planned = 0, 0
        for line in self._lines.read_bytes().split(b"\n")[:-1]:
            event = json.loads(line)
            if event.get("event") == "plan":
                planned = len(event["epochs"])
            elif event.get("event") == "epoch":
                done = int(event["number"])
        return done, planned

    def poll(self) -> int | None:
        """The program's exit status; none while it runs."""
        status: int | None = self._process.poll()
        if self._progress is not None:
            done, planned = self.epochs
            if planned and done != self._told:
                self._told = done
                self._progress(done, planned)
        return status

    def cancel(self) -> None:
        """End the run. The frames that are there stay, and are whole."""
        if self._process.poll() is None:
            self._process.send_signal(_CANCEL)

    def wait(self, timeout: float | None = None) -> Result:
        """Wait for the end.

        Parameters
        ----------
        timeout : float, optional
            At most so many seconds; then TimeoutError, and the run goes on.

        Returns
        -------
        Result

        Raises
        ------
        TalvekError
            Of the kind of the failure, with the program's own message.
        """
        end = None if timeout is None else time.monotonic() + timeout
        while self.poll() is None:
            if end is not None and time.monotonic() >= end:
                raise TimeoutError(f"the run has not ended within {timeout} s")
            with contextlib.suppress(subprocess.TimeoutExpired):
                self._process.wait(None if end is None and self._progress is None else _POLL_SECONDS)
        if self._process.returncode != 0:
            raise error_of(self._process.returncode, self._messages.read_text(encoding="utf-8", errors="replace"))
        return Result(self._out)


def start(
    mesh: Mesh,
    out: str | os.PathLike[str],
    *,
    mode: int | str | None = None,
    model: int | str | None = None,
    epochs: Epochs | None = None,
    material: Material | Mapping[str, float] | None = None,
    unit: str | None = None,
    frames: str = "all",
    options: Sequence[str] = (),
    progress: Progress | None = None,
) -> Run:
    """Start a run and return at once.

    Parameters
    ----------
    mesh : path, or pair of arrays
        A file, or vertices of shape (V, 3), in the unit, and faces of shape (F, 3) that count vertices from 0.
    out : path
        The folder for all files of the run; it is made when it is not there.
    mode, model : int or str, optional
        By number or name, as the program takes them.
    epochs : sequence of Epoch, path, ClimateTable or mapping of columns, optional
        The epochs one by one, or a table of epochs.
    material : Material or mapping, optional
        The stone.
    unit : str, optional
        The unit of the mesh's coordinates, as ``"m"``; millimetres otherwise.
    frames : str
        Which frames are kept: ``"all"``, ``"last"``, ``"none"`` or ``"every:N"``.
    options : sequence of str
        Further options of ``talvek run``.
    progress : callable, optional
        Called while somebody waits, with the number of epochs that are done and of all.

    Returns
    -------
    Run
    """
    folder = Path(out).resolve()
    folder.mkdir(parents=True, exist_ok=True)
    if isinstance(mesh, tuple):
        path = folder / "mesh.obj"
        _write_mesh(path, *mesh)
    else:
        path = Path(mesh)
    arguments = ["run", str(path), "--out", str(folder), "--json", "--frames", frames]
    for name, value in (("--mode", mode), ("--model", model), ("--unit", unit)):
        arguments += [] if value is None else [name, str(value)]
    if epochs is not None:
        options_of_epochs, ends = as_arguments(epochs)
        arguments += options_of_epochs
        _write_dates(folder, ends)
    return Run([*arguments, *_material_arguments(material), *options], folder, progress)


def run(mesh: Mesh, out: str | os.PathLike[str], **settings: Any) -> Result:
    """Weather a mesh and wait for the result. The parameters are those of `start`."""
    with start(mesh, out, **settings) as running:
        return running.wait()
