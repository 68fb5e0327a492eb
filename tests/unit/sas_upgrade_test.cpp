// A SAS file of version 7777 is replaced by its version 7778 form when it is loaded, and never lost on the way.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "Vexo_Lib/load3d.h"
#include "Vexo_Lib/sas.h"
#include "support/error_reports.h"
#include "support/mesh_file_writers.h"
#include "support/restriction.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

namespace fs = std::filesystem;

class SasUpgrade : public ::testing::Test {
  protected:
    SasUpgrade() { writeFile(path_, legacy_); }

    bool loads() const { return LoadMeshFile(path_.c_str()) != nullptr; }

    TempFolder folder_;
    std::string path_ = folder_.file("mesh.sas");
    const std::string legacy_ = legacySasTetrahedron();
    const std::string upgraded_ = sasTetrahedron(7778);
};

// Not the normals of the geometry, which are computed only afterwards.
TEST_F(SasUpgrade, KeepsTheNormalsThatTheFileHolds) {
    ASSERT_TRUE(loads());
    EXPECT_EQ(readFile(path_), upgraded_);
    EXPECT_EQ(folder_.listing(), "mesh.sas");
}

TEST_F(SasUpgrade, HappensOnce) {
    const auto first = LoadMeshFile(path_.c_str());
    const auto second = LoadMeshFile(path_.c_str());
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(readFile(path_), upgraded_);
    EXPECT_TRUE(std::ranges::equal(first->vertexSpan(), second->vertexSpan()));
    EXPECT_TRUE(std::ranges::equal(first->faceSpan(), second->faceSpan()));
    EXPECT_TRUE(std::ranges::equal(first->normalSpan(), second->normalSpan()));
    EXPECT_EQ(Floats(first->faceColours.get(), first->faceColours.get() + 12), Tetrahedron::kColours);
    EXPECT_EQ(Floats(second->faceColours.get(), second->faceColours.get() + 12), Tetrahedron::kColours);
}

TEST_F(SasUpgrade, LeavesAFileThatIsShorterThanItPromises) {
    for (const std::size_t size : {legacy_.size() - 1, legacy_.size() / 2, std::size_t{20}}) {
        writeFile(path_, legacy_.substr(0, size));
        EXPECT_TRUE(loads()) << size;
        EXPECT_EQ(readFile(path_), legacy_.substr(0, size));
    }
}

TEST_F(SasUpgrade, LeavesOutWhatStandsBehindTheMesh) {
    writeFile(path_, legacy_ + "more");
    EXPECT_TRUE(loads());
    EXPECT_EQ(readFile(path_), upgraded_);
}

TEST_F(SasUpgrade, LeavesAFileWhoseCountsCannotBeTrue) {
    const std::string bytes = sasHeader(7777, -1, 4) + legacy_.substr(20);
    writeFile(path_, bytes);
    CaughtReports reports;
    EXPECT_FALSE(loads());
    expectReportBlock(reports.lines(), "sas.cpp", "damaged file " + path_);
    EXPECT_EQ(readFile(path_), bytes);
}

// Not a good mesh, but what the file says: it is refused the same way in both versions.
TEST_F(SasUpgrade, KeepsFacesThatNameNoVertex) {
    std::string bytes = legacy_;
    bytes.replace(20 + 12 * 4, 4, bytesOf(Ints{99}));
    writeFile(path_, bytes);
    CaughtReports reports;
    EXPECT_FALSE(loads());
    expectReportBlock(reports.lines(), "load3d.cpp", "face index out of range in " + path_);
    std::string expected = upgraded_;
    expected.replace(20 + 12 * 4, 4, bytesOf(Ints{99}));
    EXPECT_EQ(readFile(path_), expected);
}

TEST_F(SasUpgrade, LeavesAFileThatMayNotBeWritten) {
    fs::permissions(path_, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    CaughtReports reports;
#ifdef _WIN32
    EXPECT_TRUE(loads());
#else
    fs::permissions(folder_.path(), fs::perms::all);
    EXPECT_TRUE(holdsUnder(Restriction::kNoPrivileges, [this] { return loads(); }));
#endif
    expectReportBlock(reports.lines(), "sas.cpp", "Cannot create " + path_);
    EXPECT_EQ(readFile(path_), legacy_);
    EXPECT_EQ(folder_.listing(), "mesh.sas");
    fs::permissions(path_, fs::perms::all);
}

#ifndef _WIN32
TEST_F(SasUpgrade, LeavesAFileInAFolderThatMayNotBeWritten) {
    fs::permissions(path_, fs::perms::all);
    fs::permissions(folder_.path(), fs::perms::all & ~(fs::perms::group_write | fs::perms::others_write));
    CaughtReports reports;
    EXPECT_TRUE(holdsUnder(Restriction::kNoPrivileges, [this] {
        // Where the tests do not run as root, the folder is this user's own.
        std::error_code ignored;
        fs::permissions(folder_.path(), fs::perms::owner_read | fs::perms::owner_exec, ignored);
        return loads();
    }));
    fs::permissions(folder_.path(), fs::perms::all);
    expectReportBlock(reports.lines(), "sas.cpp", "Cannot create " + path_);
    EXPECT_EQ(readFile(path_), legacy_);
    EXPECT_EQ(folder_.listing(), "mesh.sas");
}

TEST_F(SasUpgrade, LeavesTheFileWhenTheDiskIsFull) {
    // A file large enough to meet the limit.
    const std::int32_t count = 100;
    const std::string bytes = sasHeader(7777, count, count) + std::string(48 * std::size_t{count}, '\0');
    writeFile(path_, bytes);
    CaughtReports reports;
    EXPECT_TRUE(holdsUnder(Restriction::kFilesUpTo1000Bytes, [this] { return loads(); }));
    expectReportBlock(reports.lines(), "sas.cpp", "Cannot create " + path_);
    EXPECT_EQ(readFile(path_), bytes);
    EXPECT_EQ(folder_.listing(), "mesh.sas");
}

TEST_F(SasUpgrade, KeepsThePermissions) {
    fs::permissions(path_, static_cast<fs::perms>(0640));
    EXPECT_TRUE(loads());
    EXPECT_EQ(readFile(path_), upgraded_);
    EXPECT_EQ(fs::status(path_).permissions(), static_cast<fs::perms>(0640));
}

TEST_F(SasUpgrade, FollowsASymbolicLink) {
    const std::string link = folder_.file("link.sas");
    fs::create_symlink("mesh.sas", link);
    EXPECT_NE(LoadMeshFile(link.c_str()), nullptr);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(readFile(path_), upgraded_);
    EXPECT_EQ(folder_.listing(), "link.sas mesh.sas");
}
#endif

}  // namespace
}  // namespace talvek::test
