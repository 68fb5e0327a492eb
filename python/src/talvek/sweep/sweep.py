"""A sweep: planned once, worked on by whoever is at hand, collected at the end."""

from __future__ import annotations

import concurrent.futures
import csv
import os
import shutil
from collections.abc import Callable, Sequence
from concurrent.futures import Executor, Future
from concurrent.futures.process import BrokenProcessPool
from pathlib import Path

from talvek import program
from talvek.errors import ParameterError, RunError
from talvek.sweep import slurm
from talvek.sweep.plan import PlannedRun, parse_plan, plan_runs
from talvek.sweep.store import ResultFile, Store, write_whole
from talvek.sweep.work import RESULT_COLUMNS, work, work_for

# So many tasks wait for each worker: enough to keep it busy, few enough to end soon.
_TASKS_AHEAD = 4
_ATTEMPTS_WITHOUT_PROGRESS = 3

# After an error, an executor that has lost its scheduler may never say what became of the other tasks. Those that go
# on nevertheless write their results down.
_PATIENCE_AFTER_ERROR = 30.0


def _failure_of(future: Future[int]) -> BaseException | None:
    """Why a task ended without a result. An executor that loses its workers may cancel what they had."""
    return RunError("the executor cancelled a task") if future.cancelled() else future.exception()


