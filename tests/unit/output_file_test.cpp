// A file appears under its name as a whole, or not at all.
#include "base/output_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "base/run_file_names.h"
#include "support/restriction.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

namespace fs = std::filesystem;

bool writeWhole(const std::string& path, std::string_view text, Durability durability = Durability::kUnflushed) {
    OutputFile file(path.c_str(), durability);
    file.write(text);
    return file.finish();
}

class Output : public ::testing::Test {
  protected:
    TempFolder folder_;
    std::string path_ = folder_.file("out.obj");
};

TEST_F(Output, CreatesAFile) {
    EXPECT_TRUE(writeWhole(path_, "hello\n"));
    EXPECT_EQ(readFile(path_), "hello\n");
    EXPECT_EQ(folder_.listing(), "out.obj");
}

TEST_F(Output, CreatesAnEmptyFile) {
    EXPECT_TRUE(writeWhole(path_, ""));
    EXPECT_EQ(readFile(path_), "");
}

TEST_F(Output, ReplacesAFile) {
    writeFile(path_, "a long old text");
    EXPECT_TRUE(writeWhole(path_, "new", Durability::kOnDisk));
    EXPECT_EQ(readFile(path_), "new");
    EXPECT_EQ(folder_.listing(), "out.obj");
}

TEST_F(Output, TheOldFileStaysUntilTheNewOneIsFinished) {
    writeFile(path_, "old");
    OutputFile file(path_.c_str());
    file.write(std::string(1000000, 'x'));
    EXPECT_EQ(readFile(path_), "old");
    EXPECT_TRUE(file.finish());
    EXPECT_EQ(readFile(path_).size(), 1000000);
}

TEST_F(Output, WhatIsNotFinishedLeavesNothingBehind) {
    writeFile(path_, "old");
    {
        OutputFile file(path_.c_str());
        file.write(std::string(1000000, 'x'));
    }
    EXPECT_EQ(readFile(path_), "old");
    EXPECT_EQ(folder_.listing(), "out.obj");
}

TEST_F(Output, WritesAcrossTheBuffer) {
    std::string expected;
    OutputFile file(path_.c_str());
    for (int i = 0; expected.size() < 900000; ++i) {
        const std::string piece = std::to_string(i) + std::string(static_cast<std::size_t>(i % 700), '.');
        file.write(piece);
        expected += piece;
    }
    ASSERT_TRUE(file.finish());
    EXPECT_EQ(readFile(path_), expected);
}

TEST_F(Output, WritesPiecesLargerThanTheBufferInOrder) {
    const std::string large(600000, 'L');
    OutputFile file(path_.c_str());
    file.write("first");
    file.write(large);
    file.write("last");
    ASSERT_TRUE(file.finish());
    EXPECT_EQ(readFile(path_), "first" + large + "last");
}

TEST_F(Output, ReservedRoomIsWrittenAsFarAsItWasFilled) {
    std::string expected;
    OutputFile file(path_.c_str());
    for (int i = 0; i < 50; ++i) {
        char* out = file.reserve(OutputFile::kLargestReservation);
        const std::size_t filled = i % 2 == 0 ? 3 : OutputFile::kLargestReservation;
        std::fill_n(out, filled, static_cast<char>('a' + i % 26));
        file.commit(out + filled);
        expected.append(filled, static_cast<char>('a' + i % 26));
    }
    ASSERT_TRUE(file.finish());
    EXPECT_EQ(readFile(path_), expected);
}

TEST_F(Output, FailsInAFolderThatIsNotThere) {
    EXPECT_FALSE(writeWhole(folder_.file("absent/out.obj"), "text"));
    EXPECT_FALSE(exists(folder_.file("absent")));
}

TEST_F(Output, FailsWhereAFolderStands) {
    fs::create_directory(path_);
    EXPECT_FALSE(writeWhole(path_, "text"));
    EXPECT_TRUE(fs::is_directory(path_));
    EXPECT_EQ(folder_.listing(), "out.obj");
}

TEST_F(Output, FailsWithoutAName) {
    EXPECT_FALSE(writeWhole("", "text"));
}

/// The name of the one file that is not finished.
std::string unfinishedIn(const TempFolder& folder) {
    for (const auto& entry : fs::directory_iterator(folder.path())) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with(kUnfinishedPrefix) && name.ends_with(kUnfinishedSuffix)) {
            return name;
        }
    }
    return {};
}

// A thousand of them used to stop every further write.
TEST_F(Output, AbandonedFilesAreRemovedAndStopNothing) {
    for (int i = 0; i < 1200; ++i) {
        const std::string number = std::to_string(1000000000 + i);
        writeFile(folder_.file(std::string(kUnfinishedPrefix) + number + std::string(kUnfinishedSuffix)), "cut");
    }
    EXPECT_TRUE(writeWhole(path_, "text"));
    EXPECT_EQ(readFile(path_), "text");
    removeAbandonedFilesBeside(path_.c_str());
    EXPECT_EQ(folder_.listing(), "out.obj");
}

