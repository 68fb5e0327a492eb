"""Weathers stone meshes: single runs, ensembles and sweeps over the program ``talvek``."""

from talvek import climate, rates
from talvek.ensembles import Ensemble, ensemble
from talvek.epochs import Epoch
from talvek.errors import Cancelled, MeshError, ParameterError, Refused, RunError, TalvekError
from talvek.rates import Material
from talvek.result import Displacement, Result
from talvek.result import open_result as open
from talvek.runs import Run, run, start
from talvek.statistics import Statistics

__all__ = [
    "Cancelled",
    "Displacement",
    "Ensemble",
    "Epoch",
    "Material",
    "MeshError",
    "ParameterError",
    "Refused",
    "Result",
    "Run",
    "climate",
    "rates",
    "RunError",
    "Statistics",
    "TalvekError",
    "ensemble",
    "open",
    "run",
    "start",
]
