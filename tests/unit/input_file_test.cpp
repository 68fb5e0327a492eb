// Bytes in, and the plain calls to the system below them.
#include "base/input_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/error_reports.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

namespace fs = std::filesystem;

TEST(Input, ReadsAsMuchAsThereIs) {
    const TempFolder folder;
    writeFile(folder.file("a"), "0123456789");
    InputFile file(folder.file("a").c_str());
    ASSERT_TRUE(file.isOpen());
    EXPECT_EQ(file.remaining(), 10);
    char bytes[16] = {};
    EXPECT_EQ(file.read(bytes, 4), 4);
    EXPECT_EQ(std::string(bytes), "0123");
    EXPECT_EQ(file.remaining(), 6);
    EXPECT_EQ(file.read(bytes, 16), 6);
    EXPECT_EQ(file.remaining(), 0);
    EXPECT_EQ(file.read(bytes, 16), 0);
}

TEST(Input, ReadsEveryByteAsItIs) {
    const TempFolder folder;
    const std::string content("\r\n\0\x1a\xff\n", 6);
    writeFile(folder.file("a"), content);
    InputFile file(folder.file("a").c_str());
    char bytes[16];
    ASSERT_EQ(file.read(bytes, sizeof bytes), 6);
    EXPECT_EQ(std::string(bytes, 6), content);
}

TEST(Input, IsNotOpenWithoutAFile) {
    const TempFolder folder;
    EXPECT_FALSE(InputFile(folder.file("absent").c_str()).isOpen());
    EXPECT_FALSE(InputFile("").isOpen());
    EXPECT_EQ(InputFile(folder.file("absent").c_str()).remaining(), -1);
}

#ifndef _WIN32
TEST(Input, DoesNotKnowWhatIsLeftInADevice) {
    InputFile file("/dev/zero");
    ASSERT_TRUE(file.isOpen());
    EXPECT_EQ(file.remaining(), -1);
    char bytes[16];
    EXPECT_EQ(file.read(bytes, sizeof bytes), 16);
}
#endif

TEST(SystemFiles, AppendBehindWhatIsThere) {
    const TempFolder folder;
    for (const std::string_view text : {"one", "two"}) {
        system::File file = system::File::openForAppending(folder.file("a").c_str());
        EXPECT_TRUE(file.write(text.data(), text.size()));
        EXPECT_TRUE(file.close());
    }
    EXPECT_EQ(readFile(folder.file("a")), "onetwo");
}

TEST(SystemFiles, ANewFileTakesNoNameThatIsTaken) {
    const TempFolder folder;
    writeFile(folder.file("a"), "old");
    EXPECT_FALSE(system::File::createNew(folder.file("a").c_str()).isOpen());
    EXPECT_EQ(readFile(folder.file("a")), "old");
}

TEST(SystemFiles, WritingEmptiesAFile) {
    const TempFolder folder;
    writeFile(folder.file("a"), "old");
    EXPECT_TRUE(system::File::openForWriting(folder.file("a").c_str()).close());
    EXPECT_EQ(readFile(folder.file("a")), "");
}

TEST(SystemFiles, SkipMovesForward) {
    const TempFolder folder;
    writeFile(folder.file("a"), "0123456789");
    system::File file = system::File::openForReading(folder.file("a").c_str());
    char digit = 0;
    ASSERT_TRUE(file.skip(3));
    EXPECT_EQ(file.read(&digit, 1), 1);
    EXPECT_EQ(digit, '3');
    ASSERT_TRUE(file.skip(2));
    EXPECT_EQ(file.read(&digit, 1), 1);
    EXPECT_EQ(digit, '6');
    EXPECT_EQ(file.size(), 10);
}

TEST(SystemFiles, AMovedFileIsClosedOnce) {
    const TempFolder folder;
    system::File first = system::File::openForWriting(folder.file("a").c_str());
    system::File second = std::move(first);
    EXPECT_TRUE(second.isOpen());
    first = system::File::openForWriting(folder.file("b").c_str());
    first = std::move(second);
    EXPECT_TRUE(first.write("x", 1));
    EXPECT_TRUE(first.close());
    EXPECT_TRUE(first.close()) << "nothing is left to fail";
    EXPECT_EQ(readFile(folder.file("a")), "x");
}

TEST(SystemFiles, TheirKindIsTold) {
    const TempFolder folder;
    writeFile(folder.file("a"), "");
    EXPECT_EQ(system::kindOf(folder.file("a").c_str()), system::FileKind::kRegular);
    EXPECT_EQ(system::kindOf(folder.file("b").c_str()), system::FileKind::kAbsent);
    EXPECT_EQ(system::kindOf(folder.path().c_str()), system::FileKind::kOther);
}

TEST(SystemClock, TellsHoursMinutesAndSeconds) {
    EXPECT_TRUE(isTimeOfDay(system::timeOfDay())) << system::timeOfDay();
}

TEST(SystemFolder, IsTheWorkingDirectory) {
    EXPECT_EQ(system::currentDirectory(), fs::current_path().string());
}

}  // namespace
}  // namespace talvek::test
