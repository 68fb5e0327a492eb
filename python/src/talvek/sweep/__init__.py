"""Many runs of one plan: on this machine, with any executor, or on a cluster."""

from talvek.sweep.sweep import Sweep

__all__ = ["Sweep"]
