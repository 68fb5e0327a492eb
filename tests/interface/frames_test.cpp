// Frames read back: names, times, counts, triangles, and surfaces that the host saves itself.
#include <cmath>
#include <limits>

#include "interface/host_session.h"
#include "support/guarded_array.h"
#include "support/meshes.h"

namespace talvek::test {
namespace {

constexpr std::uint32_t kMinusOne = std::numeric_limits<std::uint32_t>::max();

class Frames : public HostSession {
  protected:
    void SetUp() override {
        HostSession::SetUp();
        nameMesh(kTriangleText);
    }

    void writeFrame(std::uint32_t frame, std::string_view content) {
        writeFile(mesh_ + ".obj_w_" + std::to_string(frame) + ".obj", content);
    }
    static std::uint32_t timeOf(std::uint32_t frame) {
        std::uint32_t days = 77;
        EXPECT_EQ(TALVEK_CALL(talvekGetFrameTime)(frame, &days), TALVEK_OK);
        return days;
    }
};

TEST_F(Frames, AreNamedAfterTheWholeFileName) {
    TALVEK_CALL(talvekSetNumEpochs)(4000);
    TALVEK_CALL(talvekSetFileName)("a.b.obj");
    char out[TALVEK_FRAME_FILE_NAME_SIZE];
    for (const std::uint32_t frame : {0U, 1U, 12U, 4000U}) {
        EXPECT_EQ(TALVEK_CALL(talvekGetFrameFileName)(frame, out), TALVEK_OK);
        EXPECT_EQ(out, "a.b.obj.obj_w_" + std::to_string(frame) + ".obj");
    }
}

TEST_F(Frames, NameChecksComeInOrder) {
    char out[TALVEK_FRAME_FILE_NAME_SIZE] = "untouched";
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameFileName)(9, nullptr), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameFileName)(0, nullptr), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameFileName)(2, out), TALVEK_ERROR_RANGE);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameFileName)(kMinusOne, out), TALVEK_ERROR_RANGE);
    EXPECT_STREQ(out, "untouched");
}

TEST_F(Frames, NamesNeedNoMoreRoomThanTheyHave) {
    TALVEK_CALL(talvekSetFileName)("a.obj");
    const std::string expected = "a.obj.obj_w_1.obj";
    GuardedArray<char> out(expected.size() + 1);
    ASSERT_EQ(TALVEK_CALL(talvekGetFrameFileName)(1, out.data()), TALVEK_OK);
    EXPECT_EQ(out.data(), expected);
    GuardedArray<char> name(sizeof "a.obj");
    ASSERT_EQ(TALVEK_CALL(talvekGetFileName)(name.data()), TALVEK_OK);
    EXPECT_STREQ(name.data(), "a.obj");
    EXPECT_TRUE(out.isFrontIntact());
}

TEST_F(Frames, TimesAreSumsOfDays) {
    setUp(1, 3, 10, 30);
    EXPECT_EQ(timeOf(0), 0);
    EXPECT_EQ(timeOf(4), 120);
    EXPECT_EQ(timeOf(10), 300);
    TALVEK_CALL(talvekSetEpochTimeSpan)(2, 1000);
    EXPECT_EQ(timeOf(1), 30);
    EXPECT_EQ(timeOf(2), 1030);
}

TEST_F(Frames, TimesAddWholeDays) {
    writeFile(folder_.file("stone.cfg"), "epcs = 3;\nepc_0 = 1.9;\n");
    captured(TALVEK_CALL(talvekReadParams));
    EXPECT_EQ(timeOf(3), 3);
}

TEST_F(Frames, TimeChecksComeInOrder) {
    std::uint32_t days = 77;
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameTime)(0, nullptr), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameTime)(99, &days), TALVEK_ERROR_NULL) << "the missing table comes first";
    EXPECT_EQ(days, 0);
    setUp(1, 3, 10, 30);
    days = 77;
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameTime)(11, &days), TALVEK_ERROR_RANGE);
    EXPECT_EQ(days, 0);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameTime)(kMinusOne, &days), TALVEK_ERROR_RANGE);
}

TEST_F(Frames, ThatAreMissingHaveNoTriangles) {
    float values[9];
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(0), 0);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(2), 0);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(kMinusOne), 0);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(1, values, values), TALVEK_ERROR_FRAME);
}

TEST_F(Frames, GeometryChecksComeInOrder) {
    float values[9];
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(9, nullptr, values), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(9, values, nullptr), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(2, values, values), TALVEK_ERROR_RANGE);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(kMinusOne, values, values), TALVEK_ERROR_RANGE);
}

TEST_F(Frames, WithoutVerticesAreTold) {
    writeFrame(1, "# nothing\n");
    float values[9] = {77};
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(1), 0);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(1, values, values), TALVEK_ERROR_NO_VERTICES);
    EXPECT_EQ(values[0], 77);
}

TEST_F(Frames, WithoutFacesAreEmpty) {
    writeFrame(1, "v 1 2 3\n");
    GuardedArray<float> none(0);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(1), 0);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(1, none.data(), none.data()), TALVEK_OK);
}

TEST_F(Frames, ThatAreDamagedDoNotLoad) {
    writeFrame(1, "v 1 2 3\nf 1 2 3\n");
    float values[9];
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(1), 0);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(1, values, values), TALVEK_ERROR_FRAME);
    EXPECT_NE(::testing::internal::GetCapturedStderr().find("face index out of range in "), std::string::npos);
}

