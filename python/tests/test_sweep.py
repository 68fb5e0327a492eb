"""Planning, running and collecting a sweep."""

import csv
import io
import shutil

import numpy as np
import pytest
from sweeps import RUNS, finished, undisturbed, write_plan

from talvek import rates
from talvek.errors import ParameterError, RunError
from talvek.sweep import Sweep
from talvek.sweep.__main__ import main
from talvek.sweep.plan import parse_plan, plan_runs
from talvek.sweep.store import ResultFile
from talvek.sweep.work import RESULT_COLUMNS


def table_of(content):
    return list(csv.DictReader(io.StringIO(content.decode())))


def test_every_run_stands_in_the_results_in_order_and_with_full_precision(tmp_path):
    rows = table_of(undisturbed(write_plan(tmp_path), tmp_path / "sweep"))
    assert [int(row["run"]) for row in rows] == list(range(1, RUNS + 1))
    assert {row["outcome"] for row in rows} == {"whole"}
    assert {row["rv"] for row in rows} == {"0.5", "1.0"}
    for row in rows:
        assert repr(float(row["delta_mm"])) == row["delta_mm"]
        assert float(row["mean_mm"]) == pytest.approx(float(row["delta_mm"]), rel=1e-3)
    deltas = [float(row["delta_mm"]) for row in rows]
    assert len(set(deltas)) == RUNS
    assert np.mean(deltas[: RUNS // 2]) > np.mean(deltas[RUNS // 2 :])


def test_a_latin_hypercube_has_one_sample_in_every_stratum(tmp_path):
    plan = parse_plan(write_plan(tmp_path).read_text(), tmp_path)
    shares = sorted((run.values[1] - 2000) / 1000 for run in plan_runs(plan)[: RUNS // 2])
    assert [int(share * RUNS // 2) for share in shares] == list(range(RUNS // 2))


def test_a_plan_is_written_once(tmp_path):
    plan = write_plan(tmp_path)
    Sweep.plan(plan, tmp_path / "sweep")
    runs = (tmp_path / "sweep" / "runs.csv").read_bytes()
    assert len(Sweep.plan(plan, tmp_path / "sweep")) == RUNS
    write_plan(tmp_path, samples=3)
    with pytest.raises(ParameterError, match="another sweep has been planned there"):
        Sweep.plan(plan, tmp_path / "sweep")
    assert (tmp_path / "sweep" / "runs.csv").read_bytes() == runs


def test_inputs_that_change_after_planning_are_refused(tmp_path):
    sweep = Sweep.plan(write_plan(tmp_path, samples=1), tmp_path / "sweep")
    (tmp_path / "grid.obj").write_text("v 0 0 0\n")
    with pytest.raises(ParameterError, match=r"grid\.obj is not the file with which the sweep was planned"):
        sweep.run()


def test_a_finished_sweep_has_nothing_left_to_run(tmp_path):
    content = undisturbed(write_plan(tmp_path, samples=2), tmp_path / "sweep")
    sweep = Sweep(tmp_path / "sweep")
    sweep.run()
    assert finished(tmp_path / "sweep") == 4
    assert sweep.collect().read_bytes() == content


def test_running_a_run_twice_is_harmless_and_two_different_results_are_not(tmp_path):
    content = undisturbed(write_plan(tmp_path, samples=2), tmp_path / "sweep")
    sweep = Sweep(tmp_path / "sweep")
    results = sweep.store.results()
    again = ResultFile(tmp_path / "sweep", "again")
    again.append(3, results[3], 1.0)
    assert sweep.collect().read_bytes() == content
    again.append(3, results[2], 1.0)
    with pytest.raises(RunError, match="run 3: two different results"):
        sweep.collect()


def test_the_torn_line_of_a_killed_worker_is_run_again(tmp_path):
    content = undisturbed(write_plan(tmp_path, samples=2), tmp_path / "sweep")
    for path in (tmp_path / "sweep" / "results").glob("*.tsv"):
        path.write_bytes(path.read_bytes()[:-20])
    sweep = Sweep(tmp_path / "sweep")
    with pytest.raises(RunError, match="runs are missing"):
        sweep.collect()
    sweep.run()
    assert sweep.collect().read_bytes() == content


@pytest.mark.parametrize(("keep", "frames"), [("none", None), ("last", 0), ("all", 2)])
def test_what_is_kept_of_a_run(tmp_path, keep, frames):
    undisturbed(write_plan(tmp_path, samples=1, keep=keep), tmp_path / "sweep")
    kept = sorted((tmp_path / "sweep" / "runs").iterdir())
    assert len(kept) == (0 if keep == "none" else 2)
    for folder in kept:
        assert (folder / "run.json").exists()
        assert len(list(folder.glob("*.obj_w.obj"))) == 1
        assert keep != "all" or len(list(folder.glob("*.obj_w_*.obj"))) == frames
    assert list((tmp_path / "sweep" / "scratch").iterdir()) == []


def test_with_nothing_kept_a_worker_leaves_one_file(tmp_path):
    sweep = Sweep.plan(write_plan(tmp_path), tmp_path / "sweep")
    sweep.run(workers=2)
    assert len(list((tmp_path / "sweep" / "results").iterdir())) <= 2


def test_runs_that_cannot_work_are_results_too(tmp_path):
    plan = write_plan(tmp_path, samples=1)
    plan.write_text(plan.read_text().replace("values = [0.5, 1.0]", "values = [1.0, -5.0]"))
    good, bad = table_of(undisturbed(plan, tmp_path / "sweep"))
    assert (good["outcome"], bad["outcome"]) == ("whole", "refused")
    assert "-5" in bad["message"]
    assert list(bad) == ["run", "mesh", "so2", "kr", "rv", *RESULT_COLUMNS]


@pytest.mark.parametrize(
    ("change", "message"),
    [
        (("[vary.so2]", "[vary.so3]"), r"\[vary.so3\]: in mode 1 one of de, den"),
        (("uniform = [2000, 3000]", "uniform = [2000]"), "uniform takes two numbers"),
        (("uniform = [2000, 3000]", "normal = [2000, 3]"), "one of values"),
        (('keep = "none"', 'keep = "some"'), "one of none, last, all"),
        (("samples = 12", "sample = 12"), "unknown in a plan: sample"),
        (("[vary.rv]", "[vary.so2_ppb]"), "are both so2"),
        (("mode = 1\nmodel = 3", "mode = 0\nmodel = 1"), "mode 0 one of offset, mean"),
        (("mesh = [", "mesh = 3 #"), "mesh takes a list"),
        (('mesh = ["grid.obj"]\n', ""), "mesh = .* is missing"),
    ],
)
def test_plans_that_are_refused(tmp_path, change, message):
    plan = write_plan(tmp_path)
    assert change[0] in plan.read_text()
    plan.write_text(plan.read_text().replace(*change))
    with pytest.raises(ParameterError, match=message):
        Sweep.plan(plan, tmp_path / "sweep")
    assert not (tmp_path / "sweep").exists()


def test_random_offsets_are_refused_with_the_reason(tmp_path):
    text = '[sweep]\nmesh = ["a.obj"]\nmode = 0\nmodel = 1\n[vary.mean]\nvalues = [1.0]\n'
    with pytest.raises(ParameterError, match="each process draws the same numbers"):
        parse_plan(text, tmp_path)


def test_a_table_of_epochs_with_a_column_that_varies(tmp_path):
    plan = write_plan(tmp_path, samples=1)
    (tmp_path / "climate.csv").write_text(
        "start,end,so2_ppb,rph\n2001-01-01,2001-12-31,10,4\n2002-01-01,2003-12-31,5,5\n"
    )
    text = plan.read_text().replace("epochs = 2\ndays = 365", 'epoch_table = "climate.csv"')
    plan.write_text(text.replace("[vary.rv]\nvalues = [0.5, 1.0]", "[vary.rain_mm_year]\nvalues = [500, 1000]"))
    rows = table_of(undisturbed(plan, tmp_path / "sweep"))
    for row, rain in zip(rows, (0.5, 1.0), strict=True):
        material = rates.Material(kr=float(row["kr"]))
        deltas = rates.delta(3, [365, 730], so2=float(row["so2"]), rv=rain, rph=[4, 5], material=material)
        assert (float(row["days"]), float(row["delta_mm"])) == (1095.0, float(np.cumsum(deltas)[-1]))


def test_the_command_line(tmp_path, capsys):
    plan, folder = str(write_plan(tmp_path, samples=1)), str(tmp_path / "sweep")
    assert main(["plan", plan, "--out", folder]) == 0
    assert main(["collect", folder]) == 1
    assert "2 of 2 runs are missing" in capsys.readouterr().err
    assert main(["run", folder, "--workers", "1"]) == 0
    assert main(["status", folder]) == 0
    assert "finished  2\n" in capsys.readouterr().out
    assert main(["collect", folder]) == 0
    (tmp_path / "sweep" / "scratch" / "left").mkdir()
    assert main(["clean", folder]) == 0
    assert list((tmp_path / "sweep" / "scratch").iterdir()) == []
    shutil.rmtree(folder)
    assert main(["status", folder]) == 1
    assert "no sweep has been planned there" in capsys.readouterr().err
