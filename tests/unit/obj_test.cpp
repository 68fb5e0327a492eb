// Reading OBJ text: records among tokens, numbers, corners, and what is not as it should be.
#include "Vexo_Lib/obj.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "support/comma_locale.h"
#include "support/meshes.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

using Floats = std::vector<float>;
using Ints = std::vector<std::int32_t>;

/// What a mesh holds, as vectors of the lengths that its counts promise.
struct Content {
    Floats vertices;
    Floats texels;
    Ints faces;
    Ints texelIndex;
};

Content read(std::string_view text) {
    const TempFolder folder;
    writeFile(folder.file("a.obj"), text);
    const std::unique_ptr<Object3D> mesh = ReadObjFile(folder.file("a.obj").c_str(), true);
    EXPECT_NE(mesh, nullptr);
    if (mesh == nullptr) {
        return {};
    }
    const auto vector = [](const auto& array, std::int32_t count) {
        return std::vector(array.get(), array.get() + count);
    };
    return {vector(mesh->vertices, 3 * mesh->numVertices), vector(mesh->texels, 2 * mesh->numTexels),
            vector(mesh->vertexIndex, 3 * mesh->numFaces), vector(mesh->texelIndex, 3 * mesh->numFaces)};
}

TEST(ObjReader, ReadsATriangle) {
    const Content mesh = read("v 0 0 0\nv 1 0 0\nv 0 1 0.5\nvt 0 0\nvt 1 0\nvt 0 1\nf 1/1 2/2 3/3\n");
    EXPECT_EQ(mesh.vertices, (Floats{0, 0, 0, 1, 0, 0, 0, 1, 0.5F}));
    EXPECT_EQ(mesh.texels, (Floats{0, 0, 1, 0, 0, 1}));
    EXPECT_EQ(mesh.faces, (Ints{0, 1, 2}));
    EXPECT_EQ(mesh.texelIndex, (Ints{0, 1, 2}));
}

TEST(ObjReader, LeavesTheRestOfTheRecordAsItWasBuilt) {
    const TempFolder folder;
    writeFile(folder.file("a.obj"), "v 0 0 0\nvn 0 0 1\n");
    const std::unique_ptr<Object3D> mesh = ReadObjFile(folder.file("a.obj").c_str(), false);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->vertexNormals, nullptr);
    EXPECT_EQ(mesh->faceNormals, nullptr);
    EXPECT_EQ(mesh->faceColours, nullptr);
    EXPECT_EQ(nameOf(*mesh), "");
    EXPECT_EQ(mesh->flag, 1);
}

TEST(ObjReader, AlwaysMakesItsFourArrays) {
    const TempFolder folder;
    writeFile(folder.file("a.obj"), "");
    const std::unique_ptr<Object3D> mesh = ReadObjFile(folder.file("a.obj").c_str(), true);
    ASSERT_NE(mesh, nullptr);
    EXPECT_NE(mesh->vertices, nullptr);
    EXPECT_NE(mesh->texels, nullptr);
    EXPECT_NE(mesh->vertexIndex, nullptr);
    EXPECT_NE(mesh->texelIndex, nullptr);
    EXPECT_NE(mesh->texelIndex.get(), mesh->vertexIndex.get());
}

TEST(ObjReader, ReadsVerticesWithoutFaces) {
    const Content mesh = read("v 1 2 3\nv 4 5 6\n");
    EXPECT_EQ(mesh.vertices.size(), 6);
    EXPECT_TRUE(mesh.faces.empty());
    EXPECT_TRUE(mesh.texels.empty());
}

