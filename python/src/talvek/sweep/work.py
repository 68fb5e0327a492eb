"""What a worker does: run what it is told, one after the other, and write down what came out."""

from __future__ import annotations

import csv
import functools
import io
import json
import os
import shutil
import tempfile
import time
import uuid
from collections.abc import Iterator, Sequence
from contextlib import contextmanager
from pathlib import Path
from typing import Any

import numpy as np

from talvek.epochs import COLUMNS, EpochTable, read_table
from talvek.errors import MeshError, ParameterError, Refused, RunError, TalvekError
from talvek.program import call
from talvek.sweep.plan import Plan, PlannedRun
from talvek.sweep.store import ResultFile, Store

PERCENTILES = (1, 5, 25, 50, 75, 95, 99)
RESULT_COLUMNS = (
    ["outcome", "days", "delta_mm", "mean_mm", "smallest_mm", "largest_mm"]
    + [f"p{percentile}_mm" for percentile in PERCENTILES]
    + ["area_mm2", "volume_mm3", "last_surface_sha256", "message"]
)


@functools.cache
def _table_of(plan: Plan) -> EpochTable:
    """The table of a plan, or as many equal epochs as it asks for."""
    if plan.epoch_table is not None:
        return read_table(plan.epoch_table)
    return EpochTable(np.full(plan.epochs, float(plan.days)), {})


def arguments_of(plan: Plan, run: PlannedRun, out: Path) -> list[str]:
    """The program's arguments for a run."""
    values = dict(zip(plan.names, run.values, strict=True))
    arguments = ["run", run.mesh, "--out", str(out), "--mode", str(plan.mode), "--model", str(plan.model)]
    arguments += ["--frames", plan.keep, "--quiet"]
    if plan.unit is not None:
        arguments += ["--unit", plan.unit]
    arguments += _table_of(plan).replaced({n: value for n, value in values.items() if n in COLUMNS}).arguments()
    return arguments + [f"--{name}={value!r}" for name, value in values.items() if name not in COLUMNS]


def _number(value: Any) -> str:
    return "" if value is None else repr(float(value))


def result_cells(record: dict[str, Any]) -> str:
    """The cells of a run's record, in the order of the columns."""
    figures = record.get("figures", {})
    deltas = [epoch.get("delta") for epoch in record["epochs"]]
    total = sum(deltas) if all(delta is not None for delta in deltas) else None
    days = sum(epoch["days"] for epoch in record["epochs"])
    numbers = [days, total, *(figures.get(name) for name in ("mean", "smallest", "largest"))]
    numbers += figures.get("percentiles", [None] * len(PERCENTILES))
    numbers += [figures.get("area"), figures.get("volume")]
    digest = record.get("lastSurface", {}).get("sha256", "")
    return ",".join([record["outcome"], *map(_number, numbers), digest, ""])


def failure_cells(error: TalvekError) -> str:
    """The cells of a run that cannot work, however often it is tried."""
    text = io.StringIO()
    message = " ".join(str(error).split())
    csv.writer(text, lineterminator="").writerow(["refused", *[""] * (len(RESULT_COLUMNS) - 2), message])
    return text.getvalue()


@contextmanager
def _scratch(store: Store, number: int) -> Iterator[Path]:
    """A folder for one run: on the worker's own disk where nothing of it is kept."""
    if store.plan.keep == "none":
        with tempfile.TemporaryDirectory(prefix="talvek-sweep-") as folder:
            yield Path(folder)
        return
    path = store.folder / "scratch" / f"{number}-{uuid.uuid4().hex}"
    path.mkdir(parents=True)
    try:
        yield path
    finally:
        shutil.rmtree(path, ignore_errors=True)


def _keep(store: Store, number: int, out: Path) -> None:
    """Move a run's folder into its place, where it is whole. One that is there already is as good."""
    place = store.folder / "runs" / str(number)
    try:
        os.rename(out, place)
    except OSError:
        if not (place / "run.json").exists():
            raise


def run_one(store: Store, run: PlannedRun) -> str:
    """Run one run and return the cells of its result."""
    with _scratch(store, run.number) as scratch:
        out = scratch / "out"
        try:
            call(arguments_of(store.plan, run, out))
        except (ParameterError, MeshError, Refused) as error:
            return failure_cells(error)
        record = json.loads((out / "run.json").read_text(encoding="utf-8"))
        if record["outcome"] != "whole":
            raise RunError(f"run {run.number}: {record['outcome']}")
        cells = result_cells(record)
        if store.plan.keep != "none":
            _keep(store, run.number, out)
        return cells


def work(store: Store, runs: Sequence[PlannedRun], file: ResultFile) -> int:
    """Run runs in order and write each result down as soon as it is there. Returns how many there are."""
    for run in runs:
        begun = time.monotonic()
        result = run_one(store, run)
        file.append(run.number, result, time.monotonic() - begun)
    return len(runs)


# A process works for one sweep after the other; each has a file of its own.
_open_files: dict[str, tuple[Store, ResultFile]] = {}


def work_for(folder: str, runs: Sequence[PlannedRun]) -> int:
    """Run runs of the sweep in a folder, in whatever process this is called."""
    key = f"{folder} {os.getpid()}"
    if key not in _open_files:
        store = Store(Path(folder))
        _open_files[key] = (store, ResultFile(Path(folder), "worker"))
    return work(_open_files[key][0], runs, _open_files[key][1])
