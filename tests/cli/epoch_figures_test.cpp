// The figures of a run against those that geometry gives: a sphere from which a layer of known thickness is taken.
#include "talvek/results/epoch_figures.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <numbers>

#include "Vexo_Lib/obj.h"
#include "cli/program.h"
#include "support/meshes.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

TEST(EpochFigures, LayerOffASphere) {
    TempFolder folder;
    std::filesystem::current_path(folder.path());
    const auto mesh = makeSphere(50, 5);
    mesh->updateNormals(true);
    ASSERT_TRUE(WriteObjFileWithNormals(*mesh, "ball.obj"));
    const ProgramResult run =
        runProgram({"run", "ball.obj", "--mode", "0", "--epochs", "2", "--days", "100,150", "--offset", "-0.004"});
    ASSERT_EQ(run.end.code, 0U) << run.output;
    const host::RunSeries series("ball.obj");
    const std::vector<host::EpochFigures> epochs = host::measureEpochs(series);
    std::filesystem::current_path(std::filesystem::temp_directory_path());
    ASSERT_EQ(epochs.size(), 3U);
    EXPECT_EQ(epochs[2].days, 250);
    EXPECT_NEAR(epochs[1].displacement.mean, -0.4, 1e-4);
    EXPECT_NEAR(epochs[2].displacement.smallest, -1, 1e-4);
    EXPECT_NEAR(epochs[2].displacement.areaWeightedMean, -1, 1e-4);
    EXPECT_NEAR(epochs[2].distance.mean, 1, 1e-4);
    constexpr double kPi = std::numbers::pi;
    EXPECT_NEAR(epochs[2].area / (4 * kPi * 49 * 49), 1, 0.01);
    const double lost = epochs[0].volume.value() - epochs[2].volume.value();
    EXPECT_NEAR(lost / (4 * kPi / 3 * (50.0 * 50 * 50 - 49.0 * 49 * 49)), 1, 0.01);
}

}  // namespace
}  // namespace talvek::test