TEST(ObjReader, FindsNoFile) {
    const TempFolder folder;
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(ReadObjFile(folder.file("absent.obj").c_str(), true), nullptr);
    EXPECT_EQ(ReadObjFile(folder.path().c_str(), true), nullptr);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(ObjReader, KeepsTheFirstTriangleOfAPolygon) {
    EXPECT_EQ(read("f 1 2 3 4\n").faces, (Ints{0, 1, 2}));
    EXPECT_EQ(read("f 1 2 3 4 5 6 7 f 8 9 10").faces, (Ints{0, 1, 2, 7, 8, 9}));
}

TEST(ObjReader, ReadsEveryFormOfACorner) {
    const Content mesh = read("f 7/3/9 8//2 9/4\nf 1 2/ 3//\n");
    EXPECT_EQ(mesh.faces, (Ints{6, 7, 8, 0, 1, 2}));
    EXPECT_EQ(mesh.texelIndex, (Ints{2, -1, 3, -1, -1, -1}));
}

TEST(ObjReader, ReadsCornersAsAtoiDoes) {
    const Content mesh = read("f 1x/2y +2/+3 /4 f x/y 0/0 3.7/4.9");
    EXPECT_EQ(mesh.faces, (Ints{0, 1, -1, -1, -1, 2}));
    EXPECT_EQ(mesh.texelIndex, (Ints{1, 2, 3, -1, -1, 3}));
}

TEST(ObjReader, NegativeCornersComeOutAsNegativeNumbersMinusOne) {
    const Content mesh = read("f -1/-2 -3 -4//-5");
    EXPECT_EQ(mesh.faces, (Ints{-2, -4, -5}));
    EXPECT_EQ(mesh.texelIndex, (Ints{-3, -1, -1}));
}

TEST(ObjReader, HugeCornersAreTheNearestInt) {
    constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
    const Content mesh = read("f 2147483647 2147483648 99999999999999999999 f -2147483648 -2147483647 -99999999999999");
    EXPECT_EQ(mesh.faces,
              (Ints{kLargest - 1, kLargest - 1, kLargest - 1, -kLargest - 1, -kLargest - 1, -kLargest - 1}));
}

TEST(ObjReader, GivesLineEndsNoMeaning) {
    EXPECT_EQ(read("v\n1\n2\n3 v 4 5 6 f 1\n2 3").vertices, (Floats{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(read("v 1 2 3\rv 4 5 6\r\nf 1 2 1").faces, (Ints{0, 1, 0}));
}

TEST(ObjReader, ReadsRecordsInComments) {
    EXPECT_EQ(read("# the v component\nv 1 2 3\n").vertices, (Floats{0, 0, 0, 1, 2, 3}));
    EXPECT_EQ(read("# f 1 2 3\n").faces, (Ints{0, 1, 2}));
}

TEST(ObjReader, PassesOverOtherTokens) {
    const Content mesh =
        read("mtllib a.mtl\no v1\ng V F vtx\nvn 0 0 1\nvp 1\ns 1\nusemtl vt2\nl 1 2\n#v 1 2 3\n-v f1 v/1");
    EXPECT_TRUE(mesh.vertices.empty());
    EXPECT_TRUE(mesh.texels.empty());
    EXPECT_TRUE(mesh.faces.empty());
}

TEST(ObjReader, DropsFurtherNumbersOfARecord) {
    EXPECT_EQ(read("v 1 2 3 0.5 0.6 0.7\nv 4 5 6 1.0").vertices, (Floats{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(read("vt 0.1 0.2 0.3\nvt 0.4 0.5").texels, (Floats{0.1F, 0.2F, 0.4F, 0.5F}));
}

TEST(ObjReader, AMissingNumberIsTheOneItsKindHadLast) {
    EXPECT_EQ(read("v 1 2 word").vertices, (Floats{1, 2, 0}));
    EXPECT_EQ(read("v 7 8 9\nvt 0.5 0.25\nv 1 2 word\nv word").vertices, (Floats{7, 8, 9, 1, 2, 9, 1, 2, 9}));
    EXPECT_EQ(read("vt 0.5 0.25 vt x vt 1 x").texels, (Floats{0.5F, 0.25F, 0.5F, 0.25F, 1, 0.25F}));
}

TEST(ObjReader, ARecordThatIsTooShortLeavesTheNextOneWhole) {
    EXPECT_EQ(read("v 1 2\nv 4 5 6\n").vertices, (Floats{1, 2, 0, 4, 5, 6}));
    EXPECT_EQ(read("vt 1\nvt 2 3\n").texels, (Floats{1, 0, 2, 3}));
}

TEST(ObjReader, WhatFollowsANumberDirectlyIsTheNextToken) {
    EXPECT_EQ(read("v 1 2 3v 4 5 6").vertices, (Floats{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(read("v 1.5.25.5").vertices, (Floats{1.5F, 0.25F, 0.5F}));
    EXPECT_EQ(read("v 1,2,3").vertices, (Floats{1, 0, 0}));
}

TEST(ObjReader, ARecordAtTheEndOfTheFileTakesWhatThereIs) {
    EXPECT_EQ(read("v 7 8 9 v 1").vertices, (Floats{7, 8, 9, 1, 8, 9}));
    EXPECT_EQ(read("v").vertices, (Floats{0, 0, 0}));
    EXPECT_EQ(read("v 1 2 3 vt").texels, (Floats{0, 0}));
}

TEST(ObjReader, AFaceCutByTheEndOfTheFileIsNone) {
    EXPECT_EQ(read("f 1 2 3\nf 4 5").faces, (Ints{0, 1, 2}));
    EXPECT_TRUE(read("f 1").faces.empty());
    EXPECT_TRUE(read("f").faces.empty());
}

TEST(ObjReader, AFaceThatIsTooShortTakesTheTokensThatFollow) {
    const Content mesh = read("f 1 2\nv 1 2 3\nf 4 5 6");
    EXPECT_EQ(mesh.faces, (Ints{0, 1, -1, 3, 4, 5}));
    EXPECT_TRUE(mesh.vertices.empty());
}

TEST(ObjReader, ReadsNumbersAsStrtofDoes) {
    const Content mesh = read("v 1e3 -.5e-2 +4. v inf -nan 0x1.8p1 v 1e39 1e-46 1.00000017881393432617187499");
    EXPECT_EQ(mesh.vertices[0], 1000);
    EXPECT_EQ(mesh.vertices[1], -0.005F);
    EXPECT_EQ(mesh.vertices[2], 4);
    EXPECT_EQ(mesh.vertices[3], std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(mesh.vertices[4]));
    EXPECT_EQ(mesh.vertices[5], 3);
    EXPECT_EQ(mesh.vertices[6], std::numeric_limits<float>::infinity());
    EXPECT_EQ(mesh.vertices[7], 0);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(mesh.vertices[8]), 0x3f800001U) << "rounded once";
}

TEST(ObjReader, ReadsThePointInALocaleWithACommaThere) {
    const CommaLocale locale;
    if (!locale.isSet()) {
        GTEST_SKIP() << "this system has no locale with a decimal comma";
    }
    EXPECT_EQ(read("v 1.5 2.5 3.5").vertices, (Floats{1.5F, 2.5F, 3.5F}));
}

TEST(ObjReader, ReadsTokensOfAnyLength) {
    const std::string name(300000, 'g');
    EXPECT_EQ(read("o " + name + "\nv 1 2 3\n").vertices, (Floats{1, 2, 3}));
    EXPECT_EQ(read("f 1/" + std::string(255 - 2, '0') + "2 2 3").texelIndex[0], 0 + 1);
}

TEST(ObjReader, ReadsTheSameWhereverThePiecesOfTheFileEnd) {
    const std::string record = "v 1.25 -2.5 3.75\nvt 0.5 0.25\nf 1/1 1/1 1/1\n";
    for (std::size_t shift = 0; shift < record.size(); ++shift) {
        const Content mesh = read("#" + std::string(262144 - 1 - shift, ' ') + record);
        ASSERT_EQ(mesh.vertices, (Floats{1.25F, -2.5F, 3.75F})) << shift;
        ASSERT_EQ(mesh.texels, (Floats{0.5F, 0.25F})) << shift;
        ASSERT_EQ(mesh.faces, (Ints{0, 0, 0})) << shift;
    }
}

TEST(ObjReader, KeepsTheOrderOfALargeFile) {
    const std::unique_ptr<Object3D> plane = makePlane(150);
    const Content mesh = read(objText(*plane));
    EXPECT_TRUE(std::ranges::equal(mesh.vertices, plane->vertexSpan()));
    EXPECT_TRUE(std::ranges::equal(mesh.faces, plane->faceSpan()));
}

}  // namespace
}  // namespace talvek::test
