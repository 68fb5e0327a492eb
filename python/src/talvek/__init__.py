"""Weathers stone meshes: single runs, ensembles and sweeps over the program ``talvek``."""

from talvek.errors import Cancelled, MeshError, ParameterError, Refused, RunError, TalvekError

__all__ = ["Cancelled", "MeshError", "ParameterError", "Refused", "RunError", "TalvekError"]
