"""Handing a sweep to Slurm, as job arrays."""

from __future__ import annotations

import csv
import math
import re
import shlex
import subprocess
import sys
from collections.abc import Iterable, Iterator, Sequence
from pathlib import Path

from talvek.errors import ParameterError, RunError
from talvek.sweep.store import write_whole

_SECONDS_OF_A_CHUNK = 300.0


def _ranges(numbers: Sequence[int]) -> str:
    """Numbers in order as ``1-5 9 12-13``."""
    parts: list[list[int]] = []
    for number in numbers:
        if parts and parts[-1][1] + 1 == number:
            parts[-1][1] = number
        else:
            parts.append([number, number])
    return " ".join(f"{first}-{last}" if first != last else f"{first}" for first, last in parts)


def _numbers(ranges: str) -> Iterator[int]:
    for part in ranges.split():
        first, _, last = part.partition("-")
        yield from range(int(first), int(last or first) + 1)


def _submissions(folder: Path) -> list[Path]:
    return sorted((folder / "submissions").glob("*.csv"))


def _chunks(path: Path) -> list[tuple[int, str]]:
    with open(path, newline="", encoding="utf-8") as file:
        return [(int(chunk), runs) for chunk, runs in list(csv.reader(file))[1:]]


def runs_of_chunk(folder: Path, chunk: int) -> list[int]:
    """The numbers of the runs of a chunk that was submitted."""
    for path in _submissions(folder):
        for number, runs in _chunks(path):
            if number == chunk:
                return list(_numbers(runs))
    raise ParameterError(f"{folder}: no chunk {chunk} was submitted")


def _ask(command: Sequence[str]) -> str:
    try:
        done = subprocess.run(command, capture_output=True, text=True, check=False)
    except FileNotFoundError as error:
        raise RunError(f"{command[0]} is not there: is this a machine of a Slurm cluster?") from error
    if done.returncode != 0:
        raise RunError(f"{shlex.join(command)}: {done.stderr.strip()}")
    return done.stdout


def max_array_size() -> int:
    """One more than the largest number that the cluster takes for a task of an array."""
    found = re.search(r"^MaxArraySize\s*=\s*(\d+)", _ask(["scontrol", "show", "config"]), re.MULTILINE)
    if found is None:
        raise RunError("scontrol does not say MaxArraySize")
    return int(found[1])


def _script(folder: Path, first: int) -> str:
    work = shlex.join([sys.executable, "-m", "talvek.sweep", "work", str(folder), "--chunk"])
    return f"#!/bin/sh\nexec {work} $(({first} + SLURM_ARRAY_TASK_ID))\n"


def _commands(
    folder: Path, chunks: Sequence[int], size: int, options: Sequence[str]
) -> Iterator[tuple[list[str], str]]:
    """The arguments and the script of every array."""
    for start in range(0, len(chunks), size):
        part = chunks[start : start + size]
        command = ["sbatch", "--parsable", f"--array=0-{len(part) - 1}", f"--output={folder}/logs/%A_%a.log"]
        yield [*command, "--job-name=talvek-sweep", *options], _script(folder, part[0])


def _write_chunks(path: Path, chunks: Iterable[tuple[int, Sequence[int]]]) -> None:
    lines = ["chunk,runs", *(f"{number},{_ranges(runs)}" for number, runs in chunks)]
    write_whole(path, "\n".join(lines) + "\n")


def submit(folder: Path, missing: Sequence[int], seconds: float, options: Sequence[str], *, dry_run: bool) -> str:
    """Divide runs into chunks and submit them; returns what was done."""
    earlier = _submissions(folder)
    first = max((number for path in earlier for number, _ in _chunks(path)), default=0) + 1
    size = max(1, math.ceil(_SECONDS_OF_A_CHUNK / max(seconds, 1e-9)))
    chunks = [(first + i // size, missing[i : i + size]) for i in range(0, len(missing), size)]
    commands = list(_commands(folder, [number for number, _ in chunks], max_array_size(), options))
    if not dry_run:
        _write_chunks(folder / "submissions" / f"{len(earlier) + 1:06}.csv", chunks)
    said = [f"{len(missing)} runs in {len(chunks)} chunks of up to {size}"]
    for command, script in commands:
        said += [shlex.join(command), script.rstrip("\n")]
        if not dry_run:
            done = subprocess.run(command, input=script, capture_output=True, text=True, check=False)
            if done.returncode != 0:
                raise RunError(f"{shlex.join(command)}: {done.stderr.strip()}")
            said.append(f"job {done.stdout.strip()}")
    return "\n".join(said)
