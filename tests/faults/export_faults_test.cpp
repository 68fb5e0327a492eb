// Every exported function that takes memory or touches files, except the run itself.
#include "faults/scenario.h"
#include "support/meshes.h"
#include "talvek.h"

namespace talvek::test {
namespace {

class ExportFaults : public ScenarioTest {};

TEST_P(ExportFaults, AreSurvivedOneByOne) {
    expectToSurvive();
}

std::int32_t initAnew(Material&) {
    talvekFree();
    return talvekInit();
}

std::int32_t readGeometry(Material& material) {
    if (talvekGetFrameNumTriangles(1) == 0) {
        return TALVEK_ERROR_FRAME;
    }
    return talvekGetFrameGeometry(1, material.vertices.data(), material.normals.data());
}

std::int32_t saveGeometry(Material& material) {
    return talvekSaveFrameGeometryObj(material.outputPath.c_str(), 1000, material.vertices.data(), nullptr);
}

std::int32_t setName(Material& material) {
    return talvekSetFileName(material.outputPath.c_str());
}

std::int32_t getFrameName(Material& material) {
    char* text = reinterpret_cast<char*>(material.vertices.data());
    return talvekGetFrameFileName(2, text);
}

std::int32_t appendLog(Material& material) {
    return talvekAppendLogFile(material.outputPath.c_str(), "100 %% of a line that is longer than short\n");
}

std::int32_t resetLog(Material& material) {
    return talvekResetLogFile(material.outputPath.c_str());
}

constexpr const char* kParameters =
    "mode = 1;\nmodel = 2;\nepcs = 5;\nmtl = 1, 2, 3;\nepc_0 = 3;\nepc_2 = 4, 5;\nepc_5 = 6;\n";

std::vector<Scenario> exports() {
    const std::string sphere = objText(*makeSphere(10, 1));
    return {
        {.name = "Init", .act = initAnew, .failuresToRead = {TALVEK_ERROR_NULL}, .leastInjections = 4},
        {.name = "SaveParams",
         .files = {{"stone.cfg", "an older file"}},
         .act = [](Material&) { return talvekSaveParams(); },
         .failuresToRead = {TALVEK_ERROR_RANGE},
         .failuresToWrite = {TALVEK_ERROR_RANGE},
         .leastInjections = 30},
        {.name = "ReadParams",
         .files = {{"stone.cfg", kParameters}},
         .act = [](Material&) { return talvekReadParams(); },
         .failuresToRead = {TALVEK_ERROR_RANGE, TALVEK_ERROR_NULL},
         .leastInjections = 20},
        {.name = "ReadFrame",
         .files = {{"stone.obj.obj_w_1.obj", sphere}},
         .act = readGeometry,
         .failuresToRead = {TALVEK_ERROR_FRAME},
         .leastInjections = 60},
        {.name = "SaveFrameGeometry",
         .act = saveGeometry,
         .failuresToRead = {TALVEK_ERROR_RANGE},
         .isAllOrNothing = false,
         .leastInjections = 20},
        {.name = "AppendLog",
         .act = appendLog,
         .failuresToRead = {TALVEK_ERROR_RANGE},
         .failuresToWrite = {TALVEK_ERROR_RANGE},
         .inPlace = {"output file of the host"},
         .leastInjections = 5},
        {.name = "ResetLog",
         .files = {{"output file of the host", "an older log"}},
         .act = resetLog,
         .failuresToRead = {TALVEK_ERROR_RANGE},
         .failuresToWrite = {TALVEK_ERROR_RANGE},
         .inPlace = {"output file of the host"},
         .leastInjections = 2},
        {.name = "SetFileName", .act = setName, .failuresToRead = {TALVEK_ERROR_RANGE}, .leastInjections = 10},
        {.name = "GetFrameFileName", .act = getFrameName, .failuresToRead = {TALVEK_ERROR_RANGE}, .leastInjections = 4},
    };
}

INSTANTIATE_TEST_SUITE_P(OfEveryExport, ExportFaults, ::testing::ValuesIn(exports()), scenarioName);

/// The material of the session, as a text.
std::string material() {
    float values[TALVEK_MATERIAL_PARAMS] = {};
    std::string text = std::to_string(talvekGetMaterialParams(values));
    for (const float value : values) {
        text += ' ' + std::to_string(value);
    }
    return text;
}

// A file that broke off half-way used to leave half of its values behind.
TEST(ReadParamsFaults, LeaveTheDefaults) {
    const TempFolder folder{folderInMemory()};
    talvekSetFileName(folder.file("stone.obj").c_str());
    talvekFree();
    talvekSetMode(TALVEK_MODE_MESH_DATA);
    talvekInit();
    const std::string defaults = material();
    writeFile(folder.file("stone.cfg"), kParameters);
    for (const Fault fault : {Fault::kRead, Fault::kOpen}) {
        bool hasHappened = true;
        for (std::int64_t n = 1; hasHappened; ++n) {
            ::testing::internal::CaptureStdout();
            armFault(fault, n, folder.path());
            const std::int32_t result = talvekReadParams();
            hasHappened = disarmFault();
            ::testing::internal::GetCapturedStdout();
            EXPECT_EQ(result, hasHappened ? TALVEK_ERROR_RANGE : TALVEK_OK) << faultName(fault) << ' ' << n;
            EXPECT_EQ(material() == defaults, hasHappened) << faultName(fault) << ' ' << n;
        }
    }
    talvekFree();
}

}  // namespace
}  // namespace talvek::test
