"""What can go wrong, by kind."""

from __future__ import annotations


class TalvekError(Exception):
    """What this package raises. The message is the program's own where the program has one."""


class ParameterError(TalvekError):
    """A parameter, an option or a table cannot be what was meant."""


class MeshError(TalvekError):
    """The mesh, or a frame, cannot be read or worked with."""


class Refused(TalvekError):
    """The run was refused before it began because it could not have worked."""


class RunError(TalvekError):
    """The run began and did not end well: no room, a file that cannot be written, the program not found."""


class Cancelled(TalvekError):
    """The run was cancelled. The frames that are there are whole."""


class ClimateError(ParameterError):
    """A file of measurements is not in the form that its source gives it, or does not fit with the others."""
