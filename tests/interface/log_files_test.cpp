// The host's own text files.
#include "interface/host_session.h"

namespace talvek::test {
namespace {

class LogFiles : public HostSession {
  protected:
    std::int32_t append(const char* text) {
        return captured([this, text] { return TALVEK_CALL(talvekAppendLogFile)(path_.c_str(), text); });
    }
    std::int32_t reset() { return TALVEK_CALL(talvekResetLogFile)(path_.c_str()); }

    std::string path_ = folder_.file("host.log");
};

TEST_F(LogFiles, AreEmptiedOrCreated) {
    EXPECT_EQ(reset(), TALVEK_OK);
    EXPECT_EQ(readFile(path_), "");
    writeFile(path_, "old");
    EXPECT_EQ(reset(), TALVEK_OK);
    EXPECT_EQ(readFile(path_), "");
}

TEST_F(LogFiles, GrowByWhatIsPrinted) {
    EXPECT_EQ(append("one\n"), TALVEK_OK);
    EXPECT_EQ(output(), "one\n");
    EXPECT_EQ(append("two"), TALVEK_OK);
    EXPECT_EQ(append(""), TALVEK_OK);
    EXPECT_EQ(output(), "");
    EXPECT_EQ(text("host.log"), "one\ntwo");
}

TEST_F(LogFiles, TakeTextThatLooksLikeAFormat) {
    EXPECT_EQ(append("100%% %s %n %d %5.2f %"), TALVEK_OK);
    EXPECT_EQ(output(), "100% %s %n %d %5.2f %");
    EXPECT_EQ(text("host.log"), output());
}

TEST_F(LogFiles, TakeLongText) {
    const std::string text(100000, 'x');
    EXPECT_EQ(append(text.c_str()), TALVEK_OK);
    EXPECT_EQ(output(), text);
    EXPECT_EQ(readFile(path_), text);
}

TEST_F(LogFiles, HaveThePlatformsLineEnds) {
    EXPECT_EQ(append("a\n\nb"), TALVEK_OK);
#ifdef _WIN32
    EXPECT_EQ(readFile(path_), "a\r\n\r\nb");
#else
    EXPECT_EQ(readFile(path_), "a\n\nb");
#endif
}

TEST_F(LogFiles, ThatCannotBeOpenedAreTold) {
    path_ = folder_.file("absent/host.log");
    EXPECT_EQ(reset(), TALVEK_ERROR_RANGE);
    EXPECT_EQ(append("text"), TALVEK_ERROR_RANGE);
    path_ = folder_.path();
    EXPECT_EQ(reset(), TALVEK_ERROR_RANGE);
    EXPECT_EQ(append("text"), TALVEK_ERROR_RANGE);
    path_ = "";
    EXPECT_EQ(reset(), TALVEK_ERROR_RANGE);
}

TEST_F(LogFiles, WithoutAPathOrATextAreRefused) {
    EXPECT_EQ(TALVEK_CALL(talvekResetLogFile)(nullptr), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekAppendLogFile)(nullptr, "text"), TALVEK_ERROR_NULL);
    EXPECT_EQ(append(nullptr), TALVEK_ERROR_NULL);
    EXPECT_EQ(folder_.listing(), "");
}

#ifndef _WIN32
TEST_F(LogFiles, OnAFullDeviceAreTold) {
    path_ = "/dev/full";
    EXPECT_EQ(append("text"), TALVEK_ERROR_RANGE);
}
#endif

}  // namespace
}  // namespace talvek::test
