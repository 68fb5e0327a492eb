"""Statistics of full runs, gathered as they come.

Displacements are counted in whole millionths of a millimetre, the last digit of a frame, and added as integers. So the
result is the same whatever the order in which runs are added and parts are merged.
"""

from __future__ import annotations

import tempfile
from pathlib import Path

import numpy as np
from numpy.typing import NDArray

from talvek.epochs import Epoch
from talvek.errors import ParameterError
from talvek.result import Result
from talvek.runs import run
from talvek.sweep import Sweep

_UNITS_PER_MM = 1_000_000
_LOW_BITS = 24


class Statistics:
    """Sums and histograms of the displacements of V vertices.

    Parameters
    ----------
    vertices : int
        V.
    low, high : float
        The planned range, in mm; what lies beyond counts in the outermost bin.
    bins : int
        How many bins the histogram of every vertex has.
    """

    def __init__(self, vertices: int, low: float, high: float, bins: int = 64) -> None:
        if not low < high or bins < 1:
            raise ParameterError("a histogram needs a range and a bin")
        self.low, self.high, self.bins = low, high, bins
        self.runs = 0
        self._sum = np.zeros(vertices, dtype=np.int64)
        # Squares in two parts, which do not overflow.
        self._squares_low = np.zeros(vertices, dtype=np.int64)
        self._squares_high = np.zeros(vertices, dtype=np.int64)
        self._histogram = np.zeros((vertices, bins), dtype=np.uint32)

    def add(self, displacement: NDArray[np.float64]) -> None:
        """Add a run.

        Parameters
        ----------
        displacement : array of float64, shape (V,), in mm
            Finite, and below 2,000 mm.
        """
        if displacement.shape != self._sum.shape:
            raise ParameterError(f"{displacement.shape[0]} vertices where there were {len(self._sum)}")
        if not np.all(np.abs(displacement) < 2000.0):
            raise ParameterError("a displacement that is not finite, or of 2 m or more")
        units = np.rint(displacement * _UNITS_PER_MM).astype(np.int64)
        squares = units * units
        self.runs += 1
        self._sum += units
        self._squares_low += squares & ((1 << _LOW_BITS) - 1)
        self._squares_high += squares >> _LOW_BITS
        share = (units / _UNITS_PER_MM - self.low) / (self.high - self.low)
        bins = np.clip(np.floor(share * self.bins), 0, self.bins - 1).astype(np.int64)
        self._histogram[np.arange(len(bins)), bins] += 1

    def merge(self, other: Statistics) -> None:
        """Add the runs of another one of the same range."""
        if (self.low, self.high, self._histogram.shape) != (other.low, other.high, other._histogram.shape):
            raise ParameterError("statistics of different meshes or ranges do not merge")
        self.runs += other.runs
        self._sum += other._sum
        self._squares_low += other._squares_low
        self._squares_high += other._squares_high
        self._histogram += other._histogram

    @property
    def mean(self) -> NDArray[np.float64]:
        """The mean displacement of every vertex, shape (V,), in mm."""
        mean: NDArray[np.float64] = self._sum / (self.runs * _UNITS_PER_MM)
        return mean

    @property
    def spread(self) -> NDArray[np.float64]:
        """The standard deviation of every vertex's displacement, shape (V,), in mm."""
        # Long doubles hold the squares that are subtracted from each other exactly enough.
        squares = self._squares_high.astype(np.longdouble) * (1 << _LOW_BITS) + self._squares_low
        total = self._sum.astype(np.longdouble)
        variance = np.maximum(squares - total * total / self.runs, 0) / max(self.runs - 1, 1)
        return np.asarray(np.sqrt(variance) / _UNITS_PER_MM, dtype=np.float64)

    def quantile(self, q: float) -> NDArray[np.float64]:
        """A quantile of every vertex's displacement, shape (V,), in mm, as exact as a bin is wide."""
        counts = np.cumsum(self._histogram, axis=1)
        place = np.argmax(counts >= q * self.runs, axis=1)
        before = np.where(place > 0, np.take_along_axis(counts, np.maximum(place - 1, 0)[:, np.newaxis], 1)[:, 0], 0)
        inside = np.take_along_axis(self._histogram, place[:, np.newaxis], 1)[:, 0]
        share = np.where(inside > 0, (q * self.runs - before) / np.maximum(inside, 1), 0.0)
        width = (self.high - self.low) / self.bins
        result: NDArray[np.float64] = self.low + width * (place + np.clip(share, 0.0, 1.0))
        return result


def _first_surface(
    mesh: Path, mode: int, unit: str | None, some: Result
) -> tuple[NDArray[np.float64], NDArray[np.float64]]:
    """Vertices and normals, each of shape (V, 3), from which displacements count."""
    if mode != 2:
        return some.vertices(0).astype(np.float64), some.normals(0).astype(np.float64)
    with tempfile.TemporaryDirectory(prefix="talvek-grid-") as folder:
        nothing = [Epoch(1, so2=0.0, no2=0.0, rv=0.0)]
        grid = run(mesh, folder, mode=2, model=3, epochs=nothing, unit=unit, frames="last")
        return grid.vertices(-1).astype(np.float64), grid.normals(-1).astype(np.float64)


def gather(sweep: Sweep, low: float, high: float, *, bins: int = 64, mesh: int = 0) -> Statistics:
    """Statistics of all finished runs of a sweep that kept their last surfaces.

    Parameters
    ----------
    sweep : Sweep
        With ``keep = "last"`` or ``"all"``.
    low, high : float
        The range of the displacements along the first normals, in mm.
    bins : int
        How finely the range is divided, for quantiles.
    mesh : int
        Which of the plan's meshes, from 0 on.

    Returns
    -------
    Statistics
    """
    plan = sweep.store.plan
    path = plan.meshes[mesh]
    runs = [one.number for one in sweep.store.runs() if one.mesh == str(path)]
    folders = [sweep.store.folder / "runs" / str(number) for number in runs]
    kept = [Result(folder) for folder in folders if (folder / "run.json").exists()]
    if not kept:
        raise ParameterError('no run of the sweep has kept its surface; keep = "last" does')
    first, normals = _first_surface(path, plan.mode, plan.unit, kept[0])
    statistics = Statistics(len(first), low, high, bins)
    for result in kept:
        last = result.vertices(-1)
        if last.shape != first.shape:
            raise ParameterError(f"{result.folder}: {len(last)} vertices where there were {len(first)}")
        statistics.add(np.einsum("ij,ij->i", last - first, normals))
    return statistics
