"""Statistics of runs in any order, in any parts."""

import numpy as np
import pytest

from talvek import ParameterError, Statistics


def runs(count=400, vertices=50):
    random = np.random.default_rng(11)
    return np.round(random.normal(-1.0, 0.2, (count, vertices)), 6)


def gather(rows):
    statistics = Statistics(rows.shape[1], -2.0, 0.0)
    for row in rows:
        statistics.add(row)
    return statistics


def test_they_are_those_of_all_runs_together():
    rows = runs()
    statistics = gather(rows)
    assert statistics.mean == pytest.approx(rows.mean(axis=0), abs=1e-12)
    assert statistics.spread == pytest.approx(rows.std(axis=0, ddof=1), abs=1e-9)
    for q in (0.1, 0.5, 0.9):
        assert statistics.quantile(q) == pytest.approx(np.quantile(rows, q, axis=0), abs=2 * 2.0 / 64)


def test_neither_order_nor_parts_make_a_difference():
    rows = runs()
    whole, turned = gather(rows), gather(rows[::-1])
    parts = gather(rows[:70])
    parts.merge(gather(rows[70:]))
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
    statistics = gather(runs())
    with pytest.raises(ParameterError, match="3 vertices where there were 50"):
        statistics.add(np.zeros(3))
    with pytest.raises(ParameterError, match="not finite"):
        statistics.add(np.full(50, np.nan))
    with pytest.raises(ParameterError, match="do not merge"):
        statistics.merge(Statistics(50, 0.0, 1.0))
