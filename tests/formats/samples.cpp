#include "formats/samples.h"

#include "formats/gltf_text.h"
#include "formats/imports.h"

namespace talvek::test {

namespace {

const std::string kTextPly =
    "ply\nformat ascii 1.0\ncomment TextureFile a.png\nelement vertex 4\nproperty double x\nproperty float y\n"
    "property float z\nproperty uchar red\nproperty uchar green\nproperty uchar blue\nelement face 2\n"
    "property list uchar int vertex_indices\nproperty list uchar float texcoord\nproperty int texnumber\nend_header\n"
    "0 0 0 255 0 0\n1 0 0 0 9 9\n1 1 0 1 2 3\n0 1 0 7 7 7\n4 0 1 2 3 8 0 0 1 0 1 1 0 1 0\n3 0 1 2 6 0 0 1 0 1 1 0\n";

std::string bytePly(const std::string& order) {
    std::string bytes = "ply\nformat binary_" + order +
                        "_endian 1.0\nelement vertex 4\nproperty uchar x\nproperty short y\nproperty float z\n"
                        "property list uchar uchar spare\nelement face 2\nproperty list uchar uchar vertex_indices\n"
                        "end_header\n";
    for (int v = 0; v < 4; ++v) {
        bytes += static_cast<char>(v % 2);
        bytes += std::string(order == "big" ? "\x00" : "\x01", 1) + std::string(order == "big" ? "\x01" : "\x00", 1);
        bytes += std::string(4, '\0') + std::string("\x01\x05", 2);
    }
    return bytes + std::string("\x04\x00\x01\x03\x02\x03\x00\x01\x02", 9);
}

std::string byteStl() {
    std::string bytes = "solid bytes" + std::string(69, ' ') + std::string("\x02\0\0\0", 4);
    for (int i = 0; i < 2; ++i) {
        bytes += std::string(12, '\0') + std::string(12, '\0') + std::string("\0\0\x80\x3F", 4) +
                 std::string(12, '\0') + std::string("\0\0\x80\x3F", 4) + std::string(4, '\0') + std::string(2, '\0');
    }
    return bytes;
}

const std::string kTextStl =
    "solid s\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\n"
    "facet normal 0 0 1\nouter loop\nvertex 1 0 0\nvertex 1 1 0\nvertex 0 1 0\nvertex 0.5 0.75 0\nendloop\nendfacet\n"
    "endsolid s\n";

const std::string kOff =
    "STCOFF\n5 2 0\n0 0 0 0.5 0.5 0.5 0 0\n1 0 0 1 1 1 1 0\n1 1 0 0 0 1 1 1\n0 1 0 0 1 0 0 1\n2 2 0 0 0 0 0 0\n"
    "4 0 1 2 3\n3 1 4 2 255 0 0\n";

const std::string kWavefront =
    "v 0 0 0\nv 1 0 0 1 0.5 0\nv 1 1 0\nv 0 1 0\nvt 0 0\nvt 1 0 0\nusemtl a\nf 1/1/1 2/2 -2/2 \\\n4//3\nf 1 2 4\n";

const std::string kGltf =
    R"({"asset":{"version":"2.0"},"nodes":[{"mesh":0,"translation":[1,0,0]}],"meshes":[{"primitives":[{"attributes":)"
    R"({"POSITION":0}}]}],"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3"}],)"
    R"("bufferViews":[{"buffer":0,"byteLength":36}],"buffers":[{"byteLength":36,"uri":"data:;base64,)"
    R"(AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"}]})";

std::string smallGlb() {
    const std::string description =
        R"({"asset":{"version":"2.0"},"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0}],"meshes":[{"primitives":[{"mode":5,)"
        R"("attributes":{"POSITION":0,"TEXCOORD_0":1,"COLOR_0":2},"indices":3}]}],"accessors":[)"
        R"({"bufferView":0,"componentType":5126,"count":4,"type":"VEC3"},)"
        R"({"bufferView":1,"componentType":5121,"normalized":true,"count":4,"type":"VEC2"},)"
        R"({"bufferView":1,"componentType":5121,"normalized":true,"count":2,"type":"VEC4"},)"
        R"({"bufferView":2,"componentType":5123,"count":4,"type":"SCALAR"}],"bufferViews":[)"
        R"({"buffer":0,"byteLength":48},{"buffer":0,"byteOffset":48,"byteLength":8},)"
        R"({"buffer":0,"byteOffset":56,"byteLength":8}],"buffers":[{"byteLength":64}]})";
    return glb(description, rawBytes(std::vector<float>{0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0}) +
                                rawBytes(std::vector<std::uint8_t>{0, 0, 255, 0, 0, 255, 255, 255}) +
                                rawBytes(std::vector<std::uint16_t>{0, 1, 2, 3}));
}

}  // namespace

std::vector<Sample> samples() {
    return {{"Wavefront", "t.obj", kWavefront},
            {"Glb", "t.glb", smallGlb()},
            {"Gltf", "t.gltf", kGltf},
            {"PlyText", "t.ply", kTextPly},
            {"PlyLittle", "t.ply", bytePly("little")},
            {"PlyBig", "t.ply", bytePly("big")},
            {"StlBytes", "t.stl", byteStl()},
            {"StlText", "t.stl", kTextStl},
            {"Off", "t.off", kOff},
            {"Compressed", "t.off.gz", gzipped(kOff)}};
}

}  // namespace talvek::test
