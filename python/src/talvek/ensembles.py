"""How sure is it: the spread of a weathered surface over many samples of what is not known.

In modes 1 and 3 every vertex recedes by the run's distance times a share of its own, which its mineral fixes. So the
mesh is weathered once, to learn the shares, and the samples are arithmetic. Where that does not hold,
`talvek.statistics` gathers full runs, in whatever order they come.
"""

from __future__ import annotations

import dataclasses
import os
import tempfile
from collections.abc import Mapping, Sequence
from pathlib import Path
from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from talvek import rates
from talvek.epochs import COLUMNS, Epoch, read_table, to_model
from talvek.errors import MeshError, ParameterError, Refused
from talvek.frames import read_normals, read_vertices
from talvek.ply import write_ply
from talvek.runs import Mesh, run
from talvek.sweep.plan import Plan, make_plan, parse_plan, sample_table

Doubles = NDArray[np.float64]

# The shares of the weathering of a homogeneous stone that minerals suffer.
MINERAL_SHARES = np.array([0.0, 0.76, 0.77, 0.78, 0.8, 0.84, 0.89, 0.9, 0.91, 0.94, 0.96, 1.0])

# Neighbours among the shares are 0.01 apart.
_SHARE_TOLERANCE = 0.004

# By how much of the mesh's extent it is moved to learn the shares: far beyond the spacing of its coordinates.
_TRIAL_MOVEMENT = 0.01

# So many distances are computed at once.
_BLOCK = 1 << 16

_MATERIAL = tuple(field.name for field in dataclasses.fields(rates.Material))
_ENVIRONMENT = ("so2", "no2", "rv", "rph")


