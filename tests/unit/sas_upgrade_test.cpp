// A SAS file of version 7777 is replaced by its version 7778 form when it is loaded, and never lost on the way.
#include <gtest/gtest.h>
#ifdef __linux__
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <array>
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

// Such files used to be cut down to what their header says.
TEST_F(SasUpgrade, LeavesAFileThatIsLongerThanItPromises) {
    writeFile(path_, legacy_ + "more");
    EXPECT_TRUE(loads());
    EXPECT_EQ(readFile(path_), legacy_ + "more");
}

// One bit of a header used to cost a scan: each is turned once.
TEST_F(SasUpgrade, LosesNothingByADamagedHeader) {
    for (std::size_t bit = 0; bit < 8 * std::size_t{20}; ++bit) {
        std::string bytes = legacy_;
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
        writeFile(path_, bytes);
        CaughtReports reports;
        static_cast<void>(loads());
        const std::string left = readFile(path_);
        // Nothing depends on the last two words.
        EXPECT_TRUE(left == bytes || (bit >= 96 && left == upgraded_)) << bit;
    }
    writeFile(path_, sasHeader(7777, 0, 0) + legacy_.substr(20));
    EXPECT_TRUE(loads());
    EXPECT_EQ(readFile(path_), sasHeader(7777, 0, 0) + legacy_.substr(20));
}

TEST_F(SasUpgrade, LeavesAFileWhoseCountsCannotBeTrue) {
    const std::string bytes = sasHeader(7777, -1, 4) + legacy_.substr(20);
    writeFile(path_, bytes);
    CaughtReports reports;
    EXPECT_FALSE(loads());
    expectReportBlock(reports.lines(), "sas.cpp", "damaged file " + path_);
    EXPECT_EQ(readFile(path_), bytes);
}

// They used to be written anew all the same.
TEST_F(SasUpgrade, LeavesAFileWhoseFacesNameNoVertex) {
    for (const std::int32_t vertex : {4, 99, -1}) {
        std::string bytes = legacy_;
        bytes.replace(20 + 12 * 4, 4, bytesOf(Ints{vertex}));
        writeFile(path_, bytes);
        CaughtReports reports;
        EXPECT_FALSE(loads());
        expectReportBlock(reports.lines(), "load3d.cpp", "face index out of range in " + path_);
        EXPECT_EQ(readFile(path_), bytes);
    }
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

TEST_F(SasUpgrade, KeepsTheOwnerAndTheAttributes) {
    constexpr uid_t kOther = 12345;
    if (::chown(path_.c_str(), kOther, kOther) != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    const bool hasAttributes = ::setxattr(path_.c_str(), "user.scan", "left", 4, 0) == 0;
    EXPECT_TRUE(loads());
    EXPECT_EQ(readFile(path_), upgraded_);
    struct stat status {};
    ASSERT_EQ(::stat(path_.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, kOther);
    EXPECT_EQ(status.st_gid, kOther);
    std::array<char, 8> value{};
    EXPECT_EQ(::getxattr(path_.c_str(), "user.scan", value.data(), value.size()), hasAttributes ? 4 : -1);
}

// A user whose new file would not be the owner's any more.
TEST_F(SasUpgrade, LeavesAFileWhoseOwnerItCannotKeep) {
    constexpr uid_t kOwner = 12345;
    constexpr uid_t kUser = 54321;
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can become another user";
    }
    ASSERT_EQ(::chown(path_.c_str(), kOwner, kOwner), 0);
    fs::permissions(path_, fs::perms::all);
    fs::permissions(folder_.path(), fs::perms::all);
    CaughtReports reports;
    EXPECT_TRUE(holdsUnder(Restriction::kNoPrivileges, [this] { return ::setuid(kUser) == 0 && loads(); }));
    expectReportBlock(reports.lines(), "sas.cpp", "Cannot create " + path_);
    EXPECT_EQ(readFile(path_), legacy_);
    EXPECT_EQ(folder_.listing(), "mesh.sas");
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
