// Output that goes nowhere. A full disk used to leave a script with half an object and the status of success.
#ifndef _WIN32
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

#include "support/meshes.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

class LostOutput : public ::testing::TestWithParam<const char*> {};

TEST_P(LostOutput, IsAnError) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "there is no /dev/full here";
    }
    const TempFolder folder;
    writeFile(folder.file("plane.obj"), objText(*makePlane(20)));
    const std::string command = "cd '" + folder.path() + "' && '" TALVEK_PROGRAM "' " + GetParam() + " 2> errors";
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 21);
    EXPECT_NE(readFile(folder.file("errors")).find("standard output cannot be written"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Commands, LostOutput,
                         ::testing::Values("info plane.obj --json > /dev/full", "info plane.obj > /dev/full",
                                           "check plane.obj --json > /dev/full", "check plane.obj > /dev/full",
                                           "run plane.obj > /dev/full", "convert plane.obj a.ply > /dev/full",
                                           "help > /dev/full", "--version > /dev/full", "info plane.obj >&-"));

}  // namespace
}  // namespace talvek::test
#endif
