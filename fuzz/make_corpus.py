#!/usr/bin/env python3
"""Writes the seeds of the fuzz targets: a few small files of each format, every section of it in at least one."""
import struct
from pathlib import Path

CORPUS = Path(__file__).parent / "corpus"

# A tetrahedron.
VERTICES = [0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1]
FACES = [0, 2, 1, 0, 1, 3, 1, 2, 3, 0, 3, 2]
TEXELS = [0, 0, 1, 0, 0, 1, 0.5, 0.5]
COLOURS = [0.5] * len(FACES)
NORMALS = [0, 0, 1] * 4


def ints(*values):
    return struct.pack(f"<{len(values)}i", *values)


def floats(*values):
    return struct.pack(f"<{len(values)}f", *values)


def bin_file(section):
    return ints(4, 4) + floats(*VERTICES) + ints(*FACES) + section


def label(marker):
    return b"label".ljust(19, b"\0") + marker


def sas_file(version, texels=b""):
    header = ints(version, 4, 4, 0, 20)
    return header + floats(*VERTICES) + ints(*FACES) + floats(*COLOURS) + floats(*NORMALS) + texels


def planar(values):
    return [values[i] for component in range(3) for i in range(component, len(values), 3)]


def legacy_sas():
    arrays = floats(*planar(VERTICES)) + ints(*planar(FACES)) + floats(*planar(COLOURS)) + floats(*planar(NORMALS))
    return ints(7777, 4, 4, 0, 20) + arrays