// Two processes of one number, in two containers, used to delete each other's.
TEST_F(Output, AFileInUseIsNotTakenForAnAbandonedOne) {
    OutputFile file(path_.c_str());
    file.write(std::string(1000000, 'x'));
    const std::string name = unfinishedIn(folder_);
    ASSERT_NE(name, "");
    removeAbandonedFilesBeside(path_.c_str());
    EXPECT_EQ(unfinishedIn(folder_), name);
    EXPECT_TRUE(file.finish());
    EXPECT_EQ(readFile(path_).size(), 1000000);
    EXPECT_EQ(folder_.listing(), "out.obj");
}

TEST_F(Output, OtherFilesAreNotTakenForAbandonedOnes) {
    const std::vector<std::string> names = {".talvek-.tmp", ".talvek-notes.tmp", ".talvek-abcdefghij.txt",
                                            "talvek-abcdefghij.tmp"};
    for (const std::string& name : names) {
        writeFile(folder_.file(name), "mine");
    }
    fs::create_directory(folder_.file(".talvek-abcdefghij.tmp"));
    removeAbandonedFilesBeside(path_.c_str());
    for (const std::string& name : names) {
        EXPECT_TRUE(exists(folder_.file(name))) << name;
    }
    EXPECT_TRUE(exists(folder_.file(".talvek-abcdefghij.tmp")));
}

TEST_F(Output, ReplacesTheVeryFileOnly) {
    writeFile(path_, "old");
    const auto stamp = system::stampOf(path_.c_str());
    ASSERT_TRUE(stamp);
    {
        OutputFile file(path_.c_str(), Durability::kUnflushed, stamp);
        file.write("new");
        // Another process puts a file of its own in the place.
        writeFile(folder_.file("other"), "yes");
        fs::rename(folder_.file("other"), path_);
        EXPECT_FALSE(file.finish());
    }
    EXPECT_EQ(readFile(path_), "yes");
    OutputFile file(path_.c_str(), Durability::kUnflushed, system::stampOf(path_.c_str()));
    file.write("new");
    EXPECT_TRUE(file.finish());
    EXPECT_EQ(readFile(path_), "new");
    EXPECT_EQ(folder_.listing(), "out.obj");
}

TEST_F(Output, TwoFilesAtATimeDoNotMeet) {
    OutputFile first(path_.c_str());
    OutputFile second(folder_.file("second.obj").c_str());
    first.write("1");
    second.write("2");
    EXPECT_TRUE(second.finish());
    EXPECT_TRUE(first.finish());
    EXPECT_EQ(readFile(path_), "1");
    EXPECT_EQ(readFile(folder_.file("second.obj")), "2");
}

TEST_F(Output, WritesSeveralFilesAtOnce) {
    const std::vector<std::string> paths = {path_, folder_.file("second.obj"), folder_.file("third.obj")};
    writeFile(paths[1], "old");
    const std::string text(700000, 'x');
    OutputFile file(paths);
    EXPECT_TRUE(file.isOpen());
    file.write("first");
    file.write(text);
    file.write("last");
    EXPECT_EQ(readFile(paths[1]), "old");
    EXPECT_TRUE(file.finish());
    for (const std::string& path : paths) {
        EXPECT_EQ(readFile(path), "first" + text + "last") << path;
    }
    EXPECT_EQ(folder_.listing(), "out.obj second.obj third.obj");
}

TEST_F(Output, WritesTheSameFileTwiceAtOnce) {
    const std::vector<std::string> paths = {path_, path_};
    OutputFile file(paths);
    file.write("text");
    EXPECT_TRUE(file.finish());
    EXPECT_EQ(readFile(path_), "text");
    EXPECT_EQ(folder_.listing(), "out.obj");
}

TEST_F(Output, OneFileThatFailsDoesNotKeepTheOthersFromBeingFinished) {
    const std::vector<std::string> paths = {folder_.file("absent/out.obj"), path_, folder_.file("folder")};
    fs::create_directory(paths[2]);
    OutputFile file(paths);
    file.write("text");
    EXPECT_FALSE(file.finish());
    EXPECT_EQ(readFile(path_), "text");
    EXPECT_EQ(folder_.listing(), "folder out.obj");
}

TEST_F(Output, SeveralFilesThatAreNotFinishedLeaveNothingBehind) {
    const std::vector<std::string> paths = {path_, folder_.file("second.obj")};
    {
        OutputFile file(paths);
        file.write(std::string(1000000, 'x'));
    }
    EXPECT_EQ(folder_.listing(), "");
}

TEST_F(Output, DoesNotReplaceAFileThatMayNotBeWritten) {
    writeFile(path_, "old");
    fs::permissions(path_, fs::perms::owner_read | fs::perms::others_read);
#ifdef _WIN32
    EXPECT_FALSE(writeWhole(path_, "new"));
#else
    fs::permissions(folder_.path(), fs::perms::all);
    EXPECT_TRUE(holdsUnder(Restriction::kNoPrivileges, [this] { return !writeWhole(path_, "new"); }));
#endif
    EXPECT_EQ(readFile(path_), "old");
    EXPECT_EQ(folder_.listing(), "out.obj");
    fs::permissions(path_, fs::perms::all);
}

