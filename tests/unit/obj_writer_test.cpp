// The texts of the two OBJ writers, to the letter.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "Vexo_Lib/obj.h"
#include "support/comma_locale.h"
#include "support/meshes.h"
#include "support/plain_obj.h"
#include "support/random_numbers.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

class ObjWriter : public ::testing::Test {
  protected:
    std::string plain(const Object3D& mesh) {
        EXPECT_TRUE(WriteObjFile(mesh, path_.c_str()));
        return readText(path_);
    }
    std::string withNormals(const Object3D& mesh) {
        EXPECT_TRUE(WriteObjFileWithNormals(mesh, path_.c_str()));
        return readText(path_);
    }

    TempFolder folder_;
    std::string path_ = folder_.file("a.obj");
};

TEST_F(ObjWriter, PlainTextHasItsCountsBehind) {
    const auto mesh = makeMesh({0, 1.5F, -2.123456F, 1.0F / 3, 1000, -0.0F}, {0, 1, 0});
    EXPECT_EQ(plain(*mesh),
              "v 0.00000 1.50000 -2.12346\n"
              "v 0.33333 1000.00000 -0.00000\n"
              "# 2 vertices\n"
              "f 1 2 1\n"
              "# 1 triangles\n");
}

TEST_F(ObjWriter, PlainTextOfNothing) {
    EXPECT_EQ(plain(Object3D()), "# 0 vertices\n# 0 triangles\n");
}

TEST_F(ObjWriter, TextWithNormalsHasItsCountsBefore) {
    const auto mesh = makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2});
    mesh->updateNormals(true);
    EXPECT_EQ(withNormals(*mesh),
              "#\n# Obj file created by QN Lib\n#\n"
              "# 3 vertices\n# 3 normals\n"
              "v 0.000000 0.000000 0.000000\nvn 0.000000 0.000000 1.000000\n"
              "v 1.000000 0.000000 0.000000\nvn 0.000000 0.000000 1.000000\n"
              "v 0.000000 1.000000 0.000000\nvn 0.000000 0.000000 1.000000\n"
              "# 1 triangles\n"
              "f 1 2 3\n");
}

TEST_F(ObjWriter, WithoutNormalsThereIsNoWordOfThem) {
    EXPECT_EQ(
        withNormals(*makeMesh({1, 2, 3}, {0, 0, 0})),
        "#\n# Obj file created by QN Lib\n#\n# 1 vertices\nv 1.000000 2.000000 3.000000\n# 1 triangles\nf 1 1 1\n");
}

TEST_F(ObjWriter, AnEmptyMeshHasNoNormalsUnlessItsArrayExists) {
    Object3D mesh;
    EXPECT_EQ(withNormals(mesh), "#\n# Obj file created by QN Lib\n#\n# 0 vertices\n# 0 triangles\n");
    mesh.updateNormals(true);
    EXPECT_EQ(withNormals(mesh), "#\n# Obj file created by QN Lib\n#\n# 0 vertices\n# 0 normals\n# 0 triangles\n");
}

TEST_F(ObjWriter, WritesNeitherTexelsNorColours) {
    const auto mesh = makeMesh({1, 2, 3}, {0, 0, 0});
    const std::string bare = plain(*mesh);
    mesh->numTexels = 1;
    mesh->texels = makeFilledArray(2, 0.5F);
    mesh->texelIndex = makeFilledArray<std::int32_t>(3, 0);
    mesh->vertexColours = makeFilledArray(3, 0.5F);
    EXPECT_EQ(plain(*mesh), bare);
    EXPECT_EQ(withNormals(*mesh).find("vt"), std::string::npos);
}

TEST_F(ObjWriter, WritesWhatIsNotFinite) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::copysign(std::numeric_limits<float>::quiet_NaN(), -1.0F);
    EXPECT_EQ(plain(*makeMesh({inf, -inf, nan}, {})), "v inf -inf -nan\n# 1 vertices\n# 0 triangles\n");
}

TEST_F(ObjWriter, WritesTheLargestNumbers) {
    const float most = std::numeric_limits<float>::max();
    const std::string digits = "340282346638528859811704183484516925440";
    EXPECT_EQ(plain(*makeMesh({most, -most, 0}, {})),
              "v " + digits + ".00000 -" + digits + ".00000 0.00000\n# 1 vertices\n# 0 triangles\n");
    EXPECT_NE(
        withNormals(*makeMesh({most, -most, 0}, {})).find("v " + digits + ".000000 -" + digits + ".000000 0.000000"),
        std::string::npos);
}

TEST_F(ObjWriter, WritesIndicesAtTheLimits) {
    EXPECT_EQ(plain(*makeMesh({}, {2147483647, -1, -2147483647 - 1})),
              "# 0 vertices\nf 2147483648 0 -2147483647\n# 1 triangles\n");
}

TEST_F(ObjWriter, RoundsAsPrintfDoes) {
    EXPECT_EQ(withNormals(*makeMesh({1.0F / 128, 3.0F / 128, -1.0F / 128}, {})).find("v 0.007812 0.023438 -0.007812"),
              std::string("#\n# Obj file created by QN Lib\n#\n# 1 vertices\n").size());
    EXPECT_EQ(plain(*makeMesh({1.0F / 64, 3.0F / 64, 0}, {})).substr(0, 26), "v 0.01562 0.04688 0.00000\n");
}

TEST_F(ObjWriter, WritesThePointInALocaleWithACommaThere) {
    const CommaLocale locale;
    if (!locale.isSet()) {
        GTEST_SKIP() << "this system has no locale with a decimal comma";
    }
    EXPECT_EQ(plain(*makeMesh({0.5F, 1.5F, 2.5F}, {})).substr(0, 26), "v 0.50000 1.50000 2.50000\n");
}

