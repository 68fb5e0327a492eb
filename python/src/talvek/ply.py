"""Meshes with values at their vertices, as binary PLY files."""

from __future__ import annotations

import os
from collections.abc import Mapping

import numpy as np
from numpy.typing import NDArray


def write_ply(
    path: str | os.PathLike[str],
    vertices: NDArray[np.float32],
    faces: NDArray[np.int32],
    fields: Mapping[str, NDArray[np.float64]],
) -> None:
    """Write a mesh with fields.

    Parameters
    ----------
    path : path-like
        The file.
    vertices : array of float32, shape (V, 3), in mm
    faces : array of int32, shape (F, 3)
    fields : mapping of str to array of float64, shape (V,)
        Written as floats, under their names.
    """
    rows = np.empty(len(vertices), dtype=[("xyz", "<f4", 3), *((name, "<f4") for name in fields)])
    rows["xyz"] = vertices
    for name, values in fields.items():
        rows[name] = values
    corners = np.empty(len(faces), dtype=[("count", "u1"), ("corners", "<i4", 3)])
    corners["count"] = 3
    corners["corners"] = faces
    properties = "".join(f"property float {name}\n" for name in ("x", "y", "z", *fields))
    header = f"ply\nformat binary_little_endian 1.0\nelement vertex {len(rows)}\n{properties}"
    header += f"element face {len(corners)}\nproperty list uchar int vertex_indices\nend_header\n"
    with open(path, "wb") as file:
        file.write(header.encode("ascii"))
        rows.tofile(file)
        corners.tofile(file)
