// The upgrade of an old SAS file in place, with everything below it failing once at every place: there is always a good
// file, the old one or the new one.
#include <gtest/gtest.h>

#include <filesystem>

#include "Vexo_Lib/load3d.h"
#include "faults/scenario.h"
#include "support/error_reports.h"
#include "support/mesh_file_writers.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

class SasUpgradeFaults : public ::testing::TestWithParam<Fault> {
  protected:
    /// Lets the n-th operation fail while the file is loaded. Returns whether there was an n-th.
    bool inject(std::int64_t n) {
        writeFile(path_, legacy_);
        CaughtReports reports;
        const std::int64_t blocksBefore = liveBlocks();
        armFault(GetParam(), n, folder_.path());
        const bool isLoaded = LoadMeshFile(path_.c_str()) != nullptr;
        const bool hasHappened = disarmFault();
        EXPECT_EQ(liveBlocks(), blocksBefore) << n;
        const std::string left = readFile(path_);
        EXPECT_TRUE(left == legacy_ || left == upgraded_) << "after " << faultName(GetParam()) << " " << n;
        EXPECT_EQ(folder_.listing(), "mesh.sas");
        if (isLoaded && left == legacy_) {
            const auto lines = reports.lines();
            EXPECT_TRUE(!lines.empty() && lines.back().ends_with("Cannot create " + path_)) << n;
        }
        EXPECT_TRUE(isLoaded || hasHappened);
        numKept_ += left == legacy_ ? 1 : 0;
        return hasHappened;
    }

    TempFolder folder_{folderInMemory()};
    std::string path_ = folder_.file("mesh.sas");
    const std::string legacy_ = legacySasTetrahedron();
    const std::string upgraded_ = sasTetrahedron(7778);
    std::int64_t numKept_ = 0;
};

TEST_P(SasUpgradeFaults, NeverLoseTheFile) {
    std::int64_t n = 1;
    while (inject(n)) {
        ++n;
    }
    EXPECT_GT(n, 1) << "nothing could fail";
    // What is harmless is made up for; every other fault keeps the old file at least once.
    EXPECT_EQ(numKept_ > 0, !isHarmless(GetParam()));
    EXPECT_EQ(readFile(path_), upgraded_) << "without a fault";
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, SasUpgradeFaults, ::testing::ValuesIn(kAllFaults),
                         [](const ::testing::TestParamInfo<Fault>& fault) {
                             std::string name = faultName(fault.param);
                             std::erase(name, ' ');
                             return name;
                         });

}  // namespace
}  // namespace talvek::test
