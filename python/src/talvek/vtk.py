"""Meshes with values at their vertices, as VTK XML files."""

from __future__ import annotations

import os
from collections.abc import Mapping
from typing import Any

import numpy as np
from numpy.typing import NDArray

_TYPES = {"float32": "Float32", "float64": "Float64", "int32": "Int32"}


class _Appended:
    """Arrays as raw bytes behind the XML, each after its length."""

    def __init__(self) -> None:
        self.blocks: list[bytes] = []
        self.length = 0

    def add(self, name: str, values: NDArray[Any]) -> str:
        """Append an array, and return the element that stands for it."""
        little = np.ascontiguousarray(values, dtype=values.dtype.newbyteorder("<"))
        columns = 1 if values.ndim == 1 else values.shape[1]
        element = (
            f'<DataArray type="{_TYPES[values.dtype.name]}" Name="{name}" NumberOfComponents="{columns}" '
            f'format="appended" offset="{self.length}"/>\n'
        )
        block = np.uint64(little.nbytes).tobytes() + little.tobytes()
        self.blocks.append(block)
        self.length += len(block)
        return element


def write_vtp(
    path: str | os.PathLike[str],
    vertices: NDArray[np.float32],
    faces: NDArray[np.int32],
    fields: Mapping[str, NDArray[Any]],
) -> None:
    """Write a surface.

    Parameters
    ----------
    path : path-like
        The file, by habit with the extension .vtp.
    vertices : array of float32, shape (V, 3), in mm
    faces : array of int32, shape (F, 3)
    fields : mapping of str to array, shape (V,) or (V, 3)
        Values at the vertices.
    """
    data = _Appended()
    points = data.add("Points", vertices)
    values = "".join(data.add(name, field) for name, field in fields.items())
    corners = data.add("connectivity", faces.ravel())
    offsets = data.add("offsets", np.arange(3, 3 * len(faces) + 1, 3, dtype=np.int32))
    head = (
        '<?xml version="1.0"?>\n'
        '<VTKFile type="PolyData" version="1.0" byte_order="LittleEndian" header_type="UInt64">\n'
        f'<PolyData><Piece NumberOfPoints="{len(vertices)}" NumberOfPolys="{len(faces)}">\n'
        f"<PointData>\n{values}</PointData>\n<Points>\n{points}</Points>\n<Polys>\n{corners}{offsets}</Polys>\n"
        '</Piece></PolyData>\n<AppendedData encoding="raw">\n_'
    )
    with open(path, "wb") as file:
        file.write(head.encode("ascii"))
        file.writelines(data.blocks)
        file.write(b"\n</AppendedData>\n</VTKFile>\n")
