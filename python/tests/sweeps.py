"""Sweeps that are long enough to be disturbed, and small enough to be run often."""

import os
import signal
import time
from pathlib import Path

import numpy as np


from talvek.sweep import Sweep


RUNS = 24


def write_grid(path, size=40, spacing=2.0):
    """A bumpy square of size x size vertices, its front side up."""
    column, row = np.meshgrid(np.arange(size), np.arange(size))
    height = 3 * np.sin(column / 3) * np.cos(row / 4)
    vertices = np.stack([column * spacing, row * spacing, height], axis=-1).reshape(-1, 3)
    corner = (row[:-1, :-1] * size + column[:-1, :-1]).ravel() + 1
    faces = np.concatenate(
        [
            np.stack([corner, corner + 1, corner + size + 1], axis=-1),
            np.stack([corner, corner + size + 1, corner + size], axis=-1),
        ]
    )
    lines = [f"v {x:.6f} {y:.6f} {z:.6f}" for x, y, z in vertices.tolist()]
    lines += [f"f {a} {b} {c}" for a, b, c in faces.tolist()]
    path.write_text("\n".join(lines) + "\n")
    return path


def write_plan(folder, *, size=40, epochs=2, samples=RUNS // 2, keep="none"):
    """A plan of samples of two quantities, for each of two amounts of rain."""
    write_grid(folder / "grid.obj", size)
    (folder / "plan.toml").write_text(
        f"""[sweep]
mesh = ["grid.obj"]
mode = 1
model = 3
epochs = {epochs}
days = 365
samples = {samples}
seed = 5
keep = "{keep}"

[vary.so2]
lognormal = [4e-13, 0.3]

[vary.kr]
uniform = [2000, 3000]

[vary.rv]
values = [0.5, 1.0]
"""
    )
    return folder / "plan.toml"


def undisturbed(plan, folder):
    """The results.csv of a sweep that nothing happens to."""
    sweep = Sweep.plan(plan, folder)
    sweep.run()
    return sweep.collect().read_bytes()


def finished(folder):
    """How many whole lines of results there are."""
    return sum(path.read_bytes().count(b"\n") for path in Path(folder, "results").glob("*.tsv"))


def wait_until(condition, what, seconds=180):
    """Wait until something holds."""
    end = time.monotonic() + seconds
    while not condition():
        assert time.monotonic() < end, f"{what} did not happen"
        time.sleep(0.02)


def _processes():
    """Number, parent and command line of every process."""
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit():
            try:
                parent = int((entry / "stat").read_text().rpartition(")")[2].split()[1])
                yield int(entry.name), parent, (entry / "cmdline").read_bytes().replace(b"\0", b" ").decode()
            except OSError:
                continue


def kill_worker(*words, parents=None):
    """kill -9 of one process whose command line has all of some words; whether there was one."""
    for process, parent, command in _processes():
        if all(word in command for word in words) and (parents is None or parent in parents):
            try:
                os.kill(process, signal.SIGKILL)
            except ProcessLookupError:
                continue
            return True
    return False
