"""The folder of a sweep. What stands in its files is what is true; whoever does the work only carries.

    plan.toml, manifest.json, runs.csv   written by ``plan``, never changed afterwards
    results/*.tsv                        a file for every worker, a line for every run that is finished
    runs/N/                              the files of run N, where they are kept
    scratch/                             runs under way
    submissions/*.csv, logs/             what was handed to a cluster, and what it said
    results.csv                          written by ``collect``
"""

from __future__ import annotations

import csv
import hashlib
import io
import json
import os
import socket
import uuid
from collections.abc import Iterable, Iterator
from pathlib import Path

from talvek.errors import ParameterError, RunError
from talvek.sweep.plan import Plan, PlannedRun, parse_plan

_SCHEMA = "talvek-sweep"
_VERSION = 1


def sha256(path: Path) -> str:
    """The SHA-256 of a file, in hexadecimal."""
    with open(path, "rb") as file:
        return hashlib.file_digest(file, "sha256").hexdigest()


def write_whole(path: Path, text: str) -> None:
    """Write a file so that under its name there is the old one or the whole new one."""
    beside = path.with_name(f".{path.name}.{uuid.uuid4().hex}")
    beside.write_text(text, encoding="utf-8", newline="")
    os.replace(beside, path)


def runs_text(plan: Plan, runs: Iterable[PlannedRun]) -> str:
    """The text of runs.csv."""
    text = io.StringIO()
    writer = csv.writer(text, lineterminator="\n")
    writer.writerow(["run", "mesh", *plan.names])
    writer.writerows([run.number, run.mesh, *map(repr, run.values)] for run in runs)
    return text.getvalue()


def inputs_of(plan: Plan) -> list[Path]:
    """The files that the runs of a plan read."""
    maps = [mesh.with_suffix(".bmp") for mesh in plan.meshes] if plan.mode in (2, 3) else []
    tables = [plan.epoch_table] if plan.epoch_table is not None else []
    return [*plan.meshes, *(path for path in maps if path.exists()), *tables]


class Store:
    """A sweep's folder that ``plan`` has made."""

    def __init__(self, folder: Path) -> None:
        self.folder = folder
        try:
            self.manifest = json.loads((folder / "manifest.json").read_text(encoding="utf-8"))
            text = (folder / "plan.toml").read_text(encoding="utf-8")
        except FileNotFoundError as error:
            raise ParameterError(f"{folder}: no sweep has been planned there") from error
        if self.manifest.get("schema") != _SCHEMA or self.manifest.get("version") != _VERSION:
            raise ParameterError(f"{folder}/manifest.json: not the manifest of a sweep of this version")
        self.plan = parse_plan(text, Path(self.manifest["folder"]))

    @staticmethod
    def create(folder: Path, text: str, origin: Path, plan: Plan, runs: list[PlannedRun], program: str) -> Store:
        """Write a plan out. A folder that has the very same plan is left as it is, one with another is refused."""
        table = runs_text(plan, runs)
        manifest = {
            "schema": _SCHEMA,
            "version": _VERSION,
            "program": program,
            "folder": str(origin),
            "runs": len(runs),
            "plan_sha256": hashlib.sha256(text.encode()).hexdigest(),
            "runs_sha256": hashlib.sha256(table.encode()).hexdigest(),
            "inputs": {str(path): sha256(path) for path in inputs_of(plan)},
        }
        if (folder / "manifest.json").exists():
            if json.loads((folder / "manifest.json").read_text(encoding="utf-8")) != manifest:
                raise ParameterError(f"{folder}: another sweep has been planned there; a plan is never changed")
            return Store(folder)
        for name in ("results", "runs", "scratch", "submissions", "logs"):
            (folder / name).mkdir(parents=True, exist_ok=True)
        write_whole(folder / "plan.toml", text)
        write_whole(folder / "runs.csv", table)
        write_whole(folder / "manifest.json", json.dumps(manifest, indent=2) + "\n")
        return Store(folder)

    def check(self, program: str) -> None:
        """Refuse to work with other inputs, another table of runs or another program than those of the plan."""
        files = {**self.manifest["inputs"], str(self.folder / "runs.csv"): self.manifest["runs_sha256"]}
        for name, digest in files.items():
            if not Path(name).exists() or sha256(Path(name)) != digest:
                raise ParameterError(f"{name} is not the file with which the sweep was planned")
        if program != self.manifest["program"]:
            raise ParameterError(f"the sweep was planned for {self.manifest['program']}; this is {program}")

    def runs(self) -> Iterator[PlannedRun]:
        """The runs in order."""
        with open(self.folder / "runs.csv", newline="", encoding="utf-8") as file:
            rows = csv.reader(file)
            next(rows)
            for number, mesh, *values in rows:
                yield PlannedRun(int(number), mesh, tuple(map(float, values)))

    def result_lines(self) -> Iterator[tuple[int, str, str, str]]:
        """Run, result, seconds and host of every whole line. The last line of a worker that was killed may be torn."""
        for path in sorted((self.folder / "results").glob("*.tsv")):
            lines = path.read_text(encoding="utf-8").split("\n")
            for line in lines[:-1]:
                number, result, seconds, host = line.split("\t")
                yield int(number), result, seconds, host

    def results(self) -> dict[int, str]:
        """The result of every finished run. Two that differ are an error."""
        results: dict[int, str] = {}
        for number, result, _, _ in self.result_lines():
            if results.setdefault(number, result) != result:
                raise RunError(f"run {number}: two different results: {results[number]} and {result}")
        return results

    def missing(self) -> list[int]:
        """The numbers of the runs that have no result, in order."""
        finished = {number for number, _, _, _ in self.result_lines()}
        return [number for number in range(1, int(self.manifest["runs"]) + 1) if number not in finished]

    def seconds(self) -> list[float]:
        """How long each finished run took."""
        return [float(seconds) for _, _, seconds, _ in self.result_lines()]


class ResultFile:
    """The file to which one worker appends its results."""

    def __init__(self, folder: Path, name: str) -> None:
        path = folder / "results" / f"{name}-{socket.gethostname()}-{os.getpid()}-{uuid.uuid4().hex[:8]}.tsv"
        self._descriptor = os.open(path, os.O_WRONLY | os.O_CREAT | os.O_EXCL | os.O_APPEND, 0o666)

    def append(self, number: int, result: str, seconds: float) -> None:
        """Append one line, in one write."""
        line = f"{number}\t{result}\t{seconds:.3f}\t{socket.gethostname()}\n".encode()
        if os.write(self._descriptor, line) != len(line):
            raise RunError("no room for a line of results")

    def close(self) -> None:
        """Close the file."""
        os.close(self._descriptor)
