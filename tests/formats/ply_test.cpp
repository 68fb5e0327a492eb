// PLY files as scanners and modellers write them.
#include <bit>
#include <cstring>

#include "formats/imports.h"

namespace talvek::test {
namespace {

using Values = std::vector<double>;
using Indices = std::vector<std::int32_t>;

std::string header(const std::string& format, const std::string& properties) {
    return "ply\nformat " + format + " 1.0\n" + properties + "end_header\n";
}

constexpr const char* kPositions = "property double x\nproperty double y\nproperty double z\n";
constexpr const char* kFaces = "property list uchar int vertex_indices\n";

std::string text(const std::string& vertices, const std::string& faces, const std::string& rows) {
    return header("ascii", "element vertex " + vertices + "element face " + faces) + rows;
}

template <typename T>
std::string bytesOf(T value, bool isBig) {
    char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof bytes);
    std::string all(bytes, sizeof bytes);
    return isBig ? std::string(all.rbegin(), all.rend()) : all;
}

std::string triangleInBytes(bool isBig) {
    std::string bytes = header(isBig ? "binary_big_endian" : "binary_little_endian",
                               std::string("element vertex 3\nproperty short mark\n") + kPositions +
                                   "property list ushort float spare\nproperty uchar red\nproperty uchar green\n"
                                   "property uchar blue\nelement face 1\nproperty list int ushort vertex_index\n");
    for (int v = 0; v < 3; ++v) {
        bytes += bytesOf(std::int16_t{-7}, isBig);
        for (const double coordinate : {500000.125 + v, v == 1 ? 1e-300 : 0.1, v == 2 ? -1.0 : 0.0}) {
            bytes += bytesOf(coordinate, isBig);
        }
        bytes += bytesOf(static_cast<std::uint16_t>(v), isBig);
        for (int i = 0; i < v; ++i) {
            bytes += bytesOf(1.5F, isBig);
        }
        bytes += std::string("\xFF\x00\x33", 3);
    }
    bytes += bytesOf(std::int32_t{3}, isBig);
    for (const std::uint16_t corner : std::initializer_list<std::uint16_t>{2, 0, 1}) {
        bytes += bytesOf(corner, isBig);
    }
    return bytes;
}

TEST(PlyFiles, BothByteOrdersGiveTheSameDoublesAndColours) {
    for (const bool isBig : {false, true}) {
        const host::ImportedMesh mesh = importBytes("t.ply", triangleInBytes(isBig));
        EXPECT_EQ(mesh.positions, (Values{500000.125, 0.1, 0, 500001.125, 1e-300, 0, 500002.125, 0.1, -1}));
        EXPECT_EQ(mesh.corners, (Indices{2, 0, 1}));
        ASSERT_EQ(mesh.colours.size(), 12);
        EXPECT_EQ(mesh.colours[4], 1.0F);
        EXPECT_EQ(mesh.colours[5], 0.0F);
        EXPECT_EQ(mesh.colours[6], 0.2F);
        EXPECT_EQ(mesh.colours[7], 1.0F);
    }
}

TEST(PlyFiles, TextureCoordinatesByVertex) {
    const host::ImportedMesh mesh =
        importBytes("t.ply", text(std::string("3\n") + kPositions + "property float s\nproperty float t\n",
                                  std::string("1\n") + kFaces, "0 0 0 0.25 0.5\n1 0 0 1 0\n0 1 0 0 1\n3 0 1 2\n"));
    EXPECT_EQ(mesh.texels, (std::vector<float>{0.25F, 0.5F, 1, 0, 0, 1}));
    EXPECT_EQ(mesh.cornerTexels, mesh.corners);
}

TEST(PlyFiles, TextureCoordinatesAndPicturesByFace) {
    const host::ImportedMesh mesh = importBytes(
        "t.ply", header("ascii", std::string("comment TextureFile a.png\ncomment TextureFile the wall.jpg\n") +
                                     "element vertex 4\n" + kPositions + "element face 2\n" + kFaces +
                                     "property list uchar float texcoord\nproperty int texnumber\n") +
                     "0 0 0\n1 0 0\n1 1 0\n0 1 0\n3 0 1 2 6 0 0 1 0 1 1 1\n3 0 2 3 6 0 0 1 1 0 1 0\n");
    EXPECT_EQ(mesh.numTriangles(), 2);
    EXPECT_EQ(mesh.cornerTexels, (Indices{0, 1, 2, 3, 4, 5}));
    ASSERT_EQ(mesh.materials.size(), 2);
    EXPECT_EQ(mesh.materials[1].textureFile, "the wall.jpg");
    EXPECT_EQ(mesh.triangleMaterials, (Indices{1, 0}));
}

TEST(PlyFiles, PolygonsBecomeTriangles) {
    const host::ImportedMesh mesh =
        importBytes("t.ply", text(std::string("5\n") + kPositions, std::string("2\n") + kFaces,
                                  "0 0 0\n4 0 0\n4 4 0\n2 1 0\n0 4 0\n5 0 1 2 3 4\n2 0 1\n"));
    EXPECT_EQ(mesh.numTriangles(), 3);
    ASSERT_EQ(mesh.polygons.size(), 1);
    EXPECT_EQ(mesh.polygons[0].numCorners, 5);
    EXPECT_EQ(mesh.counts.leftOut, 1);
    EXPECT_EQ(mesh.counts.crossingPolygons, 0);
}

/// Some programs write rows that do not fit the head they wrote.
TEST(PlyFiles, RowsThatDoNotFitTheHeadAreRefusedWithTheirLine) {
    const std::string vertices = std::string("3\n") + kPositions;
    const std::string faces = std::string("1\n") + kFaces;
    EXPECT_EQ(refusalOf("t.ply", text(vertices, faces, "0 0 0\n1 0 0 9\n0 1 0\n3 0 1 2\n")),
              "t.ply: line 11: the line has more numbers than the head gives the properties of element vertex; the two "
              "do not fit, and what the numbers mean is not certain");
    EXPECT_EQ(refusalOf("t.ply", text(vertices, faces, "0 0 0\n1 0\n0 1 0\n3 0 1 2\n")),
              "t.ply: line 11: the line has fewer numbers than the head gives its element properties");
    EXPECT_EQ(refusalOf("t.ply", text(vertices, faces, "0 0 0\n1 0 0\n0 1 0\n3 0 1 2 7\n")).substr(0, 14),
              "t.ply: line 13");
    EXPECT_EQ(refusalOf("t.ply", text(vertices, faces, "0 0 0\n1 0 0\n0 1 x\n3 0 1 2\n")),
              "t.ply: line 12: a number is missing");
    EXPECT_EQ(refusalOf("t.ply", text(vertices, faces, "0 0 0\n1 0 0\n0 1 0\n")),
              "t.ply: line 12: the file is too short for 1 of element face");
}

TEST(PlyFiles, WhatNobodyUsesIsPassedOverByItsType) {
    const host::ImportedMesh mesh = importBytes(
        "t.ply", header("ascii", std::string("element camera 2\nproperty list uint double where\nproperty int id\n") +
                                     "element empty 4000000000\nelement vertex 3\nproperty float nx\n" + kPositions +
                                     "element face 1\nproperty uchar red\n" + kFaces) +
                     "2 0.5 0.5 1\n0 2\n9 0 0 0\n9 1 0 0\n9 0 1 0\n255 3 0 1 2\n");
    EXPECT_EQ(mesh.numVertices(), 3);
    EXPECT_EQ(mesh.corners, (Indices{0, 1, 2}));
}

TEST(PlyFiles, PromisesBeyondTheFileAreRefused) {
    EXPECT_EQ(refusalOf("t.ply", text(std::string("4000000000\n") + kPositions, std::string("1\n") + kFaces, "")),
              "t.ply: line 9: the file is too short for 4000000000 of element vertex");
    const std::string list =
        header("binary_little_endian", std::string("element vertex 0\n") + kPositions +
                                           "element face 1\nproperty list uint int vertex_indices\n");
    EXPECT_NE(refusalOf("t.ply", list + "\xFF\xFF\xFF\x7F").find("too short for a list of vertex_indices"),
              std::string::npos);
    const std::string long32(4 * 200000, '\0');
    EXPECT_NE(refusalOf("t.ply", list + std::string("\x40\x0D\x03\x00", 4) + long32).find("has 200000 values"),
              std::string::npos);
}

TEST(PlyFiles, OtherFilesAreTold) {
    EXPECT_EQ(refusalOf("t.ply", ""), "t.ply: line 0: this is no PLY file");
    EXPECT_EQ(refusalOf("t.ply", "ply\nformat ascii 1.0\n"), "t.ply: line 2: the file ends within its head");
    EXPECT_EQ(refusalOf("t.ply", header("utf16", "")),
              "t.ply: line 2: the format utf16 is not read; text and binary are");
    EXPECT_EQ(refusalOf("t.ply", text(std::string("3\n") + kPositions, std::string("1\n") + kFaces,
                                      "0 0 0\n1 0 0\n0 1 0\n3 0 1 7\n")),
              "t.ply: the mesh does not load: face 1 names a vertex that is not there");
}

}  // namespace
}  // namespace talvek::test
