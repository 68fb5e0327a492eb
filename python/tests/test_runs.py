"""Runs from Python, and what is read of their results."""

import pickle

import numpy as np
import pytest
from sweeps import write_grid

import talvek
from talvek import climate
from talvek.frames import read_vertices


@pytest.fixture(scope="module")
def mesh(tmp_path_factory):
    return write_grid(tmp_path_factory.mktemp("mesh") / "grid.obj")


@pytest.fixture(scope="module")
def result(mesh, tmp_path_factory):
    epochs = [talvek.Epoch(3650, so2=4e-13), talvek.Epoch(3650, so2=1e-13), talvek.Epoch(1825, so2=1e-13)]
    return talvek.run(mesh, tmp_path_factory.mktemp("run"), mode=1, model=3, epochs=epochs)


def test_what_a_result_says(result, mesh):
    assert len(result) == 3
    assert (result.mode, result.model) == (1, 3)
    assert result.days.tolist() == [3650, 3650, 1825]
    expected = talvek.rates.delta(3, [3650, 3650, 1825], so2=[4e-13, 1e-13, 1e-13])
    assert result.delta.tolist() == expected.tolist()
    assert result.dates is None
    assert result.volume is None
    assert result.area > 0
    assert result.record["source"]["path"].endswith("grid.obj")


def test_surfaces_are_arrays(result, mesh):
    for n in (0, 1, 3, -1):
        vertices, normals = result.vertices(n), result.normals(n)
        for array in (vertices, normals):
            assert (array.dtype, array.shape, array.flags.c_contiguous) == (np.float32, (1600, 3), True)
        assert np.allclose(np.linalg.norm(normals, axis=1), 1, atol=1e-5)
    assert result.faces.shape == (2 * 39 * 39, 3)
    assert np.array_equal(result.vertices(0), read_vertices(mesh))
    assert np.array_equal(result.vertices(-1), result.vertices(3))
    with pytest.raises(talvek.MeshError, match="no surface 4"):
        result.path(4)


def test_displacements_are_the_distance_of_the_epochs(result):
    moved = result.displacement(1)
    assert moved.signed == pytest.approx(np.full(1600, result.delta[0]), abs=2e-5)
    assert moved.distance == pytest.approx(-moved.signed, abs=2e-5)
    assert np.mean(result.displacement().signed) == pytest.approx(np.sum(result.delta), rel=0.02)


def test_results_are_reopened_and_pickled(result):
    for again in (talvek.open(result.folder), pickle.loads(pickle.dumps(result))):
        assert again.record == result.record
        assert np.array_equal(again.vertices(2), result.vertices(2))
    with pytest.raises(talvek.MeshError, match="no run has been recorded"):
        talvek.open(result.folder / "elsewhere")


def test_a_mesh_of_arrays(tmp_path):
    vertices = np.array([[0, 0, 0], [100, 0, 0], [0, 100, 0], [100, 100, 1.25]], dtype=np.float32)
    result = talvek.run((vertices, [[0, 1, 2], [1, 3, 2]]), tmp_path, epochs=[talvek.Epoch(365)])
    assert np.array_equal(result.vertices(0), vertices)
    assert result.faces.tolist() == [[0, 1, 2], [1, 3, 2]]
    with pytest.raises(talvek.ParameterError, match="outside 0 to 3"):
        talvek.run((vertices, [[0, 1, 4]]), tmp_path / "bad")


def test_tables_of_epochs(mesh, tmp_path):
    columns = {"start": ["2001-01-01", "2002-01-01"], "end": ["2001-12-31", "2002-12-31"], "so2_ppb": [10.0, 5.0]}
    first = talvek.run(mesh, tmp_path / "columns", epochs=columns)
    assert first.dates.astype(str).tolist() == ["2001-12-31", "2002-12-31"]
    assert len(first.to_table()["end"]) == 2
    times = np.array(["2001-01-01", "2002-01-01", "2003-01-01"], dtype="datetime64[s]")
    series = climate.Series("so2_ppb", times[:-1], times[1:], np.array([10.0, 5.0]), 0, "made")
    second = talvek.run(mesh, tmp_path / "climate", epochs=climate.epoch_table([series]))
    assert second.delta.tolist() == first.delta.tolist()
    (tmp_path / "own.csv").write_text("start;end;so2_ppb\n2001-01-01;2001-12-31;10,0\n2002-01-01;2002-12-31;5\n")
    third = talvek.run(mesh, tmp_path / "file", epochs=tmp_path / "own.csv")
    assert third.delta.tolist() == first.delta.tolist()


