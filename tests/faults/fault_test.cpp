// Everything that can fail below the library, failing once at every place: each allocation, open, read, write, flush,
// close and rename of each operation, one by one, until the operation gets through without meeting the fault.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
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

/// One operation of the library, what it starts from, and how its success and its failures look.
struct Scenario {
    std::string name;
    /// The file that the host names.
    std::string meshName;
    std::string meshContent;
    std::int32_t mode = TALVEK_MODE_MESH_DATA;
    std::int32_t model = TALVEK_MODEL_ACID_RAIN;
    std::function<std::int32_t(const TempFolder&)> act;
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
        prepareFiles();
        succeed();
        expected_ = contentsOf(folder_);
    }

    void TearDown() override { talvekFree(); }

    void prepareFiles() {
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
            std::filesystem::remove(entry.path());
        }
        writeFile(folder_.file(GetParam().meshName), GetParam().meshContent);
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

    void succeed() { ASSERT_EQ(GetParam().act(folder_), TALVEK_OK); }

    /// Every file is one that success would leave as well, whole; the input is there.
    void expectOnlyWholeFiles(const std::string& where) {
        const FileContents contents = contentsOf(folder_);
        for (const auto& [name, content] : contents) {
            ASSERT_TRUE(expected_.contains(name)) << where << " left " << name;
            if (!GetParam().inPlace.contains(name)) {
                ASSERT_EQ(content, expected_.at(name)) << where << " left a part of " << name;
            }
        }
        ASSERT_TRUE(contents.contains(GetParam().meshName)) << where;
    }

    /// Lets the n-th operation fail. Returns whether there was an n-th.
    bool inject(Fault fault, std::int64_t n) {
        const std::string where = GetParam().name + ", " + faultName(fault) + " " + std::to_string(n);
        prepareFiles();
        const std::int64_t blocksBefore = liveBlocks();
        armFault(fault, n, folder_.path());
        const std::int32_t result = GetParam().act(folder_);
        const bool hasHappened = disarmFault();
        EXPECT_TRUE(result == TALVEK_OK || GetParam().failureCodes.contains(result)) << where << " gave " << result;
        EXPECT_LE(liveBlocks(), blocksBefore) << where << " lost memory";
        expectOnlyWholeFiles(where);
        prepareSession();
        succeed();
        EXPECT_EQ(contentsOf(folder_), expected_) << where << " spoiled the run after it";
        return hasHappened;
    }

    TempFolder folder_;
    FileContents expected_;
};

TEST_P(Faults, AreSurvivedOneByOne) {
    constexpr Fault kAll[] = {Fault::kAllocation, Fault::kRead,  Fault::kShortRead, Fault::kOpen,  Fault::kWrite,
                              Fault::kShortWrite, Fault::kClose, Fault::kFlush,     Fault::kRename};
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    std::int64_t injections = 0;
    for (const Fault fault : kAll) {
        for (std::int64_t n = 1; inject(fault, n) && !HasFatalFailure(); ++n) {
            ++injections;
        }
    }
    ::testing::internal::GetCapturedStdout();
    ::testing::internal::GetCapturedStderr();
    RecordProperty("injections", static_cast<int>(injections));
    std::cout << GetParam().name << ": " << injections << " faults injected\n";
    EXPECT_GT(injections, 0);
}

std::int32_t start(const TempFolder&) {
    return talvekStart();
}

std::vector<Scenario> scenarios() {
    const std::string sphere = objText(*makeSphere(10, 1));
    return {
        {.name = "RunMeshData",
         .meshName = "stone.obj",
         .meshContent = sphere,
         .act = start,
         .failureCodes = {TALVEK_ERROR_MESH},
         .inPlace = {"stone.inf"}},
        {.name = "SaveParams",
         .meshName = "stone.obj",
         .meshContent = sphere,
         .act = [](const TempFolder&) { return talvekSaveParams(); },
         .failureCodes = {TALVEK_ERROR_RANGE}},
    };
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, Faults, ::testing::ValuesIn(scenarios()),
                         [](const ::testing::TestParamInfo<Scenario>& scenario) { return scenario.param.name; });

}  // namespace
}  // namespace talvek::test
