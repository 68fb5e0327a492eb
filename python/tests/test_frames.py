"""Frames against what Python itself reads of the same text."""

import subprocess

import numpy as np
import pytest
from programs import EXAMPLE_STONE, PROGRAM

from talvek.errors import MeshError
from talvek.frames import read_faces, read_normals, read_vertices


def numbers_of(path, word):
    rows = [line.split()[1:] for line in path.read_text().splitlines() if line.split()[:1] == [word]]
    return np.array(rows, dtype=np.float64).reshape(-1, 3)


def write_frame(path, vertices, normals, faces=((1, 2, 3),)):
    """A frame with numbers in the program's form."""
    lines = ["#", "# Obj file", "#", f"# {len(vertices)} vertices", f"# {len(normals)} normals"]
    for vertex, normal in zip(vertices, normals, strict=True):
        lines += ["v %f %f %f" % tuple(vertex), "vn %f %f %f" % tuple(normal)]
    lines += [f"# {len(faces)} triangles", *("f %d %d %d" % tuple(face) for face in faces), "# end"]
    path.write_text("\n".join(lines) + "\n")
    return path


@pytest.fixture(scope="module")
def stone(tmp_path_factory):
    """The last surface of the example stone after a year."""
    folder = tmp_path_factory.mktemp("stone")
    subprocess.run([EXAMPLE_STONE, "stone.obj"], cwd=folder, check=True, capture_output=True)
    subprocess.run([PROGRAM, "run", "stone.obj"], cwd=folder, check=True, capture_output=True)
    return folder / "stone.obj.obj_w.obj"


def test_a_frame_of_the_program(stone):
    vertices, normals, faces = read_vertices(stone), read_normals(stone), read_faces(stone)
    assert vertices.dtype == normals.dtype == np.float32
    assert vertices.flags.c_contiguous and normals.flags.c_contiguous and faces.flags.c_contiguous
    assert np.array_equal(vertices, numbers_of(stone, "v").astype(np.float32))
    assert np.array_equal(normals, numbers_of(stone, "vn").astype(np.float32))
    assert np.array_equal(faces, numbers_of(stone, "f").astype(np.int32) - 1)


def test_numbers_of_every_length_are_rounded_once(tmp_path):
    random = np.random.default_rng(3)
    vertices = random.uniform(-1, 1, (60000, 3)) * 10.0 ** random.integers(-6, 7, (60000, 3))
    normals = random.uniform(-1, 1, (60000, 3))
    frame = write_frame(tmp_path / "frame.obj", vertices, normals)
    assert np.array_equal(read_vertices(frame), numbers_of(frame, "v").astype(np.float32))
    assert np.array_equal(read_normals(frame), numbers_of(frame, "vn").astype(np.float32))


@pytest.mark.parametrize("odd", [[12345678.5, 0, 0], [np.nan, 1, 2], [np.inf, -np.inf, 0], [-0.0, 1e30, 3]])
def test_numbers_that_do_not_fit_are_read_nevertheless(tmp_path, odd):
    vertices = [[1.5, -2.25, 3], odd, [0, 0, -1]]
    frame = write_frame(tmp_path / "frame.obj", vertices, np.zeros((3, 3)))
    assert np.array_equal(read_vertices(frame), numbers_of(frame, "v").astype(np.float32), equal_nan=True)
    assert np.array_equal(read_normals(frame), np.zeros((3, 3)))


def test_frames_with_ends_of_lines_of_windows(tmp_path):
    frame = write_frame(tmp_path / "frame.obj", [[1.5, -2.25, 3]] * 3, [[0, 0, 1]] * 3)
    frame.write_bytes(frame.read_bytes().replace(b"\n", b"\r\n"))
    assert read_vertices(frame).tolist() == [[1.5, -2.25, 3]] * 3
    assert read_faces(frame).tolist() == [[0, 1, 2]]


def test_other_objs_are_read_line_by_line(tmp_path):
    (tmp_path / "hand.obj").write_text("v 1 2 3\nv 4e1 5 6\nf 1 2 2\n")
    assert read_vertices(tmp_path / "hand.obj").tolist() == [[1, 2, 3], [40, 5, 6]]
    assert read_normals(tmp_path / "hand.obj").shape == (0, 3)


def test_a_frame_that_is_not_there(tmp_path):
    for read in (read_vertices, read_normals, read_faces):
        with pytest.raises(MeshError, match="missing"):
            read(tmp_path / "missing.obj")
