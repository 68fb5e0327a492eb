// Runs of the loaded library, from the host's first call to the frames.
#include <gtest/gtest.h>

#include <vector>

#include "interface/host_library.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

constexpr const char* kTriangle = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

class Run : public ::testing::Test {
  protected:
    void SetUp() override { resetSession(); }

    TempFolder folder_;
};

TEST_F(Run, MovesATriangleAlongItsNormal) {
    const std::string mesh = folder_.file("stone.obj");
    writeFile(mesh, kTriangle);
    ASSERT_EQ(TALVEK_CALL(talvekSetFileName)(mesh.c_str()), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekSetTimeSpan)(2, 365), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekSetMode)(TALVEK_MODE_MESH_DATA), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekSetModel)(TALVEK_MODEL_ACID_RAIN), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekInit)(), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekStart)(), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekGetStatus)(), TALVEK_STATUS_FINISHED);
    EXPECT_EQ(folder_.listing(),
              "stone.inf stone.obj stone.obj.obj_i.obj stone.obj.obj_w.obj stone.obj.obj_w_1.obj "
              "stone.obj.obj_w_2.obj");
    ASSERT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(2), 1);
    std::vector<float> vertices(9);
    std::vector<float> normals(9);
    ASSERT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(2, vertices.data(), normals.data()), TALVEK_OK);
    EXPECT_LT(vertices[2], 0);
    EXPECT_EQ(normals[2], 1);
}

}  // namespace
}  // namespace talvek::test
