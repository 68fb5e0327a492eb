"""What a run has left in its folder."""

from __future__ import annotations

import json
import os
from pathlib import Path
from typing import Any, NamedTuple

import numpy as np
from numpy.typing import NDArray

from talvek.errors import MeshError
from talvek.frames import read_faces, read_normals, read_vertices

Floats = NDArray[np.float32]
Doubles = NDArray[np.float64]

_RECORD = "run.json"

# A line for the last day of every epoch.
DATES = "dates.txt"


class Displacement(NamedTuple):
    """How far vertices have moved, each an array of float64 of shape (V,), in mm."""

    signed: Doubles
    """Along the vertex's first normal: positive outwards."""
    distance: Doubles
    """The distance from where the vertex was."""


class Result:
    """A run that is over, in a folder with its record ``run.json``.

    Nothing is read before it is asked for, and nothing is kept but the record: a result is pickled as the path of its
    folder. Surfaces are counted as epochs are, from 1; 0 is the first surface, -1 the last one.
    """

    def __init__(self, folder: str | os.PathLike[str]) -> None:
        self.folder = Path(folder).resolve()
        try:
            self._record: dict[str, Any] = json.loads((self.folder / _RECORD).read_text(encoding="utf-8"))
        except FileNotFoundError as error:
            raise MeshError(f"{self.folder}: no run has been recorded there") from error
        if self._record.get("schema") != "talvek-run" or self._record.get("version") != 1:
            raise MeshError(f"{self.folder / _RECORD}: not the record of a run of this version")

    def __repr__(self) -> str:
        """The folder, and what is in it."""
        return f"<talvek.Result {self.folder}: mode {self.mode}, model {self.model}, {len(self)} epochs>"

    def __len__(self) -> int:
        """The number of epochs."""
        return len(self._record["epochs"])

    def __reduce__(self) -> tuple[type[Result], tuple[Path]]:
        """A result is its folder."""
        return Result, (self.folder,)

    @property
    def record(self) -> dict[str, Any]:
        """The whole record, as docs/json.md describes it."""
        return self._record

    @property
    def mode(self) -> int:
        """The operating mode."""
        return int(self._record["mode"])

    @property
    def model(self) -> int:
        """The weathering model."""
        return int(self._record["model"])

    @property
    def delta(self) -> Doubles:
        """The distance of every epoch, shape (E,), in mm; not a number where it differs from vertex to vertex."""
        return np.array([epoch.get("delta", np.nan) for epoch in self._record["epochs"]], dtype=np.float64)

    @property
    def days(self) -> Doubles:
        """The length of every epoch, shape (E,), in days."""
        return np.array([epoch["days"] for epoch in self._record["epochs"]], dtype=np.float64)

    @property
    def dates(self) -> NDArray[np.datetime64] | None:
        """The last day of every epoch, shape (E,), where the table of epochs had dates."""
        ends = [epoch.get("end") for epoch in self._record["epochs"]]
        if None in ends and (self.folder / DATES).exists():
            ends = (self.folder / DATES).read_text(encoding="ascii").split()
        return None if None in ends else np.array(ends, dtype="datetime64[D]")

    @property
    def area(self) -> float:
        """The area of the last surface, in mm2."""
        return float(self._record["figures"]["area"])

    @property
    def volume(self) -> float | None:
        """The volume that the last surface encloses, in mm3; none for a surface that is open."""
        volume = self._record["figures"].get("volume")
        return None if volume is None else float(volume)

    @property
    def warnings(self) -> tuple[str, ...]:
        """What the program warned of."""
        return tuple(self._record["warnings"])

    def _recorded(self, n: int) -> dict[str, Any] | None:
        last = len(self)
        if not -1 <= n <= last:
            raise MeshError(f"there is no surface {n}; the run has {last} epochs")
        if n == 0:
            return self._record.get("firstSurface") or self._record.get("inputFrame")
        frame = self._record["epochs"][n - 1].get("frame") if n > 0 else None
        if frame is None and n in (-1, last):
            return self._record.get("lastSurface")
        return None if frame is None else dict(frame)

    def path(self, n: int) -> Path:
        """The file of a surface."""
        recorded = self._recorded(n)
        if recorded is None or not (self.folder / recorded["path"]).exists():
            raise MeshError(f"the frame of epoch {n} was not kept")
        return self.folder / str(recorded["path"])

    def vertices(self, n: int) -> Floats:
        """The vertices of a surface: array of float32, shape (V, 3), in mm, C-contiguous."""
        return read_vertices(self.path(n))

    def normals(self, n: int) -> Floats:
        """The normals at the vertices of a surface: array of float32, shape (V, 3), C-contiguous."""
        return read_normals(self.path(n))

    @property
    def faces(self) -> NDArray[np.int32]:
        """The vertices at the corners of the faces, counted from 0: array of int32, shape (F, 3).

        Those of the last surface; in every mode but 2 all surfaces have the same.
        """
        return read_faces(self.path(-1))

    def displacement(self, n: int = -1) -> Displacement:
        """How far every vertex has moved since the first surface.

        Returns
        -------
        Displacement
            ``signed`` and ``distance``, arrays of float64 of shape (V,), in mm.
        """
        first, now = self.vertices(0), self.vertices(n)
        if first.shape != now.shape:
            raise MeshError("the frames have vertices of their own, on a grid; they cannot be compared one by one")
        moved = now.astype(np.float64) - first
        signed = np.einsum("ij,ij->i", moved, self.normals(0).astype(np.float64))
        return Displacement(signed, np.sqrt(np.einsum("ij,ij->i", moved, moved)))

    def to_table(self) -> dict[str, NDArray[Any]]:
        """The epochs as columns, each of shape (E,): ``pandas.DataFrame(result.to_table())`` makes a table of them."""
        columns: dict[str, NDArray[Any]] = {"epoch": np.arange(1, len(self) + 1), "days": self.days}
        names = ("so2", "no2", "rv", "rph") if self.mode != 0 else ("offset", "mean", "sigma", "smooth")
        for name in names:
            columns[name] = np.array([epoch[name] for epoch in self._record["epochs"]], dtype=np.float64)
        columns["delta_mm"] = self.delta
        columns["total_mm"] = np.cumsum(self.delta)
        if self.dates is not None:
            columns["end"] = self.dates
        return columns

    def to_meshio(self, n: int = -1) -> Any:
        """A surface as a ``meshio.Mesh``, with normals and, where vertices can be compared, displacements."""
        import meshio

        return meshio.Mesh(self.vertices(n), [("triangle", read_faces(self.path(n)))], point_data=self._fields(n))

    def to_vtk(self, path: str | os.PathLike[str], n: int = -1) -> None:
        """Write a surface as a VTK XML file of polygons (.vtp), with normals and displacements."""
        from talvek.vtk import write_vtp

        write_vtp(path, self.vertices(n), read_faces(self.path(n)), self._fields(n))

    def _fields(self, n: int) -> dict[str, NDArray[Any]]:
        fields: dict[str, NDArray[Any]] = {"normals": self.normals(n)}
        if self.mode != 2:
            fields["displacement_mm"] = self.displacement(n).signed
        return fields


def open_result(folder: str | os.PathLike[str]) -> Result:
    """Open the folder of a run that is over."""
    return Result(folder)
