// What the driver of a run refuses although no host can get a session into such a state.
#include "api/run_driver.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "api/session/session.h"
#include "support/meshes.h"
#include "support/runs.h"
#include "support/test_files.h"
#include "talvek.h"

namespace talvek::test {
namespace {

class RunDriver : public ::testing::Test {
  protected:
    void SetUp() override {
        talvekFree();
        session().mode = TALVEK_MODE_MESH_DATA;
        session().model = TALVEK_MODEL_ACID_RAIN;
        talvekInit();
    }
    void TearDown() override {
        talvekFree();
        session().mode = TALVEK_MODE_MESH_DATA;
        session().model = TALVEK_MODEL_ACID_RAIN;
    }

    static std::string outputOf(std::int32_t expectedResult) {
        ::testing::internal::CaptureStdout();
        EXPECT_EQ(runSimulation(), expectedResult);
        EXPECT_EQ(talvekGetStatus(), TALVEK_STATUS_READY);
        return ::testing::internal::GetCapturedStdout();
    }
};

TEST_F(RunDriver, RefusesModesThatDoNotExist) {
    for (const std::int32_t mode : {-1, 4, 1000000}) {
        session().mode = mode;
        const std::string output = outputOf(TALVEK_ERROR_UNDEFINED_MODE);
        EXPECT_TRUE(withoutCarriageReturns(output).ends_with("Operating mode: Undefined!\nProcessing ABORTED!\n"));
    }
}

TEST_F(RunDriver, RefusesModelsThatDoNotExist) {
    for (const std::int32_t model : {-1, 4, 1000000}) {
        session().model = model;
        const std::string output = outputOf(TALVEK_ERROR_UNDEFINED_MODEL);
        EXPECT_TRUE(withoutCarriageReturns(output).ends_with("Weathering model: Undefined!\nProcessing ABORTED!\n"));
    }
}

TEST_F(RunDriver, RefusesAMissingEpochTable) {
    session().epochTable = {};
    EXPECT_EQ(talvekSaveParams(), TALVEK_ERROR_NULL);
    EXPECT_NE(outputOf(TALVEK_ERROR_NULL).find("Envirinmetal params undefined!"), std::string::npos);
}

#ifdef __linux__
TEST(RunDriverFiles, AreAllClosedAfterARun) {
    StoneRun run(*makePlane(2));
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(run.start(), TALVEK_OK);
    ::testing::internal::GetCapturedStdout();
    for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        const std::string file = std::filesystem::read_symlink(descriptor.path(), error);
        EXPECT_FALSE(file.starts_with(run.meshName().substr(0, run.meshName().rfind('/')))) << file;
    }
}
#endif

}  // namespace
}  // namespace talvek::test
