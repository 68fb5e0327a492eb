"""What a worker does: run what it is told, one after the other, and write down what came out."""

from __future__ import annotations

import csv
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

from talvek.errors import MeshError, ParameterError, Refused, RunError, TalvekError
from talvek.program import call
from talvek.sweep.plan import COLUMNS, ENVIRONMENT, MATERIAL, Plan, PlannedRun
from talvek.sweep.store import ResultFile, Store

PERCENTILES = (1, 5, 25, 50, 75, 95, 99)
RESULT_COLUMNS = (
    ["outcome", "days", "delta_mm", "mean_mm", "smallest_mm", "largest_mm"]
    + [f"p{percentile}_mm" for percentile in PERCENTILES]
    + ["area_mm2", "volume_mm3", "last_surface_sha256", "message"]
)

# How an option states the unit of a column.
_UNITS = {
    "so2_ug_m3": "ug/m3",
    "so2_ppb": "ppb",
    "so2_ugS_m3": "ugS/m3",
    "no2_ug_m3": "ug/m3",
    "no2_ppb": "ppb",
    "no2_ugN_m3": "ugN/m3",
    "rain_mm_year": "mm",
}


def _delimiter(line: str) -> str:
    return next((mark for mark in (";", "\t") if mark in line), ",")


def varied_table(text: str, values: dict[str, float]) -> str:
    """An epoch table in which columns of the same quantity give way to values that hold for every epoch."""
    lines = [line for line in text.removeprefix("\ufeff").splitlines() if line.strip() and not line.startswith("#")]
    mark = _delimiter(lines[0])
    rows = list(csv.reader(lines, delimiter=mark))
    replaced = {column for name in values for columns in ENVIRONMENT.values() if name in columns for column in columns}
    places = [place for place, name in enumerate(rows[0]) if name.strip() not in replaced]
    has_commas = mark == ";" and not any("." in cell for row in rows[1:] for cell in row)
    cells = [repr(value).replace(".", ",") if has_commas else repr(value) for value in values.values()]
    result = io.StringIO()
    writer = csv.writer(result, delimiter=mark, lineterminator="\n")
    writer.writerow([*(rows[0][place] for place in places), *values])
    writer.writerows([*(row[place] for place in places), *cells] for row in rows[1:])
    return result.getvalue()


def _option(column: str, value: float) -> str:
    """The option that gives every epoch the value of a column."""
    option = {"rain": "rv", "ph": "rph"}.get(column.partition("_")[0], column.partition("_")[0])
    return f"--{option}={value!r}{_UNITS.get(column, '')}"


def arguments_of(plan: Plan, run: PlannedRun, out: Path, table: Path) -> list[str]:
    """The program's arguments for a run. Writes the table of epochs where the run has one of its own."""
    values = dict(zip(plan.names, run.values, strict=True))
    arguments = ["run", run.mesh, "--out", str(out), "--mode", str(plan.mode), "--model", str(plan.model)]
    arguments += ["--frames", plan.keep, "--quiet"]
    if plan.unit is not None:
        arguments += ["--unit", plan.unit]
    of_epochs = {name: value for name, value in values.items() if name in COLUMNS}
    if plan.epoch_table is not None:
        table.write_text(varied_table(plan.epoch_table.read_text(encoding="utf-8"), of_epochs), encoding="utf-8")
        arguments += ["--epoch-table", str(table)]
    else:
        arguments += ["--epochs", str(plan.epochs), "--days", str(plan.days)]
        arguments += [_option(name, value) for name, value in of_epochs.items()]
    for name, value in values.items():
        if name in MATERIAL or plan.mode == 0:
            arguments += [f"--{name}={value!r}"]
    return arguments


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
            call(arguments_of(store.plan, run, out, scratch / "epochs.csv"))
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
