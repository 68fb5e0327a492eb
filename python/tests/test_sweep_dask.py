"""A sweep on a Dask cluster of this machine, whose worker and scheduler are killed."""

import subprocess
import sys

import pytest
from slurm_cluster import die_with_parent
from sweeps import finished, kill_worker, undisturbed, wait_until, write_plan

from talvek.sweep import Sweep

pytest.importorskip("distributed", reason="python3-distributed is not installed")


class DaskCluster:
    """A scheduler and workers as processes of their own, which a nanny starts again when they die."""

    def __init__(self, folder, workers=2):
        self.folder = folder
        self.file = folder / "scheduler.json"
        self.processes = [self._start("scheduler", "--host", "127.0.0.1", "--port", "0", "--no-dashboard")]
        wait_until(self.file.exists, "a scheduler")
        for i in range(workers):
            options = ["--nthreads", "1", "--local-directory", str(folder / f"worker{i}"), "--no-dashboard"]
            self.processes.append(self._start("worker", *options, "--death-timeout", "20"))

    def _start(self, kind, *options):
        command = [sys.executable, "-m", f"distributed.cli.dask_{kind}", "--scheduler-file", str(self.file), *options]
        log = open(self.folder / f"dask-{kind}.log", "ab")
        try:
            return subprocess.Popen(command, stdout=log, stderr=log, cwd=self.folder, preexec_fn=die_with_parent)
        finally:
            log.close()

    def kill_worker(self):
        """kill -9 of what one of the nannies looks after; whether there was one."""
        return kill_worker("spawn_main", parents=[nanny.pid for nanny in self.processes[1:]])

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in self.processes:
            process.terminate()
        for process in self.processes:
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()


def folder_of(tmp_path, name):
    folder = tmp_path / name
    folder.mkdir()
    return folder


HOST = """
import sys
import dask
from distributed import Client
from talvek.sweep import Sweep, sweep

# How long a scheduler that is gone is looked for, and what it may still say is waited for.
dask.config.set({"distributed.comm.timeouts.connect": "3s"})
sweep._PATIENCE_AFTER_ERROR = 3.0
with Client(scheduler_file=sys.argv[1]) as client:
    client.wait_for_workers(1)
    Sweep(sys.argv[2]).run(client.get_executor(), workers=2)
"""


def start_host(cluster, sweep):
    """A process that runs a sweep on a Dask cluster, as a user would write it."""
    command = [sys.executable, "-c", HOST, str(cluster.file), str(sweep.store.folder)]
    return subprocess.Popen(command, stderr=subprocess.PIPE, text=True)


def test_a_dask_worker_and_the_scheduler_are_killed(tmp_path):
    plan = write_plan(tmp_path, epochs=100)
    expected = undisturbed(plan, tmp_path / "quiet")
    sweep = Sweep.plan(plan, tmp_path / "sweep")

    with DaskCluster(folder_of(tmp_path, "first")) as cluster:
        host = start_host(cluster, sweep)
        wait_until(lambda: finished(tmp_path / "sweep") >= 3, "a result")
        wait_until(lambda: cluster.kill_worker(), "a worker to kill")
        wait_until(lambda: finished(tmp_path / "sweep") >= 8, "another result")
        cluster.processes[0].kill()
        _, errors = host.communicate(timeout=300)
    assert host.returncode != 0
    assert "runs are missing" in errors
    assert 0 < finished(tmp_path / "sweep") < len(sweep)

    with DaskCluster(folder_of(tmp_path, "second")) as cluster:
        host = start_host(cluster, sweep)
        _, errors = host.communicate(timeout=300)
    assert host.returncode == 0, errors
    assert sweep.collect().read_bytes() == expected