#ifndef _WIN32
TEST_F(Output, KeepsThePermissionsOfTheOldFile) {
    writeFile(path_, "old");
    fs::permissions(path_, static_cast<fs::perms>(0640));
    EXPECT_TRUE(writeWhole(path_, "new"));
    EXPECT_EQ(fs::status(path_).permissions(), static_cast<fs::perms>(0640));
}

// The content used to stand in a file that others could read until it was complete.
TEST_F(Output, HasThePermissionsFromTheBeginning) {
    writeFile(path_, "old");
    fs::permissions(path_, static_cast<fs::perms>(0600));
    OutputFile file(path_.c_str());
    const fs::perms found = fs::status(folder_.file(unfinishedIn(folder_))).permissions();
    EXPECT_EQ(found, static_cast<fs::perms>(0600));
}

TEST_F(Output, FollowsASymbolicLink) {
    fs::create_directory(folder_.file("elsewhere"));
    writeFile(folder_.file("elsewhere/real.obj"), "old");
    fs::create_symlink("elsewhere/real.obj", path_);
    EXPECT_TRUE(writeWhole(path_, "new"));
    EXPECT_TRUE(fs::is_symlink(path_));
    EXPECT_EQ(readFile(folder_.file("elsewhere/real.obj")), "new");
}

// The link itself used to be replaced by a file.
TEST_F(Output, FollowsASymbolicLinkToAFileThatIsNotThereYet) {
    fs::create_directory(folder_.file("elsewhere"));
    fs::create_symlink("elsewhere/second", path_);
    fs::create_symlink(folder_.file("elsewhere/real.obj"), folder_.file("elsewhere/second"));
    EXPECT_TRUE(writeWhole(path_, "new"));
    EXPECT_TRUE(fs::is_symlink(path_));
    EXPECT_EQ(readFile(folder_.file("elsewhere/real.obj")), "new");
}

// The last link that the system follows used to be one too many.
TEST_F(Output, FollowsAsManySymbolicLinksAsTheSystem) {
    writeFile(folder_.file("0"), "old");
    for (int i = 1; i <= 50; ++i) {
        const std::string link = folder_.file(std::to_string(i));
        fs::create_symlink(std::to_string(i - 1), link);
        EXPECT_EQ(writeWhole(link, std::to_string(i)), system::File::openForReading(link.c_str()).isOpen()) << i;
    }
    EXPECT_EQ(readFile(folder_.file("0")), "40");
}

TEST_F(Output, FailsAtSymbolicLinksInACircle) {
    fs::create_symlink("b", folder_.file("a"));
    fs::create_symlink("a", folder_.file("b"));
    EXPECT_FALSE(writeWhole(folder_.file("a"), "new"));
    EXPECT_EQ(folder_.listing(), "a b");
    EXPECT_TRUE(fs::is_symlink(folder_.file("a")));
}

TEST_F(Output, WritesDirectlyToADevice) {
    EXPECT_TRUE(writeWhole("/dev/null", "text"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(Output, AFullDeviceDoesNotKeepAFileFromBeingFinished) {
    const std::vector<std::string> paths = {"/dev/full", path_};
    const std::string text(1000000, 'x');
    OutputFile file(paths);
    file.write(text);
    file.write("last");
    EXPECT_FALSE(file.finish());
    EXPECT_EQ(readFile(path_), text + "last");
}

TEST_F(Output, LeavesADeviceAloneThatItDoesNotFinish) {
    OutputFile("/dev/null").write("text");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(Output, TellsThatADeviceIsFull) {
    EXPECT_FALSE(writeWhole("/dev/full", "text"));
    EXPECT_FALSE(writeWhole("/dev/full", std::string(1000000, 'x')));
}

TEST_F(Output, KeepsTheOldFileWhenThereIsNoRoomForTheNewOne) {
    writeFile(path_, "old");
    for (const std::size_t size : {std::size_t{1001}, std::size_t{300000}}) {
        EXPECT_TRUE(holdsUnder(Restriction::kFilesUpTo1000Bytes,
                               [this, size] { return !writeWhole(path_, std::string(size, 'x')); }));
        EXPECT_EQ(readFile(path_), "old");
        EXPECT_EQ(folder_.listing(), "out.obj");
    }
}
#else
TEST_F(Output, WritesDirectlyToADevice) {
    EXPECT_TRUE(writeWhole("NUL", "text"));
}
#endif

TEST_F(Output, LargePiecesAreNotLostWithoutAWord) {
    const std::string large(600000, 'x');
    OutputFile nowhere(folder_.file("missing/out.obj").c_str());
    nowhere.write(large);
    nowhere.write(large);
    EXPECT_FALSE(nowhere.finish());
    OutputFile file(path_.c_str());
    file.write("small");
    file.write(large);
    file.write(large);
    EXPECT_TRUE(file.finish());
    EXPECT_EQ(readFile(path_), "small" + large + large);
}

}  // namespace
}  // namespace talvek::test
