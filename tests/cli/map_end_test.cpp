// Mineral maps that may not be read, may not be written, or are gone when the run wants them. A POSIX host is needed to
// bring this about.
#ifndef _WIN32
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>

#include "cli/fixtures.h"
#include "cli/program.h"
#include "support/bitmaps.h"
#include "support/restriction.h"
#include "support/test_files.h"
#include "talvek/support/exit_status.h"

namespace talvek::test {
namespace {

namespace fs = std::filesystem;

class MapEnd : public ::testing::Test {
  protected:
    void SetUp() override {
        writeFixtures(folder_);
        fs::permissions(folder_.path(), fs::perms::all);
        map_ = readFile(folder_.file("textured.bmp"));
    }
    void TearDown() override { fs::permissions(folder_.path(), fs::perms::all); }

    /// Whether a run of textured.obj in mode 3, that has to obey permissions, ends so and says so.
    bool runEnds(std::vector<std::string> options, unsigned status, const std::string& message) {
        options.insert(options.begin(), {"run", folder_.file("textured.obj"), "--mode", "3"});
        return holdsUnder(Restriction::kNoPrivileges, [&] {
            const ProgramResult result = runProgram(options);
            const bool isAsWanted = result.end.code == status && result.output.find(message) != std::string::npos;
            if (!isAsWanted) {
                std::fprintf(stderr, "status %u\n%s", result.end.code, result.output.c_str());
            }
            return isAsWanted;
        });
    }

    TempFolder folder_;
    std::string map_;
};

TEST_F(MapEnd, MapThatMayNotBeReadIsRefused) {
    fs::permissions(folder_.file("textured.bmp"), fs::perms::none);
    EXPECT_TRUE(runEnds({}, host::kExitRefused, "textured.bmp: the file cannot be opened; look for its permissions"));
    EXPECT_TRUE(runEnds({"--mineral-map", folder_.file("white.bmp"), "--replace-map"}, host::kExitRefused,
                        "textured.bmp: the file cannot be opened; look for its permissions"));
}

TEST_F(MapEnd, PictureThatMayNotBeReadIsRefused) {
    fs::permissions(folder_.file("white.bmp"), fs::perms::none);
    EXPECT_TRUE(runEnds({"--mineral-map", folder_.file("white.bmp"), "--replace-map"}, host::kExitRefused,
                        "white.bmp: the file cannot be opened; look for its permissions"));
    EXPECT_EQ(readFile(folder_.file("textured.bmp")), map_);
}

TEST_F(MapEnd, MapThatMayNotBeWrittenIsLeft) {
    fs::permissions(folder_.file("textured.bmp"),
                    fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    EXPECT_TRUE(runEnds({"--mineral-map", folder_.file("white.bmp"), "--replace-map"}, host::kExitOutput,
                        "textured.bmp: the mineral map cannot be written; look for its permissions"));
    EXPECT_EQ(readFile(folder_.file("textured.bmp")), map_);
    EXPECT_FALSE(exists(folder_.file("textured.inf")));
}

TEST_F(MapEnd, FolderThatMayNotBeWrittenIsToldBeforeTheMapIsReplaced) {
    const std::string before = folder_.listing();
    fs::permissions(folder_.path(), fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_read |
                                        fs::perms::group_exec | fs::perms::others_read | fs::perms::others_exec);
    EXPECT_TRUE(runEnds({"--mineral-map", folder_.file("white.bmp"), "--replace-map"}, host::kExitOutput,
                        "no file can be created in this folder"));
    EXPECT_EQ(readFile(folder_.file("textured.bmp")), map_);
    EXPECT_EQ(folder_.listing(), before);
}

TEST_F(MapEnd, MapThatDoesNotFitOnTheDiskLeavesTheOldOne) {
    writeFile(folder_.file("large.bmp"), bitmapBytes(plainBitmap(32, 32, kWhite)));
    EXPECT_TRUE(holdsUnder(Restriction::kFilesUpTo1000Bytes, [this] {
        const ProgramResult result = runProgram({"run", folder_.file("textured.obj"), "--mode", "3", "--mineral-map",
                                                 folder_.file("large.bmp"), "--replace-map"});
        return result.end.code == host::kExitOutput && result.output.find("for room on the disk") != std::string::npos;
    }));
    EXPECT_EQ(readFile(folder_.file("textured.bmp")), map_);
    EXPECT_EQ(folder_.listing().find(".tmp"), std::string::npos) << folder_.listing();
}

std::string restOf(host::ChildProcess& program) {
    std::string output;
    std::array<char, 4096> piece{};
    while (const std::size_t got = program.readOutput(piece.data(), piece.size())) {
        output.append(piece.data(), got);
    }
    return output;
}

/// The program waits at a log that nobody reads, between its own look at the map and the library's.
TEST_F(MapEnd, MapThatIsGoneWhenTheRunWantsItIsTold) {
    const std::string log = folder_.file("lines");
    ASSERT_EQ(::mkfifo(log.c_str(), 0600), 0);
    host::ChildProcess program(programCommand({"run", folder_.file("partly.obj"), "--mode", "3", "--log", log}),
                               host::ChildErrors::kWithOutput);
    ASSERT_TRUE(readUntil(program, "the surface does not move there"));
    fs::remove(folder_.file("partly.bmp"));
    const int reader = ::open(log.c_str(), O_RDONLY);
    ASSERT_GE(reader, 0);
    const std::string output = restOf(program);
    ::close(reader);
    EXPECT_NE(output.find("partly.bmp: the mineral map was usable before the run, and the library could not read it"),
              std::string::npos)
        << output;
    const host::ChildEnd end = program.wait();
    EXPECT_TRUE(end.isRegular);
    EXPECT_EQ(end.code, unsigned{host::kExitRefused});
    EXPECT_EQ(folder_.listing().find(".tmp"), std::string::npos) << folder_.listing();
}

}  // namespace
}  // namespace talvek::test
#endif