class Sweep:
    """The runs of one plan, in a folder of their own.

    ``Sweep.plan(file, folder)`` makes it, ``Sweep(folder)`` opens it. Everything it knows stands in files of that
    folder, so that any number of processes on any number of machines can work on it at once.
    """

    def __init__(self, folder: str | os.PathLike[str]) -> None:
        self.store = Store(Path(folder).resolve())

    @classmethod
    def plan(cls, file: str | os.PathLike[str], folder: str | os.PathLike[str]) -> Sweep:
        """Write every run's values out. A folder in which another sweep was planned is refused."""
        path = Path(file).resolve()
        text = path.read_text(encoding="utf-8")
        plan = parse_plan(text, path.parent)
        if not plan.meshes:
            raise ParameterError(f"{path}: [sweep]: mesh = [...] is missing")
        lost = [str(mesh) for mesh in plan.meshes if not mesh.exists()]
        if lost:
            raise ParameterError(f"no such mesh: {', '.join(lost)}")
        Store.create(Path(folder).resolve(), text, path.parent, plan, plan_runs(plan), program.version())
        return cls(folder)

    def __len__(self) -> int:
        """The number of planned runs."""
        return int(self.store.manifest["runs"])

    def missing(self) -> list[PlannedRun]:
        """The runs without a result, in order."""
        numbers = set(self.store.missing())
        return [run for run in self.store.runs() if run.number in numbers] if numbers else []

    def run(
        self,
        executor: Executor | None = None,
        *,
        workers: int | None = None,
        progress: Callable[[int, int], None] | None = None,
    ) -> None:
        """Run what is missing.

        Parameters
        ----------
        executor : concurrent.futures.Executor, optional
            Who works: anything with the ``submit`` of an executor, such as that of a Dask client. Processes on all
            cores of this machine otherwise.
        workers : int, optional
            How many processes, or how many workers the executor has.
        progress : callable, optional
            Called with the number of finished runs and of all.

        Raises
        ------
        RunError
            When runs are missing in the end; running again takes up where this ended.
        """
        self.store.check(program.version())
        count = workers or os.cpu_count() or 1
        attempts = 0
        missing = self.missing()
        while missing and attempts < _ATTEMPTS_WITHOUT_PROGRESS:
            if executor is not None:
                error = self._hand_out(executor, missing, count, progress)
            else:
                with concurrent.futures.ProcessPoolExecutor(count) as pool:
                    error = self._hand_out(pool, missing, count, progress)
            before, missing = len(missing), self.missing()
            attempts = attempts + 1 if len(missing) == before else 0
            if error is not None and not isinstance(error, BrokenProcessPool) and attempts > 0:
                raise RunError(f"{len(missing)} of {len(self)} runs are missing: {error}") from error
        if missing:
            raise RunError(f"{len(missing)} of {len(self)} runs are missing; a worker ended again and again")

    def _hand_out(
        self,
        executor: Executor,
        missing: Sequence[PlannedRun],
        workers: int,
        progress: Callable[[int, int], None] | None,
    ) -> BaseException | None:
        """Give runs to an executor, a few ahead of those that are done; returns the last error of a worker."""
        size = max(1, min(16, len(missing) // (workers * 8)))
        batches = [missing[i : i + size] for i in range(0, len(missing), size)]
        done = len(self) - len(missing)
        error: BaseException | None = None
        waiting: dict[Future[int], int] = {}
        position = 0
        while position < len(batches) or waiting:
            while error is None and position < len(batches) and len(waiting) < workers * _TASKS_AHEAD:
                batch = batches[position]
                try:
                    waiting[executor.submit(work_for, str(self.store.folder), batch)] = len(batch)
                except Exception as failure:  # Every kind of executor has errors of its own for having ended.
                    error = failure
                position += 1
            if not waiting:
                break
            patience = None if error is None else _PATIENCE_AFTER_ERROR
            finished, _ = concurrent.futures.wait(waiting, patience, concurrent.futures.FIRST_COMPLETED)
            if not finished:
                break
            for future in finished:
                done += waiting.pop(future)
                error = _failure_of(future) or error
            if progress is not None:
                progress(done, len(self))
        return error

    def work(self, chunk: int) -> int:
        """Run one chunk of those that were handed to a cluster; what has a result already is passed over."""
        self.store.check(program.version())
        missing = set(self.store.missing())
        numbers = missing & set(slurm.runs_of_chunk(self.store.folder, chunk))
        file = ResultFile(self.store.folder, f"chunk-{chunk}")
        try:
            return work(self.store, [run for run in self.store.runs() if run.number in numbers], file)
        finally:
            file.close()

    def submit(self, options: Sequence[str] = (), *, seconds: float | None = None, dry_run: bool = False) -> str:
        """Hand what is missing to Slurm, as job arrays whose tasks take five minutes or more.

        Parameters
        ----------
        options : sequence of str
            What ``sbatch`` is told besides.
        seconds : float, optional
            How long a run takes; otherwise it is taken from the runs that are done, and the first one is run here when
            there is none.
        dry_run : bool
            Submit nothing.

        Returns
        -------
        str
            The script, and what ``sbatch`` was told or would have been.
        """
        missing = self.missing()
        if not missing:
            return "nothing is missing"
        if seconds is None and not self.store.seconds():
            self.store.check(program.version())
            work_for(str(self.store.folder), missing[:1])
            missing = missing[1:]
        times = self.store.seconds()
        each = seconds if seconds is not None else sum(times) / len(times)
        return slurm.submit(self.store.folder, [run.number for run in missing], each, options, dry_run=dry_run)

    def status(self) -> dict[str, float]:
        """How many runs are ``planned``, ``finished``, ``refused`` and ``missing``, and the mean ``seconds`` of one."""
        results = self.store.results()
        times = self.store.seconds()
        return {
            "planned": len(self),
            "finished": len(results),
            "refused": sum(result.startswith("refused,") for result in results.values()),
            "missing": len(self) - len(results),
            "seconds": sum(times) / len(times) if times else 0.0,
        }

    def collect(self) -> Path:
        """Write results.csv: every run in order, what it was given and what came out, with full precision.

        Raises
        ------
        RunError
            When a run has two different results, or none.
        """
        results = self.store.results()
        path = self.store.folder / "results.csv"
        with open(self.store.folder / "runs.csv", newline="", encoding="utf-8") as file:
            header, *rows = file.read().splitlines()
        missing = len(rows) - len(results)
        if missing:
            raise RunError(f"{missing} of {len(rows)} runs are missing")
        lines = [f"{header},{','.join(RESULT_COLUMNS)}"]
        lines += [f"{row},{results[number]}" for number, row in enumerate(rows, start=1)]
        write_whole(path, "\n".join(lines) + "\n")
        return path

    def clean(self, *, force: bool = False) -> None:
        """Remove what workers that were killed have left, and the logs of a cluster."""
        if self.store.missing() and not force:
            raise RunError("runs are missing, and someone may be working on them; finish first, or force")
        for name in ("scratch", "logs"):
            shutil.rmtree(self.store.folder / name, ignore_errors=True)
            (self.store.folder / name).mkdir()


def read_results(path: str | os.PathLike[str]) -> dict[str, list[str]]:
    """The columns of a results.csv, as text."""
    with open(path, newline="", encoding="utf-8") as file:
        rows = list(csv.reader(file))
    return {name: [row[place] for row in rows[1:]] for place, name in enumerate(rows[0])}
