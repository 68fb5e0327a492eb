// glTF and GLB files: nodes, indices of each width, split vertices, textures, and what is refused.
#include "formats/gltf_text.h"
#include "formats/imports.h"
#include "talvek/formats/mesh_file.h"

namespace talvek::test {
namespace {

using Indices = std::vector<std::int32_t>;
using Values = std::vector<double>;

const std::string kHead = R"({"asset":{"version":"2.0"},)";

/// A square of six vertices, split along its diagonal, 72 bytes; their texture coordinates, 48 bytes; then indices.
std::string squareBytes(const std::string& indices) {
    return rawBytes(std::vector<float>{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 0, 0, 1, 1, 0, 0, 1, 0}) +
           rawBytes(std::vector<float>{0, 1, 0.5F, 1, 0.5F, 0, 0.5F, 1, 1, 0, 0.5F, 0}) + indices;
}

std::string square(const std::string& nodes, int componentType, int indexSize, const std::string& more = "") {
    return kHead + R"("scenes":[{"nodes":[0]}],"nodes":[)" + nodes + R"(],"meshes":[{"primitives":[{"attributes":)" +
           R"({"POSITION":0,"TEXCOORD_0":1},"indices":2,"material":0}]}],"accessors":[)" +
           R"({"bufferView":0,"componentType":5126,"count":6,"type":"VEC3"},)" +
           R"({"bufferView":1,"componentType":5126,"count":6,"type":"VEC2"},)" + R"({"bufferView":2,"componentType":)" +
           std::to_string(componentType) + R"(,"count":6,"type":"SCALAR"}],"bufferViews":[)" +
           R"({"buffer":0,"byteLength":72},{"buffer":0,"byteOffset":72,"byteLength":48},)" +
           R"({"buffer":0,"byteOffset":120,"byteLength":)" + std::to_string(6 * indexSize) +
           R"(}],"buffers":[{"byteLength":)" + std::to_string(120 + 6 * indexSize) + "}]" + more + "}";
}

TEST(GltfFiles, SplitVerticesAreOneAgainAndIndicesOfEachWidthAreRead) {
    const std::string files[] = {
        glb(square(R"({"mesh":0})", 5121, 1), squareBytes(rawBytes(std::vector<std::uint8_t>{0, 1, 2, 3, 4, 5}))),
        glb(square(R"({"mesh":0})", 5123, 2), squareBytes(rawBytes(std::vector<std::uint16_t>{0, 1, 2, 3, 4, 5}))),
        glb(square(R"({"mesh":0})", 5125, 4), squareBytes(rawBytes(std::vector<std::uint32_t>{0, 1, 2, 3, 4, 5})))};
    for (const std::string& file : files) {
        const host::ImportedMesh mesh = importBytes("t.glb", file);
        EXPECT_EQ(mesh.positions, (Values{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}));
        EXPECT_EQ(mesh.corners, (Indices{0, 1, 2, 0, 2, 3}));
        EXPECT_EQ(mesh.cornerTexels, (Indices{0, 1, 2, 3, 4, 5}));
        // The format counts from the upper edge.
        EXPECT_EQ(std::vector<float>(mesh.texels.begin(), mesh.texels.begin() + 6),
                  (std::vector<float>{0, 0, 0.5F, 0, 0.5F, 1}));
        EXPECT_EQ(mesh.counts.joinedVertices, 2);
        EXPECT_EQ(host::narrowMesh(mesh)->vertices[3], 1000.0F);
    }
}

TEST(GltfFiles, NodesMoveTurnScaleAndMirrorTheirMeshes) {
    const std::string bytes = squareBytes(rawBytes(std::vector<std::uint8_t>{0, 1, 2, 3, 4, 5}));
    // A quarter turn about z, then twice as large, then far away; the child is moved first.
    const std::string nodes =
        R"({"translation":[500000,0.125,0],"rotation":[0,0,0.70710678118654752,0.70710678118654752],"scale":[2,2,2],)"
        R"("children":[1,2]},{"mesh":0,"translation":[1,0,0]},)"
        R"({"mesh":0,"matrix":[-1,0,0,0,0,1,0,0,0,0,1,0,0,0,5,1]})";
    const host::ImportedMesh mesh = importBytes("t.glb", glb(square(nodes, 5121, 1), bytes));
    ASSERT_EQ(mesh.numVertices(), 8);
    const Values expected = {500000, 2.125, 0, 500000, 4.125, 0};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(mesh.positions[i], expected[i], 1e-9);
    }
    EXPECT_NEAR(mesh.positions[14], 10, 1e-9);
    EXPECT_EQ(mesh.counts.parts, 2);
    // What is mirrored is turned back, so that outside stays outside.
    EXPECT_EQ(Indices(mesh.corners.begin() + 6, mesh.corners.begin() + 9), (Indices{4, 6, 5}));
}

TEST(GltfFiles, MaterialsAndThePicturesWithinTheFile) {
    std::string bytes = squareBytes(rawBytes(std::vector<std::uint8_t>{0, 1, 2, 3, 4, 5}));
    bytes += "??PICTURE";
    std::string description =
        square(R"({"mesh":0})", 5121, 1,
               R"(,"materials":[{"name":"rock","pbrMetallicRoughness":{"baseColorFactor":[1,0.5,0,1],)"
               R"("baseColorTexture":{"index":0}}}],"textures":[{"source":0}],)"
               R"("images":[{"bufferView":3,"mimeType":"image/png"}])");
    description.replace(description.find(R"(}],"buffers":[{"byteLength":126)"), 31,
                        R"(},{"buffer":0,"byteOffset":128,"byteLength":7}],"buffers":[{"byteLength":135)");
    const host::ImportedMesh mesh = importBytes("t.glb", glb(description, bytes));
    ASSERT_EQ(mesh.materials.size(), 1);
    EXPECT_EQ(mesh.materials[0].name, "rock");
    EXPECT_EQ(mesh.materials[0].textureBytes, "PICTURE");
    EXPECT_EQ(mesh.materials[0].textureKind, "image/png");
    EXPECT_EQ(mesh.triangleMaterials, (Indices{0, 0}));
}

TEST(GltfFiles, BuffersWithinTheTextAndBesideTheFile) {
    const TempFolder folder;
    const std::string bytes = squareBytes(rawBytes(std::vector<std::uint8_t>{0, 1, 2, 3, 4, 5}));
    std::string description = square(R"({"mesh":0})", 5121, 1);
    description.replace(description.find(R"("byteLength":126)"), 16, R"("byteLength":126,"uri":"the%20bytes.bin")");
    writeFile(folder.file("the bytes.bin"), bytes);
    writeFile(folder.file("t.gltf"), description);
    EXPECT_EQ(host::importMesh(folder.file("t.gltf")).numVertices(), 4);
    writeFile(folder.file("the bytes.bin"), bytes.substr(0, 125));
    EXPECT_THROW(host::importMesh(folder.file("t.gltf")), host::Failure);
    // One triangle without indices, "AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA".
    const std::string embedded =
        kHead + R"("nodes":[{"mesh":0}],"meshes":[{"primitives":[{"attributes":{"POSITION":0}}]}],)"
                R"("accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3"}],)"
                R"("bufferViews":[{"buffer":0,"byteLength":36}],"buffers":[{"byteLength":36,"uri":)"
                R"("data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"}]})";
    EXPECT_EQ(importBytes("t.gltf", embedded).positions, (Values{0, 0, 0, 1, 0, 0, 0, 1, 0}));
}

TEST(GltfFiles, NoFileIsReadThatDoesNotStandBesideTheMesh) {
    for (const char* uri :
         {"https://example.org/a.bin", "../a.bin", "/etc/passwd", R"(C:\\a.bin)", "a/../../b.bin", "%2e%2e/a"}) {
        const std::string refusal =
            refusalOf("t.gltf", kHead + R"("buffers":[{"byteLength":4,"uri":")" + uri + "\"}]}");
        EXPECT_NE(refusal.find("only files in its folder are read"), std::string::npos) << uri << refusal;
    }
}

