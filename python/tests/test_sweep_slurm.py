"""A sweep on a Slurm cluster that is started for it: what happens when a worker or a daemon is killed."""

import shlex

import pytest
from slurm_cluster import Cluster, reason_to_skip
from sweeps import RUNS, finished, kill_worker, undisturbed, write_plan

from talvek.errors import ParameterError, RunError
from talvek.sweep import Sweep, slurm
from talvek.sweep.__main__ import main

MAX_ARRAY_SIZE = 5
# Makes chunks of three runs.
SECONDS = 100.0


@pytest.fixture(scope="module")
def cluster(tmp_path_factory):
    """A running cluster; everything in this file is skipped where there can be none."""
    reason = reason_to_skip()
    if reason is not None:
        pytest.skip(reason)
    with Cluster(tmp_path_factory.mktemp("cluster"), MAX_ARRAY_SIZE) as running:
        yield running


@pytest.fixture(scope="module")
def quiet(tmp_path_factory):
    """A plan of 24 runs, and the results of the sweep when nothing happens to it."""
    folder = tmp_path_factory.mktemp("quiet")
    plan = write_plan(folder, epochs=100)
    return plan, undisturbed(plan, folder / "sweep")


@pytest.fixture
def sweep(cluster, quiet, tmp_path, monkeypatch):
    """The same sweep, planned once more, and the results that are expected of it."""
    for name in ("PATH", "SLURM_CONF"):
        monkeypatch.setenv(name, cluster.environment[name])
    return Sweep.plan(quiet[0], tmp_path / "sweep"), quiet[1]


def submit(sweep):
    return sweep.submit(seconds=SECONDS)


def test_nothing_is_submitted_in_a_dry_run(sweep, capsys):
    folder = str(sweep[0].store.folder)
    assert main(["submit", folder, "--dry-run", "--seconds", "100", "--", "--time=10", "--nice"]) == 0
    said = capsys.readouterr().out
    assert "24 runs in 8 chunks of up to 3" in said
    assert said.count("sbatch --parsable --array=0-") == 2
    assert "--array=0-4" in said and "--array=0-2" in said
    assert "--time=10 --nice" in said
    assert "--chunk $((1 + SLURM_ARRAY_TASK_ID))" in said and "$((6 + SLURM_ARRAY_TASK_ID))" in said
    assert slurm._ask(["squeue", "--noheader"]) == ""
    with pytest.raises(ParameterError, match="no chunk 1 was submitted"):
        sweep[0].work(1)


def test_chunks_take_five_minutes_by_what_a_run_takes(sweep):
    said = sweep[0].submit(dry_run=True)
    seconds = sweep[0].status()["seconds"]
    size = int(said.splitlines()[0].split()[-1])
    assert size >= 300 / seconds > size - 1


def test_options_that_sbatch_refuses_are_told(sweep):
    with pytest.raises(RunError, match="sbatch .*partition"):
        sweep[0].submit(["--partition=none"], seconds=SECONDS)


def test_workers_and_daemons_are_killed_and_the_sweep_resumed(cluster, sweep):
    sweep, expected = sweep
    folder = sweep.store.folder
    submit(sweep)

    cluster.wait_for(lambda: finished(folder) >= 1, "a result")
    cluster.wait_for(lambda: kill_worker("talvek.sweep", "work", str(folder)), "a worker to kill")
    cluster.wait_for(lambda: finished(folder) >= 3, "another result")
    cluster.kill("slurmctld")
    cluster.start("slurmctld")
    cluster.wait_for(cluster.is_up, "a node that is up")
    cluster.wait_for(lambda: finished(folder) >= 6, "another result")
    cluster.kill("slurmd")
    cluster.start("slurmd")
    cluster.wait_for(cluster.is_up, "a node that is up")
    cluster.wait_for(lambda: finished(folder) >= 8, "another result")

    cluster.ask("scancel", "--user=root")
    cluster.wait_until_idle()
    missing = len(sweep.missing())
    assert 0 < missing < RUNS

    said = submit(sweep)
    assert said.startswith(f"{missing} runs in {-(-missing // 3)} chunks")
    cluster.wait_until_idle()
    assert sweep.missing() == []
    assert sweep.collect().read_bytes() == expected
    assert sweep.submit() == "nothing is missing"


def test_every_chunk_leaves_two_files_and_running_it_twice_is_harmless(cluster, sweep):
    sweep, expected = sweep
    folder = sweep.store.folder
    submit(sweep)
    cluster.wait_until_idle()
    files = [*(folder / "results").iterdir(), *(folder / "logs").iterdir()]
    assert len(files) <= 2 * 8
    assert sweep.work(4) == 0
    assert sweep.collect().read_bytes() == expected
    script = slurm._script(folder, 1)
    assert shlex.quote(str(folder)) in script