TEST_F(Frames, RepeatSharedVerticesInFaceOrder) {
    writeFrame(1, "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3\nf 4 1 3\n");
    ASSERT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(1), 2);
    GuardedArray<float> vertices(18);
    GuardedArray<float> normals(18);
    ASSERT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(1, vertices.data(), normals.data()), TALVEK_OK);
    EXPECT_EQ(Floats(vertices.data(), vertices.data() + 18),
              (Floats{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 0, 1, 1, 0}));
    for (std::size_t i = 0; i < 18; ++i) {
        EXPECT_EQ(normals[i], i % 3 == 2 ? 1 : 0);
    }
    EXPECT_TRUE(vertices.isFrontIntact());
    EXPECT_TRUE(normals.isFrontIntact());
}

TEST_F(Frames, NeedNoRun) {
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(1), 0);
    writeFrame(1, kTriangleText);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(1), 1) << "nothing is cached";
    writeFrame(0, "v 0 0 0\nf 1 1 1\nf 1 1 1\n");
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(0), 2);
}

TEST_F(Frames, OfARunHaveTheMeshsTriangles) {
    const auto sphere = makeSphere(10, 2);
    nameMesh(objText(*sphere));
    setUp(1, 3, 1);
    ASSERT_EQ(start(), TALVEK_OK);
    const auto count = static_cast<std::size_t>(TALVEK_CALL(talvekGetFrameNumTriangles)(1));
    ASSERT_EQ(count, 320);
    GuardedArray<float> vertices(9 * count);
    GuardedArray<float> normals(9 * count);
    ASSERT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(1, vertices.data(), normals.data()), TALVEK_OK);
    for (std::size_t i = 0; i < 9 * count; i += 3) {
        ASSERT_NEAR(std::hypot(normals[i], normals[i + 1], normals[i + 2]), 1, 1e-5);
        ASSERT_NEAR(std::hypot(vertices[i], vertices[i + 1], vertices[i + 2]), 10 - 0.016991F, 1e-4);
    }
}

TEST_F(Frames, AreSavedFromTrianglesWithoutTheirNormals) {
    GuardedArray<float> vertices(9);
    GuardedArray<float> normals(9);
    for (std::size_t i = 0; i < 9; ++i) {
        vertices[i] = static_cast<float>(i) / 3;
        normals[i] = 99;
    }
    const std::string path = folder_.file("saved.obj");
    ASSERT_EQ(TALVEK_CALL(talvekSaveFrameGeometryObj)(path.c_str(), 1, vertices.data(), normals.data()), TALVEK_OK);
    const std::string expected =
        "v 0.00000 0.33333 0.66667\nv 1.00000 1.33333 1.66667\nv 2.00000 2.33333 2.66667\n# 3 vertices\nf 1 2 3\n"
        "# 1 triangles\n";
    EXPECT_EQ(text("saved.obj"), expected);
    ASSERT_EQ(TALVEK_CALL(talvekSaveFrameGeometryObj)(path.c_str(), 1, vertices.data(), nullptr), TALVEK_OK);
    EXPECT_EQ(text("saved.obj"), expected);
}

TEST_F(Frames, AreSavedWithoutMergingVertices) {
    const Floats vertices(18, 1.5F);
    const std::string path = folder_.file("saved.obj");
    ASSERT_EQ(TALVEK_CALL(talvekSaveFrameGeometryObj)(path.c_str(), 2, vertices.data(), nullptr), TALVEK_OK);
    EXPECT_TRUE(text("saved.obj").ends_with("# 6 vertices\nf 1 2 3\nf 4 5 6\n# 2 triangles\n"));
}

TEST_F(Frames, AreSavedWithoutTriangles) {
    const float none = 0;
    ASSERT_EQ(TALVEK_CALL(talvekSaveFrameGeometryObj)(folder_.file("saved.obj").c_str(), 0, &none, &none), TALVEK_OK);
    EXPECT_EQ(text("saved.obj"), "# 0 vertices\n# 0 triangles\n");
}

TEST_F(Frames, SaveChecksItsArguments) {
    const float values[9] = {};
    const std::string path = folder_.file("saved.obj");
    const auto save = TALVEK_CALL(talvekSaveFrameGeometryObj);
    EXPECT_EQ(save(nullptr, 1, values, values), TALVEK_ERROR_NULL);
    EXPECT_EQ(save(path.c_str(), 1, nullptr, values), TALVEK_ERROR_NULL);
    EXPECT_EQ(save(nullptr, -1, values, values), TALVEK_ERROR_NULL);
    EXPECT_EQ(save(path.c_str(), -1, values, values), TALVEK_ERROR_RANGE);
    EXPECT_EQ(save(path.c_str(), std::numeric_limits<std::int32_t>::min(), values, values), TALVEK_ERROR_RANGE);
    EXPECT_EQ(save(path.c_str(), std::numeric_limits<std::int32_t>::max(), values, values), TALVEK_ERROR_RANGE);
    EXPECT_EQ(save(path.c_str(), 715827883, values, values), TALVEK_ERROR_RANGE);
    EXPECT_FALSE(exists(path));
}

TEST_F(Frames, ASaveThatCannotBeWrittenIsNotReported) {
    const float values[9] = {};
    EXPECT_EQ(TALVEK_CALL(talvekSaveFrameGeometryObj)(folder_.file("absent/a.obj").c_str(), 1, values, values),
              TALVEK_OK);
}

}  // namespace
}  // namespace talvek::test
