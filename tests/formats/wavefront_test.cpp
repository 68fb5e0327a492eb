// OBJ files as other programs write them.
#include "formats/imports.h"
#include "talvek/formats/engine_mesh.h"

namespace talvek::test {
namespace {

using Indices = std::vector<std::int32_t>;

constexpr const char* kSquare = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";

host::ImportedMesh importText(const std::string& text) {
    return importBytes("t.obj", text);
}

TEST(WavefrontFiles, PolygonsAndIndicesFromTheEnd) {
    const host::ImportedMesh mesh = importText(std::string(kSquare) + "f -4 -3 -2 -1\nv 2 2 0\nf -1 4 3\n");
    EXPECT_EQ(mesh.corners, (Indices{0, 1, 2, 0, 2, 3, 4, 3, 2}));
    EXPECT_EQ(mesh.polygons.size(), 1);
}

TEST(WavefrontFiles, TextureCoordinatesByCornerAndNormalsPassedOver) {
    const host::ImportedMesh mesh = importText(
        std::string(kSquare) + "vt 0.5\nvt 0 1\nvt 1 1 0\nvn 0 0 1\nf 1/1/1 2/2/1 3/-1/1\nf 1//1 3//1 4//1\n");
    EXPECT_EQ(mesh.texels, (std::vector<float>{0.5F, 0, 0, 1, 1, 1}));
    EXPECT_EQ(mesh.cornerTexels, (Indices{0, 1, 2, -1, -1, -1}));
    // A number that names no texture coordinate costs the corner its texture, and is told.
    EXPECT_EQ(importText(std::string(kSquare) + "vt 0 0\nf 1/1 2/7 3/1\n").counts.absentTexels, 1);
}

TEST(WavefrontFiles, ObjectsGroupsAndMaterials) {
    const TempFolder folder;
    writeFile(folder.file("a b.mtl"),
              "newmtl stone\nKd 0.5 0.25 1\nd 0.75\nmap_Kd -s 1 1 1 stone.png\nnewmtl moss\nmap_Kd the moss.png \n");
    writeFile(folder.file("t.obj"), "mtllib a b.mtl\no one\n" + std::string(kSquare) +
                                        "f 1 2 3\ng two\nusemtl moss\nf 1 3 4\ns 1\nusemtl sand\nf 1 2 4\nl 1 2\n");
    const host::ImportedMesh mesh = host::importMesh(folder.file("t.obj"));
    ASSERT_EQ(mesh.materials.size(), 3);
    EXPECT_EQ(mesh.materials[0].textureFile, "stone.png");
    EXPECT_EQ(mesh.materials[0].colour, (std::array<float, 4>{0.5F, 0.25F, 1, 0.75F}));
    EXPECT_EQ(mesh.materials[1].textureFile, "the moss.png");
    EXPECT_EQ(mesh.materials[2].name, "sand");
    EXPECT_EQ(mesh.triangleMaterials, (Indices{-1, 1, 2}));
    EXPECT_EQ(mesh.counts.leftOut, 1);
}

TEST(WavefrontFiles, VertexColoursAndWeights) {
    const host::ImportedMesh mesh = importText("v 0 0 0 1 0.5 0\nv 1 0 0 1\nv 0 1 0 0 0 1 0.5\nf 1 2 3\n");
    EXPECT_EQ(mesh.colours, (std::vector<float>{1, 0.5F, 0, 1, 1, 1, 1, 1, 0, 0, 1, 0.5F}));
}

TEST(WavefrontFiles, LinesThatGoOnAndLineEndsOfEveryKind) {
    const host::ImportedMesh mesh =
        importText("\xEF\xBB\xBFv 0 0 \\\n0\r\nv 1 \\\r\n 0 0\n\tv 0 1 0\nf 1 2 \\\n 3\\\n");
    EXPECT_EQ(mesh.positions, (std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0}));
    EXPECT_EQ(mesh.corners, (Indices{0, 1, 2}));
}

TEST(WavefrontFiles, DamagedLinesAreRefusedWithTheirNumber) {
    EXPECT_EQ(refusalOf("t.obj", "v 0 0\n"), "t.obj: line 1: a vertex without its 3 numbers");
    EXPECT_EQ(refusalOf("t.obj", "v 0 0 0 1 2\n"),
              "t.obj: line 1: a vertex of other than 3 numbers, with a weight or a colour behind them");
    EXPECT_EQ(refusalOf("t.obj", "v 0 0 0\nf 1 0 1\n"), "t.obj: line 2: an index of 0 names nothing");
    EXPECT_EQ(refusalOf("t.obj", "v 0 0 0\nf 1 -2 1\n"), "t.obj: line 2: an index of -2 names nothing");
    EXPECT_EQ(refusalOf("t.obj", "v 0 0 0\nf 1 x 1\n"), "t.obj: line 2: an index is missing");
    EXPECT_EQ(refusalOf("t.obj", "v 0 0 0\nf 1 1.5 1\n"), "t.obj: line 2: the corner 1.5 is none of a face");
    EXPECT_EQ(refusalOf("t.obj", "v 0 0 0\nf 1 1 2\n"),
              "t.obj: the mesh does not load: face 1 names a vertex that is not there");
    EXPECT_EQ(refusalOf("t.obj", "\xFE\xFFv"), "t.obj: the text is coded as UTF-16; save it as plain text or UTF-8");
}

/// Files of plain triangles go to the library as they are, all others as a mesh of its own format.
TEST(WavefrontFiles, TheLibraryReadsThoseThatItReadsRight) {
    const TempFolder folder;
    const auto isSource = [&folder](const std::string& text) {
        writeFile(folder.file("t.obj"), text);
        return host::readEngineMesh(folder.file("t.obj"), {}).isSource;
    };
    const std::string square = kSquare;
    EXPECT_TRUE(isSource(square + "vt 0 0\nvt 1 0.1\nf 1/1 2/2 3/2\nf 1 3 4\n"));
    EXPECT_TRUE(isSource("v 0.1 0.2 0.3 1 1 1\nv 1 0 0\nv 0 1 0\nf 1/7 2/7 3/7\n"));
    EXPECT_FALSE(isSource(square + "f 1 2 3 4\n"));
    EXPECT_FALSE(isSource(square + "f -4 -3 -2\n"));
    EXPECT_FALSE(isSource("# the v component\n" + square + "f 1 2 3\n"));
    EXPECT_FALSE(isSource("v 1e9 0 0\nv 1000000100 0 0\nv 1e9 100 0\nf 1 2 3\n"));
}

TEST(WavefrontFiles, TheLibraryReadsTheEngineMeshToTheLastBit) {
    const TempFolder folder;
    writeFile(folder.file("t.obj"),
              "v 0.1 1e-40 -0\nv 16777217 0 0\nv 0 3.4e38 0\nv 1 1 1\nvt 0.1 0.7\nvt 1 0\n"
              "f 1/1 2/2 3/1 4/2\nf 1 2 3\n");
    host::EngineMesh engine = host::readEngineMesh(folder.file("t.obj"), {});
    ASSERT_FALSE(engine.isSource);
    host::writeEngineMesh(*engine.loaded.mesh, folder.file("t.obj.bin"));
    EXPECT_TRUE(host::readEngineMesh(folder.file("t.obj.bin"), {}).isSource);
    const auto read = host::readNativeMesh(folder.file("t.obj.bin"));
    ASSERT_EQ(read->numTexels, 2);
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_EQ(std::bit_cast<std::uint32_t>(read->vertices[i]),
                  std::bit_cast<std::uint32_t>(engine.loaded.mesh->vertices[i]));
    }
    for (std::size_t i = 0; i < 9; ++i) {
        EXPECT_EQ(read->vertexIndex[i], engine.loaded.mesh->vertexIndex[i]);
        EXPECT_EQ(read->texelIndex[i], engine.loaded.mesh->texelIndex[i]);
    }
}

}  // namespace
}  // namespace talvek::test
