"""What the Python package takes: processor time, memory and files, each figure beside its limit.

    python3 python/bench/measure.py [frames] [ensemble] [overhead] [collect] [slurm]

Needs the program on the PATH or in TALVEK_PROGRAM.
"""

import os
import resource
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import numpy as np

import talvek
from talvek import frames, program
from talvek.sweep import Sweep


def processor_time():
    """Of this process and of those that it has waited for, in seconds."""
    kinds = (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN)
    usages = [resource.getrusage(kind) for kind in kinds]
    return sum(usage.ru_utime + usage.ru_stime for usage in usages)


def timed(function, *arguments):
    """What a call returns, and the processor time that it took."""
    begun = processor_time()
    result = function(*arguments)
    return result, processor_time() - begun


def write_grid(path, size):
    """A bumpy square of size x size vertices."""
    column, row = np.meshgrid(np.arange(size), np.arange(size))
    height = 3 * np.sin(column / 30) * np.cos(row / 40)
    corner = (row[:-1, :-1] * size + column[:-1, :-1]).ravel() + 1
    with open(path, "w", encoding="ascii") as file:
        columns = zip(column.ravel().tolist(), row.ravel().tolist(), height.ravel().tolist(), strict=True)
        file.writelines("v %d %d %.6f\n" % vertex for vertex in columns)
        file.writelines(f"f {a} {a + 1} {a + size + 1}\nf {a} {a + size + 1} {a + size}\n" for a in corner.tolist())
    return path


def measure_frames(folder):
    """Reading a frame of a million vertices."""
    result = talvek.run(write_grid(folder / "grid.obj", 1000), folder / "run", frames="last")
    path = result.path(-1)
    for read in (frames.read_vertices, frames.read_normals, frames.read_faces):
        array, seconds = timed(read, path)
        print(f"{read.__name__}: {array.shape} in {seconds:.2f} s of processor time (limit for the vertices: 0.4 s)")


def measure_ensemble(folder):
    """A million samples of fifty epochs, on a million vertices."""
    random = np.random.default_rng(1)
    values = {
        "so2": 4e-13 * np.exp(0.3 * random.standard_normal((1_000_000, 1))),
        "kr": random.uniform(2000, 3000, (1_000_000, 1)),
    }
    distances, seconds = timed(talvek.ensembles.distances, 3, np.full(50, 365), values)
    print(f"1,000,000 samples of 50 epochs: {seconds:.1f} s of processor time")
    plan = {"sweep": {"mode": 1, "model": 3, "epochs": 50, "samples": 1_000_000}}
    plan["vary"] = {"so2": {"lognormal": [4e-13, 0.3]}, "kr": {"uniform": [2000, 3000]}}

    def whole():
        ensemble = talvek.ensemble(folder / "grid.obj", plan)
        ensemble.write_ply(folder / "ensemble.ply")
        return ensemble

    write_grid(folder / "grid.obj", 1000)
    begun = time.monotonic()
    ensemble, seconds = timed(whole)
    peak = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1024
    size = f"{len(ensemble.distances):,} samples x {len(ensemble.vertices):,} vertices"
    print(f"{size}: {time.monotonic() - begun:.1f} s, {seconds:.1f} s of processor time (limit: 60 s), ", end="")
    print(f"at most {peak:.0f} MiB (limit: 1024)")


def plan_of(folder, samples, size=30):
    """A plan with many samples of a small mesh."""
    write_grid(folder / "small.obj", size)
    (folder / "plan.toml").write_text(
        f'[sweep]\nmesh = ["small.obj"]\nsamples = {samples}\n[vary.so2]\nlognormal = [4e-13, 0.3]\n'
    )
    return folder / "plan.toml"


def measure_overhead(folder, runs=200):
    """What a run of a sweep takes beyond ``talvek run``."""
    sweep = Sweep.plan(plan_of(folder, runs), folder / "sweep")
    arguments = [program.find_program(), "run", str(folder / "small.obj"), "--frames", "none", "--quiet", "--so2"]
    values = [repr(run.values[0]) for run in sweep.missing()]

    def alone():
        for number, value in enumerate(values):
            subprocess.run([*arguments, value, "--out", str(folder / f"alone{number}")], check=True, close_fds=False)

    _, bare = timed(alone)
    _, swept = timed(sweep.run)
    print(f"{runs} runs: {1000 * bare / runs:.1f} ms each alone, {1000 * swept / runs:.1f} ms in a sweep: ", end="")
    print(f"{1000 * (swept - bare) / runs:.1f} ms more (limit: 5 ms)")
    files = list((folder / "sweep" / "results").iterdir())
    print(f"files with nothing kept: {len(files)} for {os.cpu_count()} workers")


def measure_collect(folder, runs=1_000_000):
    """Collecting a million results."""
    sweep = Sweep.plan(plan_of(folder, runs), folder / "sweep")
    random = np.random.default_rng(1)
    numbers = random.permutation(runs) + 1
    for part in range(100):
        rows = random.standard_normal((runs // 100, 12)).tolist()
        chosen = numbers[part::100].tolist()
        with open(folder / "sweep" / "results" / f"part{part}.tsv", "w", encoding="utf-8") as file:
            for number, row in zip(chosen, rows, strict=True):
                file.write(f"{number}\twhole,365.0,{','.join(map(repr, row))},,{'0' * 64},\t0.012\thost\n")
    begun = time.monotonic()
    path, seconds = timed(sweep.collect)
    size = path.stat().st_size / 1e6
    print(f"collect of {runs:,} results: {time.monotonic() - begun:.1f} s, {seconds:.1f} s of processor time ", end="")
    print(f"(limit: 10 s); {size:.0f} MB")


def measure_slurm(folder, samples=20_000):
    """What chunks of five minutes take beyond their runs, on a cluster that is started for it."""
    sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests"))
    from slurm_cluster import Cluster

    sweep = Sweep.plan(plan_of(folder, samples, size=100), folder / "sweep")
    (folder / "cluster").mkdir()
    with Cluster(folder / "cluster") as cluster:
        os.environ.update({name: cluster.environment[name] for name in ("PATH", "SLURM_CONF")})
        # The first task alone; the others would only share the processor with it.
        said = sweep.submit(["--array=0"])
        begun = time.monotonic()
        cluster.wait_for(lambda: not cluster.ask("squeue", "--noheader").strip(), "the end of the chunk", 1200)
        took = time.monotonic() - begun
    seconds = sum(sweep.store.seconds()[1:])
    print(said.splitlines()[0])
    print(f"a chunk on Slurm: {took:.1f} s for runs of {seconds:.1f} s: ", end="")
    print(f"{100 * (took - seconds) / seconds:.1f} % more (limit: 5 %)")


MEASURES = {
    "frames": measure_frames,
    "ensemble": measure_ensemble,
    "overhead": measure_overhead,
    "collect": measure_collect,
    "slurm": measure_slurm,
}


def main():
    """Measure what is named, or everything."""
    for name in sys.argv[1:] or MEASURES:
        with tempfile.TemporaryDirectory(prefix="talvek-measure-") as folder:
            MEASURES[name](Path(folder))


if __name__ == "__main__":
    main()
