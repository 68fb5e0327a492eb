#!/usr/bin/env python3
"""Writes the seeds of the fuzz targets: a few small files of each format, every section of it in at least one."""
import base64
import gzip
import struct
import zlib
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


def ply_file(encoding):
    head = (f"ply\nformat {encoding} 1.0\ncomment TextureFile a.png\nelement vertex 3\nproperty double x\n"
            "property float y\nproperty float z\nproperty uchar red\nproperty uchar green\nproperty uchar blue\n"
            "element face 1\nproperty list uchar int vertex_indices\nproperty list uchar float texcoord\n"
            "property int texnumber\nelement mark 1\nproperty list short uint spare\nend_header\n").encode()
    points = [(0, 0, 0), (1, 0, 0), (0, 1, 0)]
    if encoding == "ascii":
        rows = "".join(f"{x} {y} {z} 255 0 9\n" for x, y, z in points)
        return head + (rows + "3 0 1 2 6 0 0 1 0 0 1 0\n2 7 8\n").encode()
    order = "<" if "little" in encoding else ">"
    body = b"".join(struct.pack(order + "dffBBB", *point, 255, 0, 9) for point in points)
    return head + body + struct.pack(order + "B3iB6fihII", 3, 0, 1, 2, 6, 0, 0, 1, 0, 0, 1, 0, 2, 7, 8)


def stl_file():
    triangle = floats(0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0) + b"\0\0"
    return b"solid".ljust(80) + ints(2) + 2 * triangle


STL_TEXT = ("solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 1 1 0\nvertex 0 1 0\nendloop\n"
            "endfacet\nendsolid a\n")
OFF_TEXT = ("STCOFF\n5 2 0\n0 0 0 1 0 0 0 0\n1 0 0 255 0 9 1 0\n1 1 0 0 0 0 1 1\n0.3 0.5 0 0 0 0 0 1\n0 1 0 0 0 0 0 1\n"
            "5 0 1 2 3 4\n3 0 1 2 9 9 9\n")
WAVEFRONT = ("mtllib a.mtl\nv 0 0 0\nv 1 0 0 0.5 0 1\nv 1 1 0\nv 0.3 0.5 0\nv 0 1 0\nvt 0 0\nvt 1 0\nusemtl a\n"
             "f -5/1 -4/2 -3 -2 \\\n-1\nf 1//1 2/2/1 3\nl 1 2\n")


def gltf_text(buffer):
    return ('{"asset":{"version":"2.0"},"scenes":[{"nodes":[0]}],"nodes":[{"children":[1],"scale":[2,2,-2]},{"mesh":0,'
            '"translation":[1,0,0]}],"meshes":[{"primitives":[{"mode":5,"attributes":{"POSITION":0,"TEXCOORD_0":1},'
            '"indices":2}]}],"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3"},{"bufferView":0,'
            '"componentType":5121,"normalized":true,"count":3,"type":"VEC2"},{"bufferView":1,"componentType":5123,"count":3,'
            '"type":"SCALAR"}],"bufferViews":[{"buffer":0,"byteLength":36},{"buffer":0,"byteOffset":36,"byteLength":6}],'
            f'"buffers":[{{"byteLength":42{buffer}}}]}}')


GLTF_BYTES = floats(0, 0, 0, 1, 0, 0, 0, 1, 0) + struct.pack("<3H", 0, 1, 2)


def glb_file():
    text = gltf_text("").encode()
    text += b" " * (-len(text) % 4)
    data = GLTF_BYTES + b"\0" * (-len(GLTF_BYTES) % 4)
    return (b"glTF" + ints(2, 28 + len(text) + len(data)) + ints(len(text)) + b"JSON" + text + ints(len(data)) + b"BIN\0"
            + data)


def png_file():
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = b"".join(b"\0" + bytes([255, 255, 255, 128, 128, 128]) for _ in range(2))
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", 2, 2, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


SEEDS |= {
    "ply": {name: ply_file(name) for name in ("ascii", "binary_little_endian", "binary_big_endian")},
    "stl": {"bytes": stl_file(), "text": STL_TEXT},
    "off": {"colours": OFF_TEXT, "plain": "OFF 3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n"},
    "wavefront": {"polygons": WAVEFRONT},
    "glb": {"strip": glb_file()},
    "gltf": {"embedded": gltf_text(',"uri":"data:;base64,' + base64.b64encode(GLTF_BYTES).decode() + '"')},
    "gzip": {"off": gzip.compress(OFF_TEXT.encode(), mtime=0), "two": gzip.compress(OFF_TEXT[:9].encode(), mtime=0)
             + gzip.compress(OFF_TEXT[9:].encode(), mtime=0)},
    "png": {"colours": png_file()},
}


def main():
    for target, seeds in SEEDS.items():
        folder = CORPUS / target
        folder.mkdir(parents=True, exist_ok=True)
        for name, content in seeds.items():
            (folder / name).write_bytes(content.encode() if isinstance(content, str) else content)


if __name__ == "__main__":
    main()
