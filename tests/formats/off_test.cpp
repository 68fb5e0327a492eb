// OFF files.
#include "formats/imports.h"

namespace talvek::test {
namespace {

TEST(OffFiles, PolygonsCommentsAndFaceColours) {
    const host::ImportedMesh mesh = importBytes(
        "t.off",
        "OFF # made by hand\n\n5 2 0\n0 0 0\n1 0 0\n1 1 0 # a corner\n0 1 0\n2 2 0\n4 0 1 2 3 255 0 0\n3 1 4 2\n");
    EXPECT_EQ(mesh.numVertices(), 5);
    EXPECT_EQ(mesh.corners, (std::vector<std::int32_t>{0, 1, 2, 0, 2, 3, 1, 4, 2}));
    EXPECT_EQ(mesh.polygons.size(), 1);
}

TEST(OffFiles, CountsBesideTheKeyword) {
    EXPECT_EQ(importBytes("t.off", "OFF 3 1 3\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n").numTriangles(), 1);
}

TEST(OffFiles, ColoursAndTextureCoordinates) {
    const host::ImportedMesh bytes =
        importBytes("t.off", "COFF\n3 1 0\n0 0 0 255 0 51 255\n1 0 0 0 0 0 0\n0 1 0 1 2 3 4\n3 0 1 2\n");
    EXPECT_EQ(bytes.colours[2], 0.2F);
    EXPECT_EQ(bytes.colours[7], 0.0F);
    const host::ImportedMesh texture =
        importBytes("t.off", "STOFF\n3 1 0\n0 0 0 0.5 1\n1 0 0 0 0\n0 1 0 1 0\n3 0 1 2\n");
    EXPECT_EQ(texture.texels, (std::vector<float>{0.5F, 1, 0, 0, 1, 0}));
    EXPECT_EQ(texture.cornerTexels, texture.corners);
}

TEST(OffFiles, RowsThatDoNotFitAreRefusedWithTheirLine) {
    EXPECT_EQ(refusalOf("t.off", "OFF\n3 1 0\n0 0 0\n1 0 0 7\n0 1 0\n3 0 1 2\n"),
              "t.off: line 4: the line has more numbers than a vertex of this file");
    EXPECT_EQ(refusalOf("t.off", "OFF\n3 1 0\n0 0 0\n1 0\n0 1 0\n3 0 1 2\n"),
              "t.off: line 4: the line has fewer numbers than a vertex of this file");
    EXPECT_EQ(refusalOf("t.off", "OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1\n"),
              "t.off: line 6: the line has fewer vertices than it says");
    EXPECT_EQ(refusalOf("t.off", "OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2 1 2 3 4 5\n"),
              "t.off: line 6: the line has more numbers than its corners and a colour");
    EXPECT_EQ(refusalOf("t.off", "OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 3\n"),
              "t.off: the mesh does not load: face 1 names a vertex that is not there");
    EXPECT_EQ(refusalOf("t.off", "OFF BINARY\n"), "t.off: line 1: this is no OFF file in text; others are not read");
    EXPECT_EQ(refusalOf("t.off", "OFF\n999999999 1 0\n"),
              "t.off: line 2: the file is too short for what its counts promise");
}

}  // namespace
}  // namespace talvek::test