TEST_F(ObjWriter, EndsLinesAsThePlatformDoes) {
    plain(*makeMesh({0, 0, 0}, {}));
    const std::string end(system::kLineEnd);
    EXPECT_EQ(readFile(path_), "v 0.00000 0.00000 0.00000" + end + "# 1 vertices" + end + "# 0 triangles" + end);
}

TEST_F(ObjWriter, WhatIsReadBackIsTheSameMesh) {
    const auto sphere = makeSphere(25, 3);
    sphere->updateNormals(true);
    const std::string text = withNormals(*sphere);
    const std::unique_ptr<Object3D> mesh = ReadObjFile(path_.c_str(), true);
    ASSERT_NE(mesh, nullptr);
    EXPECT_TRUE(std::ranges::equal(mesh->faceSpan(), sphere->faceSpan()));
    mesh->vertexNormals = copyArray(sphere->vertexNormals.get(), 3 * std::int64_t{sphere->numVertices});
    EXPECT_EQ(withNormals(*mesh), text);
}

TEST_F(ObjWriter, WritesWhatPrintfGivesForAnyMesh) {
    RandomNumbers numbers;
    for (const float largest : {0.001F, 1.0F, 150.0F, 20000.0F, 1.0e12F}) {
        Object3D mesh;
        mesh.numVertices = 4000;
        mesh.numFaces = 5000;
        mesh.vertices = makeArray<float>(12000);
        mesh.vertexNormals = makeArray<float>(12000);
        mesh.vertexIndex = makeArray<std::int32_t>(15000);
        for (std::size_t i = 0; i < 12000; ++i) {
            mesh.vertices[i] = numbers.coordinate(largest);
            mesh.vertexNormals[i] = numbers.coordinate(1);
        }
        for (std::size_t i = 0; i < 15000; ++i) {
            mesh.vertexIndex[i] = static_cast<std::int32_t>(numbers.below(1U << 30) >> numbers.below(30));
        }
        EXPECT_EQ(withNormals(mesh), writeObjPlainly(mesh)) << largest;
        mesh.vertexNormals.reset();
        EXPECT_EQ(withNormals(mesh), writeObjPlainly(mesh)) << largest;
    }
}

TEST_F(ObjWriter, WritesWhatPrintfGivesForAnyNumberOfLines) {
    RandomNumbers numbers;
    for (std::int32_t count = 1; count < 19; ++count) {
        Object3D mesh;
        mesh.numVertices = count;
        mesh.numFaces = count + 1;
        mesh.vertices = makeFilledArray(3 * std::int64_t{count}, numbers.coordinate(200));
        mesh.vertexNormals = makeFilledArray(3 * std::int64_t{count}, numbers.coordinate(1));
        mesh.vertexIndex = makeArray<std::int32_t>(3 * (std::int64_t{count} + 1));
        for (std::size_t i = 0; i < mesh.faceSpan().size(); ++i) {
            mesh.vertexIndex[i] = static_cast<std::int32_t>(1000 + numbers.below(4000000));
        }
        mesh.vertexSpan().back() = numbers.coordinate(4000);
        EXPECT_EQ(withNormals(mesh), writeObjPlainly(mesh)) << count;
        mesh.vertexNormals.reset();
        EXPECT_EQ(withNormals(mesh), writeObjPlainly(mesh)) << count;
    }
}

TEST_F(ObjWriter, WritesWhatPrintfGivesAroundANumberThatIsUnlikeTheOthers) {
    for (const float odd : {-4096.0F, 1.0e10F, std::nextafter(1.0F, 0.0F)}) {
        for (std::size_t at = 0; at < 36; ++at) {
            Object3D mesh;
            mesh.numVertices = 12;
            mesh.numFaces = 12;
            mesh.vertices = makeFilledArray(36, -1.5F);
            mesh.vertexNormals = makeFilledArray(36, 0.25F);
            mesh.vertexIndex = makeFilledArray<std::int32_t>(36, 123456);
            (at % 2 == 0 ? mesh.vertices : mesh.vertexNormals)[at] = odd;
            mesh.vertexIndex[at] = odd < 0 ? 7 : 987654321;
            ASSERT_EQ(withNormals(mesh), writeObjPlainly(mesh)) << odd << " at " << at;
        }
    }
}

TEST_F(ObjWriter, WritesSeveralFilesAtOnce) {
    const auto sphere = makeSphere(25, 3);
    sphere->updateNormals(true);
    const std::string text = withNormals(*sphere);
    const std::vector<std::string> paths = {folder_.file("b.obj"), folder_.file("c.obj"), folder_.file("b.obj")};
    EXPECT_TRUE(writeObjFilesWithNormals(*sphere, paths));
    EXPECT_EQ(folder_.listing(), "a.obj b.obj c.obj");
    EXPECT_EQ(readText(paths[0]), text);
    EXPECT_EQ(readText(paths[1]), text);
    const std::vector<std::string> oneAbsent = {folder_.file("absent/d.obj"), folder_.file("d.obj")};
    EXPECT_FALSE(writeObjFilesWithNormals(*sphere, oneAbsent));
    EXPECT_EQ(readText(oneAbsent[1]), text);
}

TEST_F(ObjWriter, SaysWhenTheFileCannotBeWritten) {
    const std::string absent = folder_.file("absent/a.obj");
    ::testing::internal::CaptureStderr();
    EXPECT_FALSE(WriteObjFile(*makeCube(1), absent.c_str()));
    EXPECT_FALSE(WriteObjFileWithNormals(*makeCube(1), absent.c_str()));
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(folder_.listing(), "");
}

}  // namespace
}  // namespace talvek::test
