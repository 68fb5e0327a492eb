// Text files have the line ends of their platform.
#include "api/session/report.h"

#include <gtest/gtest.h>

#include "support/test_files.h"

namespace talvek::test {
namespace {

class LineEnds : public ::testing::Test {
  protected:
    std::string written(std::string_view text, std::string_view lineEnd) {
        const std::string path = folder_.file("text");
        system::File file = system::File::openForWriting(path.c_str());
        EXPECT_TRUE(writeText(file, text, lineEnd));
        EXPECT_TRUE(file.close());
        return readFile(path);
    }

    TempFolder folder_;
};

TEST_F(LineEnds, MayBeOneCharacterOrTwo) {
    for (const char* text : {"", "\n", "a", "a\n", "\n\n", "one\ntwo\n\nthree", "\r\n"}) {
        EXPECT_EQ(written(text, "\n"), text);
        std::string expected;
        for (const char* c = text; *c != '\0'; ++c) {
            expected += *c == '\n' ? std::string("\r\n") : std::string(1, *c);
        }
        EXPECT_EQ(written(text, "\r\n"), expected);
    }
}

TEST_F(LineEnds, ThatCannotBeWrittenAreTold) {
    const std::string path = folder_.file("text");
    writeFile(path, "");
    system::File file = system::File::openForReading(path.c_str());
    EXPECT_FALSE(writeText(file, "text", "\n"));
    EXPECT_FALSE(writeText(file, "text", "\r\n"));
}

#ifndef _WIN32
// An empty piece can be written to a full device, what ends the line cannot.
TEST_F(LineEnds, OfEmptyLinesThatCannotBeWrittenAreTold) {
    system::File file = system::File::openForWriting("/dev/full");
    EXPECT_FALSE(writeText(file, "\n", "\r\n"));
}
#endif

TEST(Files, MovedToThemselvesStayOpen) {
    const TempFolder folder;
    system::File file = system::File::openForWriting(folder.file("text").c_str());
    system::File& itself = file;
    file = std::move(itself);
    EXPECT_TRUE(file.isOpen());
}

}  // namespace
}  // namespace talvek::test
