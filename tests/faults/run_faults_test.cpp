// A whole run of every pair of operating mode and model, on a stone with texels and a mineral map, over frames that an
// earlier run has left.
#include "faults/scenario.h"
#include "support/bitmaps.h"
#include "support/meshes.h"
#include "talvek.h"

namespace talvek::test {
namespace {

/// A little fewer faults than a run of each mode meets.
constexpr std::int64_t kLeastInjections[] = {270, 215, 300, 235};
// Each mode runs with three models, and each run has to meet as many.
static_assert(3 * (kLeastInjections[0] + kLeastInjections[1] + kLeastInjections[2] + kLeastInjections[3]) >= 3000);
constexpr std::int32_t kWrongStatus = -99;

class RunFaults : public ScenarioTest {};

TEST_P(RunFaults, AreSurvivedOneByOne) {
    expectToSurvive();
}

/// A run that failed leaves the session as it was before.
std::int32_t start(Material&) {
    const std::int32_t result = talvekStart();
    const std::int32_t status = result == TALVEK_OK ? TALVEK_STATUS_FINISHED : TALVEK_STATUS_READY;
    return talvekGetStatus() == status ? result : kWrongStatus;
}

FileContents stoneFiles() {
    auto mesh = makePlane(2);
    layTexture(*mesh, 1 / 40.0F, 1 / 40.0F);
    mesh->vertices[14] = 0.5F;
    const std::string old = "# a frame of an earlier run\n";
    return {{"stone.obj", objText(*mesh)},
            {"stone.bmp",
             bitmapBytes(paintedBitmap(61, 47, [](int x, int y) { return (x + y) % 3 == 0 ? kGrey : kWhite; }))},
            {"stone.obj.obj_i.obj", old},
            {"stone.obj.obj_w.obj", old},
            {"stone.obj.obj_w_1.obj", old}};
}

Scenario run(std::int32_t mode, std::int32_t model) {
    const bool hasMap = mode == TALVEK_MODE_QEMSCAN || mode == TALVEK_MODE_GRAIN_WEAVER;
    return {.name = "Mode" + std::to_string(mode) + "Model" + std::to_string(model),
            .mode = mode,
            .model = model,
            .epochs = mode == TALVEK_MODE_QEMSCAN ? 1 : 2,
            .files = stoneFiles(),
            .act = start,
            .failuresToRead = {TALVEK_ERROR_MESH},
            .isAllOrNothing = false,
            .inPlace = {"stone.inf"},
            .dispensable = hasMap ? "stone.bmp" : "",
            .repeatedAfter = mode == TALVEK_MODE_QEMSCAN ? 10 : 1,
            .leastInjections = kLeastInjections[mode]};
}

std::vector<Scenario> runs() {
    std::vector<Scenario> all;
    for (const std::int32_t model : {0, 1, 2}) {
        all.push_back(run(TALVEK_MODE_OFFSETTING, model));
    }
    for (const std::int32_t mode : {TALVEK_MODE_MESH_DATA, TALVEK_MODE_QEMSCAN, TALVEK_MODE_GRAIN_WEAVER}) {
        for (const std::int32_t model : {1, 2, 3}) {
            all.push_back(run(mode, model));
        }
    }
    return all;
}

/// Runs one epoch on a small plane while the n-th operation of a kind fails. Returns whether there was an n-th.
bool runOnce(const TempFolder& folder, std::int32_t mode, std::int32_t model, bool saveResults, Fault fault,
             std::int64_t n) {
    writeFile(folder.file("stone.obj"), objText(*makePlane(2)));
    talvekSetTimeSpan(1, 365);
    talvekSetMode(mode);
    talvekSetModel(model);
    talvekSetResults(saveResults ? 1 : 0);
    talvekSetFileName(folder.file("stone.obj").c_str());
    talvekInit();
    ::testing::internal::CaptureStdout();
    armFault(fault, n, folder.path());
    talvekStart();
    const bool hasHappened = disarmFault();
    ::testing::internal::GetCapturedStdout();
    talvekFree();
    return hasHappened;
}

TEST(RunFiles, AreTheFrameTwiceAndFrame0BesidesUnderTheResultsFlag) {
    const TempFolder folder(folderInMemory());
    const auto putsInPlace = [&folder](std::int64_t n, bool saveResults) {
        return runOnce(folder, TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN, saveResults, Fault::kRename, n);
    };
    EXPECT_TRUE(putsInPlace(3, false));
    EXPECT_FALSE(putsInPlace(4, false));
    EXPECT_TRUE(putsInPlace(5, true));
    EXPECT_FALSE(putsInPlace(6, true));
}

TEST(RunLog, TellsOfAShapeIndexForWhichThereIsNoMemory) {
    const TempFolder folder(folderInMemory());
    std::int64_t told = 0;
    for (std::int64_t n = 1;
         runOnce(folder, TALVEK_MODE_OFFSETTING, TALVEK_MODEL_SMOOTHING, false, Fault::kAllocation, n); ++n) {
        const bool isTold = readText(folder.file("stone.inf"))
                                .ends_with("\tShape Index NOT created!\nOut of memory!\nProcessing ABORTED!\n");
        told += isTold ? 1 : 0;
    }
    EXPECT_GT(told, 0);
}

INSTANTIATE_TEST_SUITE_P(OfEveryRun, RunFaults, ::testing::ValuesIn(runs()), scenarioName);

}  // namespace
}  // namespace talvek::test
