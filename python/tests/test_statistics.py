"""Statistics of runs in any order, in any parts."""

import subprocess

import numpy as np
import pytest
from programs import EXAMPLE_STONE
from sweeps import write_plan

import talvek
from talvek import ParameterError, Statistics
from talvek.statistics import gather
from talvek.sweep import Sweep


def runs(count=400, vertices=50):
    random = np.random.default_rng(11)
    return np.round(random.normal(-1.0, 0.2, (count, vertices)), 6)


def added(rows):
    statistics = Statistics(rows.shape[1], -2.0, 0.0)
    for row in rows:
        statistics.add(row)
    return statistics


def test_they_are_those_of_all_runs_together():
    rows = runs()
    statistics = added(rows)
    assert statistics.mean == pytest.approx(rows.mean(axis=0), abs=1e-12)
    assert statistics.spread == pytest.approx(rows.std(axis=0, ddof=1), abs=1e-9)
    for q in (0.1, 0.5, 0.9):
        assert statistics.quantile(q) == pytest.approx(np.quantile(rows, q, axis=0), abs=2 * 2.0 / 64)


def test_neither_order_nor_parts_make_a_difference():
    rows = runs()
    whole, turned = added(rows), added(rows[::-1])
    parts = added(rows[:70])
    parts.merge(added(rows[70:]))
    for other in (turned, parts):
        assert other.runs == whole.runs
        assert np.array_equal(other.mean, whole.mean)
        assert np.array_equal(other.spread, whole.spread)
        assert np.array_equal(other.quantile(0.3), whole.quantile(0.3))


def test_squares_do_not_overflow():
    statistics = Statistics(1, -2000.0, 2000.0)
    for sign in (1, -1) * 500:
        statistics.add(np.array([sign * 1999.0]))
    assert statistics.mean[0] == 0
    assert statistics.spread[0] == pytest.approx(1999.0 * np.sqrt(1000 / 999), rel=1e-9)


def test_what_does_not_fit_is_refused():
    statistics = added(runs())
    with pytest.raises(ParameterError, match="3 vertices where there were 50"):
        statistics.add(np.zeros(3))
    with pytest.raises(ParameterError, match="not finite"):
        statistics.add(np.full(50, np.nan))
    with pytest.raises(ParameterError, match="do not merge"):
        statistics.merge(Statistics(50, 0.0, 1.0))


def swept(plan, folder):
    sweep = Sweep.plan(plan, folder)
    sweep.run()
    return sweep


def test_surfaces_of_a_sweep_are_gathered(tmp_path):
    sweep = swept(write_plan(tmp_path, samples=4, keep="last"), tmp_path / "sweep")
    statistics = gather(sweep, -0.1, 0.0)
    moved = [talvek.open(tmp_path / "sweep" / "runs" / str(i)).displacement().signed for i in range(1, 9)]
    assert statistics.runs == 8
    assert statistics.mean == pytest.approx(np.mean(moved, axis=0), abs=1e-6)
    assert statistics.spread == pytest.approx(np.std(moved, axis=0, ddof=1), abs=1e-6)


def test_surfaces_that_were_not_kept_cannot_be_gathered(tmp_path):
    sweep = swept(write_plan(tmp_path, samples=1), tmp_path / "sweep")
    with pytest.raises(ParameterError, match="keep = "):
        gather(sweep, -1.0, 0.0)


def test_surfaces_on_a_grid_count_from_the_grid_before_weathering(tmp_path):
    subprocess.run([EXAMPLE_STONE, "stone.obj"], cwd=tmp_path, check=True, capture_output=True)
    plan = tmp_path / "plan.toml"
    plan.write_text('[sweep]\nmesh = ["stone.obj"]\nmode = 2\nkeep = "last"\n[vary.rv]\nvalues = [1.0, 2.0]\n')
    statistics = gather(swept(plan, tmp_path / "sweep"), -0.1, 0.0)
    assert statistics.runs == 2
    assert -0.03 < np.median(statistics.mean) < -0.01
    assert np.median(statistics.spread) > 0.002
