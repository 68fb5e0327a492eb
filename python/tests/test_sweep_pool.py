"""Sweeps on this machine whose workers are killed."""

import multiprocessing
import os
import signal
import threading

from sweeps import finished, undisturbed, wait_until, write_plan

from talvek.sweep import Sweep


def test_a_killed_worker_of_the_pool_costs_nothing(tmp_path):
    plan = write_plan(tmp_path, epochs=100)
    expected = undisturbed(plan, tmp_path / "quiet")
    sweep = Sweep.plan(plan, tmp_path / "sweep")
    runner = threading.Thread(target=sweep.run, kwargs={"workers": 2})
    runner.start()
    for count in (3, 8):
        wait_until(lambda count=count: finished(tmp_path / "sweep") >= count or not runner.is_alive(), "a result")
        wait_until(lambda: multiprocessing.active_children() or not runner.is_alive(), "a worker")
        assert runner.is_alive()
        os.kill(multiprocessing.active_children()[0].pid, signal.SIGKILL)
    runner.join()
    assert sweep.collect().read_bytes() == expected


def test_a_sweep_that_is_killed_as_a_whole_goes_on_where_it_was(tmp_path):
    plan = write_plan(tmp_path, epochs=100)
    expected = undisturbed(plan, tmp_path / "quiet")
    sweep = Sweep.plan(plan, tmp_path / "sweep")
    pid = os.fork()
    if pid == 0:
        os.setsid()
        sweep.run(workers=2)
        os._exit(0)
    wait_until(lambda: finished(tmp_path / "sweep") >= 4, "a result")
    os.killpg(pid, signal.SIGKILL)
    os.waitpid(pid, 0)
    before = finished(tmp_path / "sweep")
    assert 0 < before < len(sweep)
    sweep.run()
    assert finished(tmp_path / "sweep") >= len(sweep)
    assert sweep.collect().read_bytes() == expected
