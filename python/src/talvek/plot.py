"""Pictures of results, with matplotlib where it is installed.

Every function draws into the axes that it is given, or into new ones, and returns them.
"""

from __future__ import annotations

from typing import Any

import numpy as np
from numpy.typing import NDArray

from talvek.ensembles import Ensemble
from talvek.errors import TalvekError
from talvek.result import Result


def _axes(axes: Any) -> Any:
    if axes is not None:
        return axes
    try:
        from matplotlib import pyplot
    except ImportError as error:
        raise TalvekError("pictures need matplotlib, Debian's python3-matplotlib") from error
    return pyplot.subplots()[1]


def recession(result: Result, axes: Any = None) -> Any:
    """The distance that a homogeneous stone has moved, in mm, over dates or years."""
    axes = _axes(axes)
    total = np.concatenate([[0.0], np.cumsum(result.delta)])
    if result.dates is not None:
        first = result.dates[0] - result.days[0].astype("timedelta64[D]")
        axes.plot(np.concatenate([[first], result.dates]), total, marker=".")
    else:
        axes.plot(np.concatenate([[0.0], np.cumsum(result.days)]) / 365.0, total, marker=".")
        axes.set_xlabel("years")
    axes.set_ylabel("distance, mm")
    return axes


def histogram(result: Result, n: int = -1, axes: Any = None, bins: int = 50) -> Any:
    """How many vertices have moved how far along their first normals by epoch `n`, in mm."""
    axes = _axes(axes)
    axes.hist(result.displacement(n).signed, bins=bins)
    axes.set_xlabel("displacement, mm")
    axes.set_ylabel("vertices")
    return axes


def share_map(ensemble: Ensemble, axes: Any = None, values: NDArray[np.float64] | None = None) -> Any:
    """The share of the weathering that every vertex suffers by its mineral, seen along the surface's shortest side.

    Parameters
    ----------
    ensemble : Ensemble
        Whose vertices are drawn.
    axes : matplotlib axes, optional
    values : array of float64, shape (V,), optional
        What is drawn instead of the shares, such as ``ensemble.spread``.
    """
    axes = _axes(axes)
    extent = np.ptp(ensemble.vertices, axis=0)
    along = np.argsort(extent)
    x, y = sorted((int(along[1]), int(along[2])))
    drawn = axes.tripcolor(
        ensemble.vertices[:, x],
        ensemble.vertices[:, y],
        ensemble.faces,
        ensemble.shares if values is None else values,
        shading="gouraud",
    )
    axes.set_aspect("equal")
    axes.set_xlabel(f"{'xyz'[x]}, mm")
    axes.set_ylabel(f"{'xyz'[y]}, mm")
    axes.figure.colorbar(drawn, ax=axes)
    return axes
