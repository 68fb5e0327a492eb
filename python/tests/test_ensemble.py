"""Ensembles against full runs, and the statistics of runs."""

import subprocess

import numpy as np
import pytest
from programs import EXAMPLE_STONE
from sweeps import write_grid

import talvek
from talvek import plot
from talvek.sweep.plan import make_plan, sample_table


PLAN = {
    "sweep": {"mode": 3, "model": 3, "epochs": 5, "days": 3650, "samples": 200, "seed": 3},
    "vary": {"so2": {"lognormal": [4e-13, 0.3]}, "kr": {"uniform": [2000, 3000]}},
}


@pytest.fixture(scope="module")
def stone(tmp_path_factory):
    folder = tmp_path_factory.mktemp("stone")
    subprocess.run([EXAMPLE_STONE, "stone.obj"], cwd=folder, check=True, capture_output=True)
    return folder / "stone.obj"


@pytest.fixture(scope="module")
def weathered(stone):
    return talvek.ensemble(stone, PLAN)


def test_every_vertex_has_a_share_of_its_mineral(weathered):
    assert weathered.shares.shape == (len(weathered.vertices),)
    assert set(weathered.shares) <= set(talvek.ensembles.MINERAL_SHARES)
    assert len(set(weathered.shares)) > 5


def test_an_ensemble_is_what_full_runs_make(stone, weathered, tmp_path):
    samples = sample_table(make_plan(PLAN, tmp_path))
    for i in (0, 77):
        epochs = [talvek.Epoch(3650, so2=float(samples["so2"][i]))] * 5
        material = {"kr": float(samples["kr"][i])}
        result = talvek.run(stone, tmp_path / str(i), mode=3, model=3, epochs=epochs, material=material)
        assert np.sum(np.cumsum(result.delta)[-1:]) == weathered.distances[i]
        # The first epoch moves along the first normals; later ones along normals that have turned a little.
        first = result.displacement(1).signed
        assert first == pytest.approx(weathered.shares * result.delta[0], abs=1e-4)


def test_mean_spread_and_quantiles_are_those_of_all_samples(weathered):
    every = np.multiply.outer(weathered.distances, weathered.shares[:300])
    assert weathered.mean[:300] == pytest.approx(every.mean(axis=0))
    assert weathered.spread[:300] == pytest.approx(every.std(axis=0, ddof=1))
    assert weathered.quantile([0.05, 0.5])[:, :300] == pytest.approx(np.quantile(every, [0.05, 0.5], axis=0))


def test_an_ensemble_as_a_mesh_with_values(weathered, tmp_path):
    weathered.write_ply(tmp_path / "stone.ply", quantiles=[0.1, 0.975])
    content = (tmp_path / "stone.ply").read_bytes()
    header, _, data = content.partition(b"end_header\n")
    assert b"property float q10\nproperty float q97.5\n" in header
    rows = np.frombuffer(data, dtype="<f4", count=7 * len(weathered.vertices)).reshape(-1, 7)
    assert np.array_equal(rows[:, :3], weathered.vertices)
    assert rows[:, 3] == pytest.approx(weathered.mean.astype(np.float32))


def test_a_map_of_shares(weathered):
    matplotlib = pytest.importorskip("matplotlib", reason="python3-matplotlib is not installed")
    matplotlib.use("Agg")
    axes = plot.share_map(weathered)
    assert axes.collections[0].get_array().shape == weathered.shares.shape


def test_a_homogeneous_stone_moves_as_one(tmp_path):
    plan = {"sweep": {"mode": 1, "model": 2, "samples": 10}, "vary": {"no2": {"uniform": [1e-13, 1e-12]}}}
    result = talvek.ensemble(write_grid(tmp_path / "grid.obj"), plan)
    assert set(result.shares) == {1.0}
    assert len(set(result.distances)) == 10


def test_a_table_of_epochs_in_units_of_its_own(tmp_path):
    (tmp_path / "climate.csv").write_text("days,so2_ug_m3,ph\n365,26,4.5\n730,5,5\n")
    content = {"sweep": {"epoch_table": str(tmp_path / "climate.csv"), "samples": 3}}
    content["vary"] = {"kr": {"uniform": [2452, 2452]}}
    mesh = write_grid(tmp_path / "grid.obj")
    [total] = set(talvek.ensemble(mesh, content).distances)
    result = talvek.run(mesh, tmp_path / "run", epochs=tmp_path / "climate.csv")
    assert total == np.cumsum(result.delta)[-1]


@pytest.mark.parametrize("mode", [0, 2])
def test_modes_without_shares_are_refused(tmp_path, mode):
    with pytest.raises(talvek.Refused, match="share of its own"):
        talvek.ensemble(tmp_path / "any.obj", {"sweep": {"mode": mode, "model": 0 if mode == 0 else 3}})


def test_random_offsets_are_refused_with_the_reason(tmp_path):
    with pytest.raises(talvek.ParameterError, match="each process draws the same numbers"):
        talvek.ensemble(tmp_path / "any.obj", {"sweep": {"mode": 0, "model": 1}})