def distances(model: int, days: ArrayLike, values: Mapping[str, ArrayLike]) -> Doubles:
    """The distance of a whole run, for many samples.

    Parameters
    ----------
    model : int
        1 SO2 crust, 2 SO2+NO2 crust, 3 acid rain.
    days : array_like, shape (E,)
        The lengths of the epochs.
    values : mapping of str to array_like
        ``so2``, ``no2``, ``rv``, ``rph`` and the material's ``de`` to ``db``, in the model's units: a number, an array
        of shape (E,) for values of the epochs, (S, 1) for values of the samples or (S, E) for both.

    Returns
    -------
    array of float64, shape (S,), in mm
        The sum over the epochs, in their order, of the distances that the library computes.
    """
    arrays = {name: np.asarray(value, dtype=np.float64) for name, value in values.items()}
    unknown = sorted(set(arrays) - set(_MATERIAL) - set(_ENVIRONMENT))
    if unknown:
        raise ParameterError(f"not a value of a model: {', '.join(unknown)}")
    lengths = np.atleast_1d(np.asarray(days, dtype=np.float64))
    samples = max([array.shape[0] for array in arrays.values() if array.ndim == 2], default=1)
    result = np.empty(samples)
    step = max(1, _BLOCK // len(lengths))
    for start in range(0, samples, step):
        part = slice(start, start + step)
        chosen = {name: array[part] if array.ndim == 2 else array for name, array in arrays.items()}
        stone = rates.Material(**{name: chosen.pop(name) for name in _MATERIAL if name in chosen})
        deltas = rates.delta(model, lengths, material=stone, **chosen)
        # One after the other, as a run adds them.
        result[part] = np.add.accumulate(np.atleast_2d(deltas), axis=1)[:, -1]
    return result


@dataclasses.dataclass(frozen=True)
class Ensemble:
    """What many samples make of every vertex. All displacements are along the first normal, outwards positive.

    Attributes
    ----------
    distances : array of float64, shape (S,), in mm
        By how much a homogeneous stone moves, in every sample.
    shares : array of float64, shape (V,)
        The share of that which every vertex moves.
    vertices : array of float32, shape (V, 3), in mm
        The surface before.
    faces : array of int32, shape (F, 3)
        The vertices at the corners of every face, counted from 0.
    """

    distances: Doubles
    shares: Doubles
    vertices: NDArray[np.float32]
    faces: NDArray[np.int32]

    @property
    def mean(self) -> Doubles:
        """The mean displacement of every vertex, shape (V,), in mm."""
        return self.shares * float(np.mean(self.distances))

    @property
    def spread(self) -> Doubles:
        """The standard deviation of every vertex's displacement, shape (V,), in mm."""
        return self.shares * float(np.std(self.distances, ddof=1 if len(self.distances) > 1 else 0))

    def quantile(self, q: float | Sequence[float]) -> Doubles:
        """Quantiles of every vertex's displacement.

        Parameters
        ----------
        q : float or sequence of float
            Between 0 and 1.

        Returns
        -------
        array of float64, shape (V,) or (len(q), V), in mm
            No share is negative, so that they keep the order of the distances.
        """
        result: Doubles = np.multiply.outer(np.quantile(self.distances, q), self.shares)
        return result

    def write_ply(self, path: str | os.PathLike[str], quantiles: Sequence[float] = (0.05, 0.5, 0.95)) -> None:
        """Write the surface with mean, spread and quantiles of every vertex as a binary PLY file."""
        fields = {"mean": self.mean, "spread": self.spread}
        fields.update({f"q{100 * q:g}": values for q, values in zip(quantiles, self.quantile(quantiles), strict=True)})
        write_ply(path, self.vertices, self.faces, fields)


def _learn_shares(first: Path, last: Path, distance: float) -> Doubles:
    """The share of a movement that every vertex has made along its normal."""
    normals = read_normals(first).astype(np.float64)
    moved = read_vertices(last).astype(np.float64) - read_vertices(first)
    measured = np.einsum("ij,ij->i", moved, normals) / distance
    nearest = np.abs(measured[:, np.newaxis] - MINERAL_SHARES).argmin(axis=1)
    shares: Doubles = MINERAL_SHARES[nearest]
    odd = np.flatnonzero(~(np.abs(measured - shares) < _SHARE_TOLERANCE))
    if odd.size:
        raise MeshError(f"vertex {odd[0]} moves by {measured[odd[0]]:.3g} of the distance, which no mineral's share is")
    return shares


def _trial_days(extent: float) -> int:
    """So many days of default weathering move a surface far enough, and not much further."""
    per_day = abs(float(rates.delta(rates.ACID_RAIN, 1)))
    return max(1, min(1_000_000, round(_TRIAL_MOVEMENT * extent / per_day)))


def learn_shares(
    mesh: Mesh, *, mode: int, unit: str | None = None
) -> tuple[Doubles, NDArray[np.float32], NDArray[np.int32]]:
    """Weather a mesh once, and see which share of the distance every vertex moves.

    Returns
    -------
    shares : array of float64, shape (V,)
    vertices : array of float32, shape (V, 3), in mm
    faces : array of int32, shape (F, 3)
    """
    with tempfile.TemporaryDirectory(prefix="talvek-ensemble-") as folder:
        settings: dict[str, Any] = {"mode": mode, "model": rates.ACID_RAIN, "unit": unit, "frames": "last"}
        result = run(mesh, Path(folder) / "first", epochs=[Epoch(1)], **settings)
        vertices = result.vertices(0)
        days = _trial_days(float(np.ptp(vertices, axis=0).max()))
        result = run(mesh, Path(folder) / "trial", epochs=[Epoch(days)], **settings)
        return _learn_shares(result.path(0), result.path(-1), float(result.delta[0])), vertices, result.faces


def ensemble(mesh: Mesh, plan: str | os.PathLike[str] | Mapping[str, Any]) -> Ensemble:
    """How far every vertex moves, over all samples of a plan.

    Parameters
    ----------
    mesh : path, or pair of arrays
        As `talvek.run` takes it.
    plan : path or mapping
        A plan as sweeps have it, a file in TOML or its content; its own meshes are not looked at.

    Returns
    -------
    Ensemble

    Raises
    ------
    Refused
        Where a vertex does not simply move by a share of its own: in mode 0, whose offsets are not weathering, and in
        mode 2, which makes a surface of its own.
    """
    content = _read_plan(plan)
    if content.mode not in (1, 3):
        raise Refused(
            f"in mode {content.mode} a vertex does not recede by a share of its own; run a sweep, and gather its runs "
            "with talvek.statistics"
        )
    table = read_table(content.epoch_table) if content.epoch_table else None
    days = table.days if table else np.full(content.epochs, float(content.days))
    samples = {name: values[:, np.newaxis] for name, values in sample_table(content).items()}
    values = to_model({name: column for name, column in samples.items() if name in COLUMNS}, days)
    values.update({name: column for name, column in samples.items() if name not in COLUMNS})
    known = to_model(table.columns, days) if table else {}
    spread = distances(content.model, days, {**known, **values})
    shares, vertices, faces = learn_shares(mesh, mode=content.mode, unit=content.unit)
    return Ensemble(spread, shares, vertices, faces)


def _read_plan(plan: str | os.PathLike[str] | Mapping[str, Any]) -> Plan:
    if isinstance(plan, Mapping):
        return make_plan(plan, Path.cwd())
    path = Path(plan).resolve()
    return parse_plan(path.read_text(encoding="utf-8"), path.parent)