def fim(width, height, channels, hole=None):
    pixels = []
    for i in range(width * height):
        pixels += [0] * channels if i == hole else [1 + i % width, i // width, 2][:channels] + [0] * (channels - 3)
    return ints(width, height, channels) + floats(*pixels)


def bitmap(width, height, bits, offset=54, size=0):
    row = (width * (bits // 8) + 3) // 4 * 4
    headers = b"BM" + ints(0, 0, offset, 40, width, height, 1 | bits << 16, 0, size, 0, 0, 0, 0)
    return headers.ljust(offset, b"\0") + bytes((i * 37) % 256 for i in range(row * abs(height)))


OBJ_TETRAHEDRON = "\n".join(
    ["# tetrahedron", "mtllib a.mtl", "o stone"]
    + ["v %g %g %g" % tuple(VERTICES[i : i + 3]) for i in range(0, 12, 3)]
    + ["vt %g %g" % tuple(TEXELS[i : i + 2]) for i in range(0, 8, 2)]
    + ["vn 0 0 1", "s off"]
    + ["f " + " ".join("%d/%d/1" % (c + 1, c + 1) for c in FACES[i : i + 3]) for i in range(0, 12, 3)]
)

WRL_HEAD = "#VRML V2.0 utf8\nShape { appearance Appearance { texture ImageTexture { url \"a.png\" } }\n"
WRL_COORDINATES = "geometry IndexedFaceSet { coord Coordinate { point [ 0 0 0, 1 0 0, 0 1 0, 0 0 1 ] }\n"
WRL_INDEX = "coordIndex [ 0, 2, 1, -1, 0, 1, 3, -1, 1, 2, 3, 0, -1, ]\n"

EPOCHS = "mode = 1;\nmodel = 3;\nmtl = 0.14, 0.11, 544.3, 312, 375, 2452, 100.9, 2.714;\nepcs = 3;\n"

SEEDS = {
    "obj": {
        "tetrahedron": OBJ_TETRAHEDRON,
        "quadrilateral": "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3 4\n",
        "corners": "v 0 0 0 v 1e3 0x1p2 -0 v nan inf 1\nf 1//1 2/ 3\nf -1 -2 -3\n",
        "vertices_only": "v 1 2 3\r\nv 4 5 word\r\n",
        "glued_numbers": "v 1.5.5.5 2\nvt 1-1+1 vt f 1/2/3/4 f\n",
    },
    "bin": {
        "plain": bin_file(b""),
        "label": bin_file(label(b"\0")),
        "texel_per_vertex": bin_file(label(b"\0") + floats(*TEXELS)),
        "texel_index": bin_file(label(b"\xff") + ints(4) + floats(*TEXELS) + ints(*FACES)),
        "no_texels": bin_file(label(b"\xff") + ints(0) + ints(*FACES)),
    },
    "sas": {
        "legacy": legacy_sas(),
        "without_texels": sas_file(7778),
        "texel_per_vertex": sas_file(7779, floats(*TEXELS)),
        "texel_index": sas_file(7780, ints(4) + floats(*TEXELS) + ints(*FACES)),
        "empty": ints(7778, 0, 0, 0, 20),
        "unknown": ints(0, 1, 1, 0, 20),
    },
    "fim": {
        "two_by_two": fim(2, 2, 3),
        "three_by_three": fim(3, 3, 3),
        "hole": fim(4, 3, 3, hole=5),
        "not_moved": fim(3, 2, 3, hole=0),
        "four_channels": fim(2, 2, 4),
    },
    "wrl": {
        "mesh": WRL_HEAD + WRL_COORDINATES + WRL_INDEX + "} }\n",
        "textured": WRL_HEAD + WRL_COORDINATES + WRL_INDEX
        + "texCoord TextureCoordinate { point [ 0 0, 1 0, 0 1 ] } texCoordIndex [ 0 1 2 -1 0 2 1 -1] } }",
        "colours_first": "Color [ 1 0 0, 0 1 0 ] Coordinate [ 0 0 0 1 0 0 0 1 0] coordIndex [ 0 1 1 -1]",
        "old": "#VRML V1.0 ascii\nTexture2 { filename \"a.rgb\" } Coordinate3 { point [ 0 0 0, 1 0 0, 0 1 0 ] }\n"
        + "TextureCoordinate2 { point [ 0 0, 1 1] } IndexedFaceSet { coordIndex [ 0, 1, 2, -1 ] }",
        "glued_bracket": "Coordinate [ 1,2,3 4=5 6 7 8 9] coordIndex [ 0 1 2 0 -1] 0 1 2 ]",
        "no_faces": "Coordinate [ 1 2 3 ]",
    },
    "bitmap": {
        "colours": bitmap(3, 2, 24),
        "palette": bitmap(5, 3, 8, offset=70, size=24),
        "upside_down": bitmap(2, -2, 24),
        "four_bytes": bitmap(2, 2, 32),
    },
    "parameters": {
        "every_key": EPOCHS + "epc_0 = 30, 1, 2, 3, 4;\nepc_2 = 10, 0, 0, 0, 4.5;\n",
        "short_lists": "// hand-made\nmtl = 5;\nepcs = 2 ; two\nepc_01 = 1e-12,,nan;\nmode\n",
        "out_of_range": "mode=-1\r\nmodel=9;\r\nepcs=5000;\r\nepc_9=99999999999999999999;\r\n",
    },
    "calls": {
        # 0 creates the stores, 2 runs, 31 and 32 read frames, 25 and 26 read and save the parameters.
        "run": bytes([0, 2, 31, 1, 32, 2, 1, 32, 0, 1]),
        "parameters": bytes([18, 3, 30, 0, 26, 14, 5, 25, 23, 1, 1]) + floats(1e-12, 1e-12, 1, 4) + bytes([2, 24, 1, 1]),
        "other_mesh": bytes([36, 0, 12]) + b"v 0 0 0 v 1 " + bytes([8]) + b"0 v 0 1 " + bytes([8]) + b"0 f 1 2 3"[:8]
        + bytes([0, 2]),
        "texts": bytes([34, 1, 35, 5]) + b"50%%\n" + bytes([1, 33, 1]) + floats(*([1.5] * 9)) + bytes([0, 1]),
    },
}


def main():
    for target, seeds in SEEDS.items():
        folder = CORPUS / target
        folder.mkdir(parents=True, exist_ok=True)
        for name, content in seeds.items():
            (folder / name).write_bytes(content.encode() if isinstance(content, str) else content)


if __name__ == "__main__":
    main()
