// STL files, told apart by what is in them.
#include "talvek/formats/stl.h"

#include <cstring>

#include "formats/imports.h"
#include "support/meshes.h"
#include "talvek/formats/mesh_file.h"

namespace talvek::test {
namespace {

constexpr const char* kTwoFacets =
    "solid a stone\n facet normal 0 0 1\n  outer loop\n   vertex 0 0 0\n   vertex 0.1 0 0\n   vertex 0 1e0 -0\n"
    "  endloop\n endfacet\n FACET NORMAL 0 0 1\n  OUTER LOOP\n   VERTEX 0.1 0 0\n   VERTEX 2 2 0\n   VERTEX 0 1 0\n"
    "  ENDLOOP\n ENDFACET\nendsolid a stone\n";

/// A binary file of triangles that all are the one of the vertices (0 0 0), (1 0 0), (0 1 0).
std::string binary(const std::string& title, std::uint32_t promised, std::uint32_t present) {
    std::string bytes = title + std::string(80 - title.size(), '\0');
    for (int shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>(promised >> shift & 0xFF);
    }
    const float triangle[12] = {0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0};
    for (std::uint32_t i = 0; i < present; ++i) {
        bytes.append(reinterpret_cast<const char*>(triangle), sizeof triangle);
        bytes.append(2, '\0');
    }
    return bytes;
}

TEST(StlFiles, CornersOfEqualCoordinatesAreOneVertex) {
    const host::ImportedMesh mesh = importBytes("t.stl", kTwoFacets);
    EXPECT_EQ(mesh.positions, (std::vector<double>{0, 0, 0, 0.1, 0, 0, 0, 1, 0, 2, 2, 0}));
    EXPECT_EQ(mesh.corners, (std::vector<std::int32_t>{0, 1, 2, 1, 3, 2}));
    EXPECT_EQ(mesh.counts.joinedVertices, 2);
}

TEST(StlFiles, BytesWhoseTitleBeginsAsTextAreBytes) {
    const host::ImportedMesh mesh = importBytes("t.stl", binary("solid as it looks\nfacet", 2, 2));
    EXPECT_EQ(mesh.numVertices(), 3);
    EXPECT_EQ(mesh.corners, (std::vector<std::int32_t>{0, 1, 2, 0, 1, 2}));
    EXPECT_EQ(importBytes("t.stl", binary("", 1, 1)).numTriangles(), 1);
}

TEST(StlFiles, CutOnesAreRefused) {
    EXPECT_EQ(refusalOf("t.stl", binary("x", 3, 2)),
              "t.stl: byte 84: the file is too short for the 3 triangles of its head");
    EXPECT_EQ(refusalOf("t.stl", "x"),
              "t.stl: byte 0: the file ends within the head of a binary STL file, which has 84 bytes");
    const std::string text = kTwoFacets;
    EXPECT_EQ(refusalOf("t.stl", text.substr(0, 60)), "t.stl: line 4: a vertex without its 3 numbers");
    EXPECT_EQ(refusalOf("t.stl", text.substr(0, text.find("endfacet"))), "t.stl: line 8: the file ends within a facet");
}

TEST(StlFiles, WordsOfOtherFilesAreRefusedWithTheirLine) {
    EXPECT_EQ(refusalOf("t.stl", "solid\nfacet\nvertex 0 0 0 0\n"), "t.stl: line 3: a vertex with more than 3 numbers");
    EXPECT_EQ(refusalOf("t.stl", "solid\nvertices 3\n").substr(0, 5), "t.stl");
    EXPECT_EQ(refusalOf("t.stl", "solid\nfacet\nfacet\n"), "t.stl: line 3: a facet within another one");
    EXPECT_EQ(refusalOf("t.stl", "solid\nfacet\nvertex 0 0 0\nendfacet\n"), "t.stl: line 4: a facet of 1 corners");
}

TEST(StlFiles, WrittenOnesAreReadBackWithTheSameSurface) {
    const TempFolder folder;
    const auto sphere = makeSphere(7, 3);
    sphere->updateNormals(true);
    ASSERT_TRUE(host::writeStl(*sphere, folder.file("s.stl")));
    const host::LoadedMesh read = host::loadMesh(folder.file("s.stl"), {});
    ASSERT_EQ(read.mesh->numVertices, sphere->numVertices);
    ASSERT_EQ(read.mesh->numFaces, sphere->numFaces);
    // The vertices come in the order in which the faces name them.
    for (std::size_t i = 0; i < sphere->faceSpan().size(); ++i) {
        const auto ours = static_cast<std::size_t>(sphere->vertexIndex[i]);
        const auto theirs = static_cast<std::size_t>(read.mesh->vertexIndex[i]);
        EXPECT_EQ(std::memcmp(&sphere->vertices[3 * ours], &read.mesh->vertices[3 * theirs], 3 * sizeof(float)), 0);
    }
}

}  // namespace
}  // namespace talvek::test