def test_values_with_units(mesh, tmp_path):
    result = talvek.run(mesh, tmp_path, epochs=[talvek.Epoch(365, so2="10ppb"), talvek.Epoch(365, so2="10ppb")])
    assert result.record["epochs"][0]["so2"] == pytest.approx(4.09e-13, rel=1e-3)


@pytest.mark.parametrize(
    ("settings", "kind"),
    [
        ({"mode": 1, "model": 2, "options": ["--no-such-option"]}, talvek.ParameterError),
        ({"mode": "mesh", "model": "smoothing"}, talvek.ParameterError),
        ({"epochs": [talvek.Epoch(0)]}, talvek.ParameterError),
        ({"epochs": [talvek.Epoch(so2=1e-13), talvek.Epoch()]}, talvek.ParameterError),
        ({"mode": 3}, talvek.Refused),
    ],
)
def test_failures_have_kinds_and_the_programs_words(mesh, tmp_path, settings, kind):
    with pytest.raises(kind) as caught:
        talvek.run(mesh, tmp_path, **settings)
    assert type(caught.value) is kind
    assert "talvek: " not in str(caught.value)
    assert len(str(caught.value)) > 10


def test_a_mesh_that_does_not_load(tmp_path):
    (tmp_path / "bad.sas").write_bytes(b"\0" * 10)
    with pytest.raises((talvek.MeshError, talvek.Refused)) as caught:
        talvek.run(tmp_path / "bad.sas", tmp_path / "out")
    assert "bad.sas" in str(caught.value)


def test_a_program_that_is_not_there(mesh, tmp_path, monkeypatch):
    monkeypatch.delenv("TALVEK_PROGRAM")
    monkeypatch.setenv("PATH", str(tmp_path))
    with pytest.raises(talvek.RunError, match="the program talvek is not there"):
        talvek.run(mesh, tmp_path / "out")


def test_runs_side_by_side(mesh, tmp_path):
    runs = [talvek.start(mesh, tmp_path / str(i), epochs=[talvek.Epoch(365 * (i + 1))] * 20) for i in range(4)]
    results = [running.wait(60) for running in runs]
    assert [result.days[0] for result in results] == [365, 730, 1095, 1460]
    assert all(running.poll() == 0 for running in runs)
    assert runs[0].epochs == (20, 20)


def test_progress_is_told_to_the_end(mesh, tmp_path):
    seen = []
    talvek.run(
        mesh, tmp_path, epochs=[talvek.Epoch()] * 30, progress=lambda done, planned: seen.append((done, planned))
    )
    assert seen[-1] == (30, 30)
    assert seen == sorted(set(seen))


def test_a_cancelled_run_leaves_whole_frames(mesh, tmp_path):
    running = talvek.start(mesh, tmp_path, epochs=[talvek.Epoch(1)] * 4000)
    with pytest.raises(TimeoutError):
        running.wait(0.5)
    running.cancel()
    with pytest.raises(talvek.Cancelled):
        running.wait(60)
    result = talvek.open(tmp_path)
    assert result.record["outcome"] == "cancelled"
    frames = list(tmp_path.glob("*.obj_w_*.obj"))
    assert 0 < len(frames) < 4000
    for frame in frames[:10]:
        assert read_vertices(frame).shape == (1600, 3)


def test_frames_that_are_not_kept(mesh, tmp_path):
    result = talvek.run(mesh, tmp_path, epochs=[talvek.Epoch()] * 3, frames="last")
    assert result.vertices(-1).shape == result.vertices(3).shape == (1600, 3)
    with pytest.raises(talvek.MeshError, match="epoch 1 was not kept"):
        result.vertices(1)


def test_exports(result, tmp_path):
    table = result.to_table()
    assert table["total_mm"][-1] == pytest.approx(np.sum(result.delta))
    result.to_vtk(tmp_path / "surface.vtp")
    content = (tmp_path / "surface.vtp").read_bytes()
    assert result.vertices(-1).tobytes() in content
    assert b'NumberOfPoints="1600"' in content
    meshio = pytest.importorskip("meshio", reason="python3-meshio is not installed")
    result.to_meshio().write(tmp_path / "surface.ply")
    assert len(meshio.read(tmp_path / "surface.ply").points) == 1600


def test_pictures(result, tmp_path, monkeypatch):
    matplotlib = pytest.importorskip("matplotlib", reason="python3-matplotlib is not installed")
    matplotlib.use("Agg")
    from talvek import plot

    axes = plot.recession(result)
    assert axes.lines[0].get_ydata()[-1] == pytest.approx(np.sum(result.delta))
    assert sum(patch.get_height() for patch in plot.histogram(result).patches) == 1600
    axes.figure.savefig(tmp_path / "recession.png")
