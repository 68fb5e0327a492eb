#!/usr/bin/env python3
"""Reads what `talvek export` writes with VTK, NumPy and pandas, and compares it with the frames.

    read_exports.py TALVEK EXAMPLE_STONE

Ends with status 77, which the test runner takes for "skipped", where one of these packages is not installed.
"""
import json
import pathlib
import struct
import subprocess
import sys
import tempfile

try:
    import numpy as np
    import pandas as pd
    import vtk
    from vtk.util.numpy_support import vtk_to_numpy
except ImportError as missing:
    print(f"skipped: {missing}")
    sys.exit(77)

EPOCHS = 3


def read_obj(path):
    """Positions in single precision, and faces."""
    positions, faces = [], []
    for line in pathlib.Path(path).read_text().splitlines():
        words = line.split()
        if words[:1] == ["v"]:
            positions.append([float(word) for word in words[1:4]])
        elif words[:1] == ["f"]:
            faces.append([int(word.split("/")[0]) - 1 for word in words[1:4]])
    return np.array(positions, np.float32), np.array(faces)


def read_with_vtk(reader, path):
    reader.SetFileName(str(path))
    reader.Update()
    data = reader.GetOutput()
    return data, vtk_to_numpy(data.GetPoints().GetData()), vtk_to_numpy(
        data.GetPolys().GetConnectivityArray()).reshape(-1, 3)


def check_vtp(folder, frames, faces, expected):
    index = json.loads((folder / "run.vtp.series").read_text())
    assert [entry["time"] for entry in index["files"]] == [0, 365, 730, 1095], index
    for number, (positions, displacement) in enumerate(zip(frames, expected)):
        data, points, connectivity = read_with_vtk(vtk.vtkXMLPolyDataReader(), folder / f"stone_{number:04}.vtp")
        assert (points == positions).all() and (connectivity == faces).all()
        arrays = data.GetPointData()
        values = vtk_to_numpy(arrays.GetArray("displacement_mm"))
        assert np.abs(values - displacement).max() < 1e-6
        assert arrays.GetNormals() is not None
        assert {arrays.GetArrayName(i) for i in range(arrays.GetNumberOfArrays())} >= {
            "delta_mm", "mean_curvature", "gaussian_curvature", "mineral", "colour"}
        assert data.GetFieldData().GetArray("TimeValue").GetValue(0) == 365 * number


def check_ply(folder, frames, faces):
    for number, positions in enumerate(frames):
        data, points, connectivity = read_with_vtk(vtk.vtkPLYReader(), folder / f"stone_{number:04}.ply")
        assert (points == positions).all() and (connectivity == faces).all()
        assert data.GetPointData().GetArray("RGB") is not None


def check_pc2(path, frames):
    content = path.read_bytes()
    head = struct.unpack("<12siiffi", content[:32])
    assert head == (b"POINTCACHE2\0", 1, len(frames[0]), 0.0, 1.0, len(frames)), head
    samples = np.frombuffer(content[32:], "<f4").reshape(len(frames), len(frames[0]), 3)
    assert all((sample == positions).all() for sample, positions in zip(samples, frames))


def check_glb(path, frames):
    content = path.read_bytes()
    size = struct.unpack("<I", content[12:16])[0]
    gltf, binary = json.loads(content[20:20 + size]), content[28 + size:]

    def array(number):
        accessor = gltf["accessors"][number]
        start = gltf["bufferViews"][accessor["bufferView"]]["byteOffset"]
        width = {"SCALAR": 1, "VEC3": 3}[accessor["type"]]
        return np.frombuffer(binary, "<f4", accessor["count"] * width, start).reshape(-1, width)

    primitive = gltf["meshes"][0]["primitives"][0]
    base = array(primitive["attributes"]["POSITION"])
    assert (base[:len(frames[0])] == frames[0]).all()
    for target, positions in zip(primitive["targets"], frames[1:]):
        assert np.abs(base + array(target["POSITION"]) - positions).max() < 1e-4
    weights = array(gltf["animations"][0]["samplers"][0]["output"]).reshape(EPOCHS + 1, EPOCHS)
    assert (weights == np.vstack([np.zeros(EPOCHS), np.eye(EPOCHS)])).all()


def check_tables(folder, expected):
    table = pd.read_csv(folder / "stone.csv")
    assert list(table.days) == [0, 365, 730, 1095]
    archive = np.load(folder / "stone.npz")
    assert archive["displacement_mm"].shape == (EPOCHS + 1, len(expected[0]))
    assert np.abs(archive["displacement_mm"] - expected).max() < 1e-6
    assert np.abs(table.displacement_mean_mm - expected.mean(axis=1)).max() < 1e-6
    assert np.abs(table.displacement_p95_mm - np.percentile(expected, 95, axis=1)).max() < 1e-6
    assert (archive["mineral"] > 0).all()


def vertex_normals(positions, faces):
    """Plain averages of the unit normals of the faces around a vertex."""
    a, b, c = (positions[faces[:, k]].astype(float) for k in range(3))
    normals = np.cross(b - a, c - a)
    normals /= np.linalg.norm(normals, axis=1)[:, None]
    sums = np.zeros((len(positions), 3))
    for k in range(3):
        np.add.at(sums, faces[:, k], normals)
    return sums / np.linalg.norm(sums, axis=1)[:, None]


def main():
    talvek, example_stone = (str(pathlib.Path(program).resolve()) for program in sys.argv[1:3])
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)

        def run(*command):
            subprocess.run(command, cwd=folder, check=True, stdout=subprocess.DEVNULL)

        run(example_stone, "stone.obj")
        run(talvek, "run", "stone.obj", "--mode", "3", "--epochs", str(EPOCHS))
        for form in ("ply", "vtp"):
            run(talvek, "export", "stone.obj", "--to", form, "--format", form, "--colours")
        for form in ("glb", "pc2", "csv", "npz"):
            run(talvek, "export", "stone.obj", "--to", f"stone.{form}")
        frames = [read_obj(folder / f"stone.obj.{end}.obj")[0] for end in ("obj_i", "obj_w_1", "obj_w_2", "obj_w_3")]
        faces = read_obj(folder / "stone.obj.obj_i.obj")[1]
        normals = vertex_normals(frames[0], faces)
        expected = np.array([((frame.astype(float) - frames[0]) * normals).sum(axis=1) for frame in frames])
        assert expected[3].min() < -0.01
        check_vtp(folder / "vtp", frames, faces, expected)
        check_ply(folder / "ply", frames, faces)
        check_pc2(folder / "stone.pc2", frames)
        check_glb(folder / "stone.glb", frames)
        check_tables(folder, expected)
    print("vtp, ply, pc2, glb, csv and npz hold what the frames hold")


if __name__ == "__main__":
    main()
