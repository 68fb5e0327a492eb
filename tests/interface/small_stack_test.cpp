// A stack of 128 KiB is enough for everything that the library does.
#include "support/small_stack.h"

#include "interface/host_session.h"
#include "support/bitmaps.h"
#include "support/mesh_file_writers.h"
#include "support/meshes.h"

namespace talvek::test {
namespace {

class SmallStack : public HostSession {
  protected:
    std::int32_t startOnSmallStack() {
        std::int32_t result = 1;
        ::testing::internal::CaptureStderr();
        captured([&result] {
            runOnSmallStack([&result] { result = TALVEK_CALL(talvekStart)(); });
            return result;
        });
        ::testing::internal::GetCapturedStderr();
        return result;
    }
};

TEST_F(SmallStack, IsEnoughForEveryReader) {
    for (const SmallFile& file : smallMeshFiles()) {
        nameMesh(file.bytes, file.name);
        setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
        EXPECT_EQ(startOnSmallStack(), TALVEK_OK) << file.name;
        EXPECT_TRUE(exists(mesh_ + ".obj_w_1.obj")) << file.name;
    }
}

TEST_F(SmallStack, IsEnoughForEveryRunner) {
    auto stone = makeSphere(10, 2);
    layTexture(*stone, 1 / 40.0F, 1 / 40.0F);
    nameMesh(objText(*stone));
    writeFile(folder_.file("stone.bmp"), bitmapBytes(plainBitmap(31, 17, kGrey)));
    for (std::int32_t mode = TALVEK_MODE_OFFSETTING; mode <= TALVEK_MODE_GRAIN_WEAVER; ++mode) {
        const std::int32_t first = mode == TALVEK_MODE_OFFSETTING ? 0 : 1;
        for (std::int32_t model = first; model < first + 3; ++model) {
            TALVEK_CALL(talvekFree)();
            setUp(mode, model);
            EXPECT_EQ(startOnSmallStack(), TALVEK_OK) << mode << ' ' << model;
            std::filesystem::remove(mesh_ + ".obj_w_2.obj");
            EXPECT_TRUE(exists(mesh_ + ".obj_w_1.obj")) << mode << ' ' << model;
        }
    }
}

TEST_F(SmallStack, IsEnoughForParametersFramesAndTexts) {
    nameMesh(objText(*makeSphere(10, 2)));
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
    ASSERT_EQ(start(), TALVEK_OK);
    const std::string saved = folder_.file("saved.obj");
    const std::string log = folder_.file("host.log");
    Floats vertices(9 * 320);
    Floats normals(9 * 320);
    std::vector<std::int32_t> results;
    captured([&] {
        runOnSmallStack([&] {
            results = {TALVEK_CALL(talvekGetFrameNumTriangles)(1) - 320,
                       TALVEK_CALL(talvekGetFrameGeometry)(1, vertices.data(), normals.data()),
                       TALVEK_CALL(talvekSaveFrameGeometryObj)(saved.c_str(), 320, vertices.data(), nullptr),
                       TALVEK_CALL(talvekSaveParams)(),
                       TALVEK_CALL(talvekReadParams)(),
                       TALVEK_CALL(talvekResetLogFile)(log.c_str()),
                       TALVEK_CALL(talvekAppendLogFile)(log.c_str(), std::string(100000, 'x').c_str())};
        });
        return 0;
    });
    EXPECT_EQ(results, std::vector<std::int32_t>(7, TALVEK_OK));
    EXPECT_TRUE(exists(saved));
    EXPECT_EQ(text("host.log").size(), 100000);
}

}  // namespace
}  // namespace talvek::test
