// Hosts whose standard streams are broken or closed, and hosts under a limit for the size of files: a run goes on as
// far as it can, and nothing ends the process.
#ifndef _WIN32
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "interface/host_session.h"
#include "support/meshes.h"

namespace talvek::test {
namespace {

class HostStreams : public HostSession {
  protected:
    void SetUp() override {
        HostSession::SetUp();
        nameMesh(objText(*makeSphere(10, 1)));
        setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
    }

    /// Arranges a process of its own, in which signals do what they do by default, and runs the session there. Returns
    /// how the process ended: the run's result, or -1000 less the signal.
    template <typename Arrange>
    int resultAfter(Arrange arrange) {
        const pid_t child = ::fork();
        if (child == 0) {
            ::signal(SIGPIPE, SIG_DFL);
            ::signal(SIGXFSZ, SIG_DFL);
            arrange();
            ::_exit(static_cast<unsigned char>(-TALVEK_CALL(talvekStart)()));
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        return WIFEXITED(status) ? -WEXITSTATUS(status) : -1000 - WTERMSIG(status);
    }
};

TEST_F(HostStreams, ABrokenPipeEndsNothing) {
    EXPECT_EQ(resultAfter([] {
                  int ends[2];
                  ASSERT_EQ(::pipe(ends), 0);
                  ::dup2(ends[1], STDOUT_FILENO);
                  ::dup2(ends[1], STDERR_FILENO);
                  ::close(ends[1]);
                  ::close(ends[0]);
              }),
              TALVEK_OK);
    EXPECT_TRUE(exists(folder_.file("stone.obj.obj_w_1.obj")));
    EXPECT_TRUE(text("stone.inf").ends_with("stone.obj ...\n"));
}

TEST_F(HostStreams, ALimitForTheSizeOfFilesEndsNothing) {
    EXPECT_EQ(resultAfter([] {
                  const rlimit limit = {100, 100};
                  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
                  ::close(STDOUT_FILENO);
              }),
              TALVEK_OK);
    EXPECT_EQ(folder_.listing(), "stone.inf stone.obj");
}

// What the host blocks stays blocked, and what it waits for still comes.
TEST_F(HostStreams, TheHostsOwnSignalsStayWhatTheyAre) {
    EXPECT_EQ(resultAfter([] {
                  sigset_t pipe;
                  ::sigemptyset(&pipe);
                  ::sigaddset(&pipe, SIGPIPE);
                  ::sigprocmask(SIG_BLOCK, &pipe, nullptr);
                  ::raise(SIGPIPE);
                  static_cast<void>(TALVEK_CALL(talvekStart)());
                  sigset_t pending;
                  sigset_t blocked;
                  ::sigpending(&pending);
                  ::sigprocmask(SIG_SETMASK, nullptr, &blocked);
                  if (::sigismember(&pending, SIGPIPE) != 1 || ::sigismember(&blocked, SIGPIPE) != 1 ||
                      ::sigismember(&blocked, SIGXFSZ) != 0) {
                      ::_exit(99);
                  }
              }),
              TALVEK_OK);
}

// The run log used to take the place of standard output, and got every line twice.
TEST_F(HostStreams, NoFileTakesThePlaceOfAClosedStream) {
    ASSERT_EQ(start(), TALVEK_OK);
    const std::string log = text("stone.inf");
    const std::string frame = text("stone.obj.obj_w_1.obj");
    const std::vector<int> closed[] = {{STDOUT_FILENO}, {STDERR_FILENO}, {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}};
    for (const std::vector<int>& streams : closed) {
        EXPECT_EQ(resultAfter([&streams] {
                      for (const int stream : streams) {
                          ::close(stream);
                      }
                  }),
                  TALVEK_OK);
        EXPECT_EQ(text("stone.inf"), log);
        EXPECT_EQ(text("stone.obj.obj_w_1.obj"), frame);
    }
}

// The report used to stand in the run log, or in the mesh's own place.
TEST_F(HostStreams, NoReportGoesIntoAFile) {
    writeFile(mesh_, "f 9 9 9\n");
    ASSERT_EQ(start(), TALVEK_ERROR_MESH);
    const std::string log = text("stone.inf");
    EXPECT_EQ(resultAfter([] {
                  ::close(STDOUT_FILENO);
                  ::close(STDERR_FILENO);
              }),
              TALVEK_ERROR_MESH);
    EXPECT_EQ(text("stone.inf"), log);
    EXPECT_EQ(text("stone.obj"), "f 9 9 9\n");
}

}  // namespace
}  // namespace talvek::test
#endif
