// One operation of the library that meets every fault there is, one after the other, until it gets through without
// meeting it.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "faults/fault_injection.h"
#include "support/test_files.h"

namespace talvek::test {

inline constexpr Fault kAllFaults[] = {Fault::kAllocation,   Fault::kMemory, Fault::kRead,  Fault::kShortRead,
                                       Fault::kInterruption, Fault::kOpen,   Fault::kWrite, Fault::kShortWrite,
                                       Fault::kClose,        Fault::kFlush,  Fault::kRename};

/// Whether the library has to make up for a fault, so that it shows nowhere.
inline bool isHarmless(Fault fault) {
    return fault == Fault::kShortRead || fault == Fault::kInterruption;
}

/// From a file's name to what is in it.
using FileContents = std::map<std::string, std::string>;

/// A folder of the system that is not on a disk, where there is one: files are replaced thousands of times here.
std::filesystem::path folderInMemory();

FileContents contentsOf(const TempFolder& folder);

/// What operations need besides the session, made beforehand: an injected fault is to hit the library, not the test.
struct Material {
    std::string outputPath;
    std::vector<float> vertices;
    std::vector<float> normals;
};

/// An operation, what it starts from, and how its success and its failures look.
struct Scenario {
    std::string name;
    std::int32_t mode = 1;
    std::int32_t model = 3;
    std::int32_t epochs = 2;
    /// What is in the folder beforehand; the host names "stone.obj".
    FileContents files = {};
    std::int32_t (*act)(Material&) = nullptr;
    /// The results that a lack of memory and a failing open or read may have.
    std::set<std::int32_t> failuresToRead = {};
    /// The results that a failing write, flush, close or rename may have.
    std::set<std::int32_t> failuresToWrite = {};
    /// Whether success means that everything was done and failure that nothing was.
    bool isAllOrNothing = true;
    /// Files that are written in place and may be cut short.
    std::set<std::string> inPlace = {};
    /// A file without which the operation succeeds in another way.
    std::string dispensable = {};
    /// After every how many faults the operation is repeated without one; more than one for those that take long.
    std::int64_t repeatedAfter = 1;
    std::int64_t leastInjections = 1;
};

void PrintTo(const Scenario& scenario, std::ostream* out);

/// Tests of this kind call expectToSurvive once.
class ScenarioTest : public ::testing::TestWithParam<Scenario> {
  protected:
    void SetUp() override;
    void TearDown() override;

    /// Injects every fault, and expects after each one: a result that the scenario names; every file whole, either as
    /// it was or as success leaves it; no memory lost; and the session fit for another run, which leaves the same
    /// bytes as one that met no fault.
    void expectToSurvive();

  private:
    /// All that an operation leaves behind.
    struct Outcome {
        FileContents files;
        std::string session;
        std::vector<float> vertices;
        std::vector<float> normals;
        bool operator==(const Outcome&) const = default;
    };

    void prepareFiles();
    void prepareSession();
    /// Acts while the n-th operation of a kind fails.
    std::int32_t act(Fault fault = Fault::kNone, std::int64_t n = 0);
    Outcome outcome() const;
    void learnAlternative();
    bool inject(Fault fault, std::int64_t n);
    void expectKnownResult(Fault fault, std::int32_t result, const std::string& where);
    void expectOnlyWholeFiles(const std::string& where);

    void repeat(const std::string& where);

    TempFolder folder_{folderInMemory()};
    Material material_;
    Outcome expected_;
    /// Contents that a file may have besides the expected one.
    std::map<std::string, std::set<std::string>> alternatives_;
    bool hasHappened_ = false;
    std::int64_t injections_ = 0;
};

/// The name of a scenario for INSTANTIATE_TEST_SUITE_P.
std::string scenarioName(const ::testing::TestParamInfo<Scenario>& scenario);

}  // namespace talvek::test
