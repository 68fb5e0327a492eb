#include "talvek/support/same_file.h"

#include <gtest/gtest.h>

#include "support/test_files.h"

namespace talvek::test {
namespace {

namespace fs = std::filesystem;
using host::isSameFile;

TEST(SameFile, ByOtherWaysToIt) {
    const TempFolder folder;
    fs::create_directory(folder.file("inner"));
    writeFile(folder.file("a"), "a");
    writeFile(folder.file("b"), "a");
    for (const char* name : {"a", "absent"}) {
        EXPECT_TRUE(isSameFile(folder.file(name), folder.file(std::string("inner/../") + name))) << name;
        EXPECT_TRUE(isSameFile(folder.file(name), folder.file(std::string("./") + name))) << name;
        EXPECT_FALSE(isSameFile(folder.file(name), folder.file("b"))) << name;
        EXPECT_FALSE(isSameFile(folder.file(name), folder.file(std::string("inner/") + name))) << name;
    }
}

TEST(SameFile, FromTheWorkingDirectory) {
    const TempFolder folder;
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    EXPECT_TRUE(isSameFile("absent", folder.file("absent")));
    EXPECT_FALSE(isSameFile("absent", "absent.obj"));
    fs::current_path(before);
}

TEST(SameFile, CaseCountsWhereTheSystemMakesItCount) {
    const TempFolder folder;
#ifdef _WIN32
    EXPECT_TRUE(isSameFile(folder.file("Stone.obj_w_1.obj"), folder.file("STONE.OBJ_W_1.OBJ")));
    EXPECT_TRUE(isSameFile(folder.path() + "/\xC3\xA4.obj", folder.path() + "/\xC3\x84.obj"));
#else
    EXPECT_FALSE(isSameFile(folder.file("Stone.obj_w_1.obj"), folder.file("STONE.OBJ_W_1.OBJ")));
#endif
}

#ifndef _WIN32
TEST(SameFile, LinksAreFollowed) {
    const TempFolder folder;
    writeFile(folder.file("a"), "a");
    fs::create_hard_link(folder.file("a"), folder.file("hard"));
    fs::create_symlink(folder.file("a"), folder.file("soft"));
    fs::create_symlink("absent", folder.file("dangling"));
    EXPECT_TRUE(isSameFile(folder.file("a"), folder.file("hard")));
    EXPECT_TRUE(isSameFile(folder.file("a"), folder.file("soft")));
    EXPECT_TRUE(isSameFile(folder.file("dangling"), folder.file("absent")));
    EXPECT_TRUE(isSameFile(folder.file("absent"), folder.file("dangling")));
    EXPECT_FALSE(isSameFile(folder.file("dangling"), folder.file("a")));
}
#endif

}  // namespace
}  // namespace talvek::test
