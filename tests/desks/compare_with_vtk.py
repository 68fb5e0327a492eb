#!/usr/bin/env python3
"""Compares the signed distances of `talvek compare` with those of VTK, vertex by vertex.

    compare_with_vtk.py TALVEK EXAMPLE_STONE

Ends with status 77, which the test runner takes for "skipped", where VTK or NumPy is not installed.
"""
import pathlib
import subprocess
import sys
import tempfile

try:
    import numpy as np
    import vtk
    from vtk.util.numpy_support import vtk_to_numpy
except ImportError as missing:
    print(f"skipped: {missing}")
    sys.exit(77)


def read_surface(path):
    """The positions and faces of an OBJ file as VTK reads them, without its normals."""
    reader = vtk.vtkOBJReader()
    reader.SetFileName(str(path))
    reader.Update()
    surface = vtk.vtkPolyData()
    surface.SetPoints(reader.GetOutput().GetPoints())
    surface.SetPolys(reader.GetOutput().GetPolys())
    return surface


def write_turned(surface, path):
    """The surface turned by three degrees and shifted: it cuts through the one it was."""
    points = vtk_to_numpy(surface.GetPoints().GetData()).astype(float)
    angle = np.radians(3)
    turn = np.array([[np.cos(angle), -np.sin(angle), 0], [np.sin(angle), np.cos(angle), 0], [0, 0, 1]])
    faces = vtk_to_numpy(surface.GetPolys().GetConnectivityArray()).reshape(-1, 3) + 1
    with open(path, "w") as file:
        file.writelines("v %.6f %.6f %.6f\n" % tuple(point) for point in points @ turn.T + [2, -1, 1.5])
        file.writelines("f %d %d %d\n" % tuple(face) for face in faces)


def distances_of_talvek(talvek, first, second, folder):
    ply = folder / "distances.ply"
    subprocess.run([talvek, "compare", first, second, "--ply", ply], check=True, stdout=subprocess.DEVNULL)
    content = ply.read_bytes()
    end = content.index(b"end_header\n") + len(b"end_header\n")
    count = int(content[:end].decode().split("element vertex ")[1].split()[0])
    row = np.dtype([("numbers", "<f4", 8), ("colour", "u1", 3)])
    return np.frombuffer(content[end:end + count * row.itemsize], row)["numbers"][:, 7]


def distances_of_vtk(first, second):
    distance = vtk.vtkImplicitPolyDataDistance()
    distance.SetInput(read_surface(second))
    points = vtk_to_numpy(read_surface(first).GetPoints().GetData()).astype(float)
    return np.array([distance.EvaluateFunction(point) for point in points])


def main():
    talvek, example_stone = (str(pathlib.Path(program).resolve()) for program in sys.argv[1:3])
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        subprocess.run([example_stone, "stone.obj"], cwd=folder, check=True, stdout=subprocess.DEVNULL)
        subprocess.run([talvek, "run", "stone.obj", "--mode", "3", "--days", "36500"], cwd=folder, check=True,
                       stdout=subprocess.DEVNULL)
        before, after = folder / "stone.obj.obj_i.obj", folder / "stone.obj.obj_w.obj"
        turned = folder / "turned.obj"
        write_turned(read_surface(before), turned)
        for first in (after, turned):
            ours, theirs = distances_of_talvek(talvek, first, before, folder), distances_of_vtk(first, before)
            difference = np.abs(ours - theirs).max()
            print(f"{first.name}: {len(ours)} vertices, mean {theirs.mean():.6f} mm, largest difference {difference:.2e}")
            assert len(ours) == len(theirs) and difference < 2e-6
            assert theirs.min() < -1


if __name__ == "__main__":
    main()
