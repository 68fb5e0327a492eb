// Everything that can fail below the library, failing once at every place: each allocation, open, read, write, flush,
// close and rename of each operation, one by one, until the operation gets through without meeting the fault.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "faults/fault_injection.h"
#include "support/meshes.h"
#include "support/test_files.h"
#include "talvek.h"

namespace talvek::test {
namespace {

using FileContents = std::map<std::string, std::string>;

FileContents contentsOf(const TempFolder& folder) {
    FileContents contents;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        contents[entry.path().filename().string()] = readFile(entry.path().string());
    }
    return contents;
}

/// What operations need besides the session, made beforehand: an injected fault is to hit the library, not the test.
struct Material {
    std::string outputPath;
    std::vector<float> vertices = std::vector<float>(9000, 1.5F);
    std::vector<float> normals = std::vector<float>(9000);
};

/// One operation of the library, what it starts from, and how its success and its failures look.
struct Scenario {
    std::string name;
    /// The file that the host names.
    std::string meshName;
    /// What is in the folder beforehand.
    FileContents files;
    std::int32_t mode = TALVEK_MODE_MESH_DATA;
    std::int32_t model = TALVEK_MODEL_ACID_RAIN;
    std::int32_t (*act)(Material&);
    std::set<std::int32_t> failureCodes;
    /// Files that are written in place and may be cut short: the run log.
    std::set<std::string> inPlace = {};
};

void PrintTo(const Scenario& scenario, std::ostream* out) {
    *out << scenario.name;
}

class Faults : public ::testing::TestWithParam<Scenario> {
  protected:
    void SetUp() override {
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
        prepareFiles();
        succeed();
        expected_ = contentsOf(folder_);
    }

    void TearDown() override {
        talvekFree();
        ::testing::internal::GetCapturedStdout();
        ::testing::internal::GetCapturedStderr();
        std::cout << GetParam().name << ": " << injections_ << " faults injected\n";
    }

    void prepareFiles() {
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
            std::filesystem::remove(entry.path());
        }
        for (const auto& [name, content] : GetParam().files) {
            writeFile(folder_.file(name), content);
        }
        prepareSession();
    }

    void prepareSession() {
        talvekFree();
        talvekSetTimeSpan(2, 365);
        talvekSetMode(GetParam().mode);
        talvekSetModel(GetParam().model);
        talvekSetResults(1);
        ASSERT_EQ(talvekSetFileName(folder_.file(GetParam().meshName).c_str()), TALVEK_OK);
        ASSERT_EQ(talvekInit(), TALVEK_OK);
    }

    void succeed() { ASSERT_EQ(GetParam().act(material_), TALVEK_OK); }

    /// Every file is one that success would leave as well, whole; the input is there.
    void expectOnlyWholeFiles(const std::string& where) {
        const FileContents contents = contentsOf(folder_);
        for (const auto& [name, content] : contents) {
            ASSERT_TRUE(expected_.contains(name)) << where << " left " << name;
            if (!GetParam().inPlace.contains(name)) {
                ASSERT_EQ(content, expected_.at(name)) << where << " left a part of " << name;
            }
        }
        for (const auto& [name, content] : GetParam().files) {
            ASSERT_TRUE(contents.contains(name)) << where << " lost " << name;
        }
    }

    /// Lets the n-th operation fail. Returns whether there was an n-th.
    bool inject(Fault fault, std::int64_t n) {
        const std::string where = GetParam().name + ", " + faultName(fault) + " " + std::to_string(n);
        prepareFiles();
        const std::int64_t blocksBefore = liveBlocks();
        armFault(fault, n, folder_.path());
        const std::int32_t result = GetParam().act(material_);
        const bool hasHappened = disarmFault();
        EXPECT_TRUE(result == TALVEK_OK || GetParam().failureCodes.contains(result)) << where << " gave " << result;
        EXPECT_LE(liveBlocks(), blocksBefore) << where << " lost memory";
        expectOnlyWholeFiles(where);
        for (const std::string& name : GetParam().inPlace) {
            std::filesystem::remove(folder_.file(name));
        }
        prepareSession();
        succeed();
        EXPECT_EQ(contentsOf(folder_), expected_) << where << " spoiled the run after it";
        return hasHappened;
    }

    TempFolder folder_;
    Material material_ = {.outputPath = folder_.file("output file of the host")};
    FileContents expected_;
    std::int64_t injections_ = 0;
};

TEST_P(Faults, AreSurvivedOneByOne) {
    constexpr Fault kAll[] = {Fault::kAllocation, Fault::kRead,  Fault::kShortRead, Fault::kOpen,  Fault::kWrite,
                              Fault::kShortWrite, Fault::kClose, Fault::kFlush,     Fault::kRename};
    for (const Fault fault : kAll) {
        for (std::int64_t n = 1; inject(fault, n) && !HasFatalFailure(); ++n) {
            ++injections_;
        }
    }
    RecordProperty("injections", static_cast<int>(injections_));
    EXPECT_GT(injections_, 0);
}

std::int32_t start(Material&) {
    return talvekStart();
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

std::int32_t appendLog(Material& material) {
    return talvekAppendLogFile(material.outputPath.c_str(), "100 %% of a line that is longer than short\n");
}

std::vector<Scenario> scenarios() {
    const std::string sphere = objText(*makeSphere(10, 1));
    const std::string parameters = "mode = 1;\nmodel = 2;\nepcs = 2;\nmtl = 1, 2, 3;\nepc_0 = 3;\nepc_2 = 4, 5;\n";
    return {
        {.name = "RunMeshData",
         .meshName = "stone.obj",
         .files = {{"stone.obj", sphere}},
         .act = start,
         .failureCodes = {TALVEK_ERROR_MESH},
         .inPlace = {"stone.inf"}},
        {.name = "SaveParams",
         .meshName = "stone.obj",
         .files = {{"stone.obj", sphere}},
         .act = [](Material&) { return talvekSaveParams(); },
         .failureCodes = {TALVEK_ERROR_RANGE}},
        {.name = "ReadParams",
         .meshName = "stone.obj",
         .files = {{"stone.cfg", parameters}},
         .act = [](Material&) { return talvekReadParams(); },
         .failureCodes = {TALVEK_ERROR_RANGE, TALVEK_ERROR_NULL}},
        {.name = "ReadFrame",
         .meshName = "stone.obj",
         .files = {{"stone.obj.obj_w_1.obj", sphere}},
         .act = readGeometry,
         .failureCodes = {TALVEK_ERROR_FRAME}},
        {.name = "SaveFrameGeometry",
         .meshName = "stone.obj",
         .files = {},
         .act = saveGeometry,
         .failureCodes = {TALVEK_ERROR_RANGE}},
        {.name = "AppendLog",
         .meshName = "stone.obj",
         .files = {},
         .act = appendLog,
         .failureCodes = {TALVEK_ERROR_RANGE},
         .inPlace = {"output file of the host"}},
        {.name = "SetFileName",
         .meshName = "stone.obj",
         .files = {},
         .act = [](Material& material) { return talvekSetFileName(material.outputPath.c_str()); },
         .failureCodes = {TALVEK_ERROR_RANGE}},
    };
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, Faults, ::testing::ValuesIn(scenarios()),
                         [](const ::testing::TestParamInfo<Scenario>& scenario) { return scenario.param.name; });

}  // namespace
}  // namespace talvek::test