TEST(GltfFiles, WhatIsNotReadIsSaid) {
    const auto required = [](const std::string& name) {
        return refusalOf("t.gltf", kHead + R"("extensionsRequired":[")" + name + R"("]})");
    };
    EXPECT_EQ(required("KHR_draco_mesh_compression"),
              "t.gltf: the mesh is compressed with Draco, which is not read; export it without compression");
    EXPECT_EQ(required("EXT_meshopt_compression"),
              "t.gltf: the file requires EXT_meshopt_compression, which is not read; export it without");
    EXPECT_EQ(required("KHR_materials_unlit"), "");
    EXPECT_EQ(refusalOf("t.gltf", "{}"), "t.gltf: this is no glTF file");
    EXPECT_EQ(refusalOf("t.gltf", R"({"asset":{"version":"1.0"}})"), "t.gltf: glTF of version 1.0 is not read, 2.0 is");
    EXPECT_EQ(refusalOf("t.gltf", std::string(1000, '[')), "t.gltf: the description is nested too deep to be one");
    EXPECT_EQ(refusalOf("t.gltf", kHead + R"("nodes":[{"children":[1]},{"children":[0]}],"scenes":[{"nodes":[0]}]})"),
              "t.gltf: a node is within itself or in several others");
}

/// A thousand nodes with a thousand meshes each would fill any memory from a few kilobytes.
TEST(GltfFiles, RepeatedMeshesAreBoundedByTheFile) {
    std::string nodes = R"({"mesh":0})";
    std::string numbers = "0";
    for (int i = 1; i < 20000; ++i) {
        nodes += R"(,{"mesh":0})";
        numbers += "," + std::to_string(i);
    }
    std::string description = square(nodes, 5121, 1);
    description.replace(description.find(R"("nodes":[0])"), 11, "\"nodes\":[" + numbers + "]");
    std::string primitive = R"({"attributes":{"POSITION":0,"TEXCOORD_0":1},"indices":2,"material":0})";
    const std::size_t at = description.find(primitive);
    for (int i = 0; i < 30; ++i) {
        description.insert(at, primitive + ",");
    }
    const std::string refusal =
        refusalOf("t.glb", glb(description, squareBytes(rawBytes(std::vector<std::uint8_t>{0, 1, 2, 3, 4, 5}))));
    EXPECT_NE(refusal.find("repeats its meshes so often"), std::string::npos) << refusal;
}

}  // namespace
}  // namespace talvek::test
