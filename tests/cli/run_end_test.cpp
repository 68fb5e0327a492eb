// Runs that do not end by themselves: cancelled, killed, without room. A POSIX host is needed to end them this way.
#ifndef _WIN32
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include "Vexo_Lib/load3d.h"
#include "cli/program.h"
#include "support/meshes.h"
#include "support/test_files.h"
#include "talvek/results/run_record.h"
#include "talvek/support/exit_status.h"

namespace talvek::test {
namespace {

/// A run that goes on for as long as anyone may wait.
std::vector<std::string> longRun(const std::string& mesh) {
    return programCommand({"run", mesh, "--epochs", "4000", "--verbose"});
}

std::string restOfOutput(host::ChildProcess& child) {
    std::string output;
    std::array<char, 4096> piece{};
    while (const std::size_t got = child.readOutput(piece.data(), piece.size())) {
        output.append(piece.data(), got);
    }
    return output;
}

/// The process that the program has started to run the library in.
pid_t processOfRun(std::uint64_t program) {
    const std::string id = std::to_string(program);
    std::ifstream children("/proc/" + id + "/task/" + id + "/children");
    pid_t child = 0;
    children >> child;
    return child;
}

class RunEnd : public ::testing::Test {
  protected:
    void SetUp() override { writeFile(mesh_, objText(*makeSphere(10, 3))); }

    int countWholeFrames() const {
        const std::unique_ptr<Object3D> mesh = LoadMeshFile(mesh_.c_str());
        int count = 0;
        for (; exists(mesh_ + ".obj_w_" + std::to_string(count + 1) + ".obj"); ++count) {
            const auto frame = LoadMeshFile((mesh_ + ".obj_w_" + std::to_string(count + 1) + ".obj").c_str());
            EXPECT_TRUE(frame != nullptr && frame->numVertices == mesh->numVertices &&
                        frame->numFaces == mesh->numFaces);
        }
        return count;
    }

    TempFolder folder_;
    std::string mesh_ = folder_.file("stone.obj");
};

/// What a simulation leaves that is ended in the middle of writing, which only some of them are.
void leaveUnfinishedFile(const std::string& mesh) {
    writeFile((std::filesystem::path(mesh).parent_path() / ".talvek-abandoned0.tmp").string(), "cut");
}

void cancelWith(int signal, const std::string& mesh, const std::string& epoch) {
    host::ChildProcess program(longRun(mesh), host::ChildErrors::kWithOutput);
    ASSERT_TRUE(readUntil(program, epoch));
    leaveUnfinishedFile(mesh);
    ::kill(static_cast<pid_t>(program.id()), signal);
    EXPECT_NE(restOfOutput(program).find("cancelled; "), std::string::npos);
    const host::ChildEnd end = program.wait();
    EXPECT_TRUE(end.isRegular);
    EXPECT_EQ(end.code, unsigned{host::kExitCancelled});
}

/// Shells start jobs behind them in this way, and nohup does so with SIGHUP.
TEST_F(RunEnd, SignalThatIsIgnoredEndsNothing) {
    ::signal(SIGINT, SIG_IGN);
    host::ChildProcess program(programCommand({"run", mesh_, "--epochs", "30", "--verbose"}),
                               host::ChildErrors::kWithOutput);
    ::signal(SIGINT, SIG_DFL);
    ASSERT_TRUE(readUntil(program, "epoch: 4\t"));
    ::kill(static_cast<pid_t>(program.id()), SIGINT);
    ::kill(processOfRun(program.id()), SIGINT);
    EXPECT_NE(restOfOutput(program).find("30 frames"), std::string::npos);
    EXPECT_EQ(program.wait().code, unsigned{host::kExitDone});
}

/// Frames, the run log and the summary files of two runs would be mixed up.
TEST_F(RunEnd, SecondRunWithTheSameNamesIsRefused) {
    host::ChildProcess first(longRun(mesh_), host::ChildErrors::kWithOutput);
    ASSERT_TRUE(readUntil(first, "epoch: 1\t"));
    const std::string holder = "another run is writing to the same names (process " + std::to_string(first.id()) + ")";
    const ProgramResult second = runProgram({"run", mesh_});
    EXPECT_EQ(second.end.code, unsigned{host::kExitRefused});
    EXPECT_NE(second.output.find(holder), std::string::npos) << second.output;
    // The run log is called the same.
    const std::string other = mesh_.substr(0, mesh_.size() - 4) + ".sas";
    ASSERT_EQ(runProgram({"convert", mesh_, other}).end.code, unsigned{host::kExitDone});
    EXPECT_NE(runProgram({"run", other}).output.find(holder), std::string::npos);
    EXPECT_EQ(runProgram({"run", mesh_, "--out", folder_.file("out")}).end.code, unsigned{host::kExitDone});
    ::kill(static_cast<pid_t>(first.id()), SIGKILL);
    first.wait();
    EXPECT_EQ(runProgram({"run", mesh_}).end.code, unsigned{host::kExitDone});
    EXPECT_EQ(folder_.listing().find(".lck"), std::string::npos) << folder_.listing();
}

TEST_F(RunEnd, CancelledRunSaysSoInItsRecord) {
    cancelWith(SIGINT, mesh_, "epoch: 4\t");
    const host::RunRecord record = host::readRunRecord(mesh_ + ".run.json");
    EXPECT_EQ(record.outcome, host::RunOutcome::kCancelled);
    EXPECT_EQ(record.epochs.size(), 4000U);
    EXPECT_FALSE(record.epochs[2].frame.sha256.empty());
    EXPECT_TRUE(record.epochs[3999].frame.sha256.empty());
}

TEST_F(RunEnd, CancelLeavesOnlyWholeFrames) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        cancelWith(signal, mesh_, "epoch: 4\t");
        EXPECT_GE(countWholeFrames(), 3);
        EXPECT_EQ(folder_.listing().find(".tmp"), std::string::npos) << folder_.listing();
        EXPECT_FALSE(exists(mesh_ + ".obj_w.obj"));
    }
}

// A job under nohup used to be cancelled all the same.
TEST_F(RunEnd, ASignalThatIsIgnoredCancelsNothing) {
    ::signal(SIGHUP, SIG_IGN);
    host::ChildProcess program(programCommand({"run", mesh_, "--epochs", "20", "--verbose"}),
                               host::ChildErrors::kWithOutput);
    ::signal(SIGHUP, SIG_DFL);
    ASSERT_TRUE(readUntil(program, "epoch: 2\t"));
    ::kill(static_cast<pid_t>(program.id()), SIGHUP);
    EXPECT_NE(restOfOutput(program).find("20 frames over 7300 days"), std::string::npos);
    EXPECT_EQ(program.wait().code, 0U);
}

TEST_F(RunEnd, CancelledRunCanBeRepeated) {
    cancelWith(SIGINT, mesh_, "epoch: 2\t");
    const ProgramResult again = runProgram({"run", mesh_, "--epochs", "3"});
    EXPECT_EQ(again.end.code, 0U) << again.output;
    EXPECT_NE(again.output.find("3 frames over 1095 days"), std::string::npos) << again.output;
}

TEST_F(RunEnd, CrashOfTheSimulationIsTold) {
    host::ChildProcess program(longRun(mesh_), host::ChildErrors::kWithOutput);
    ASSERT_TRUE(readUntil(program, "epoch: 3\t"));
    const pid_t simulation = processOfRun(program.id());
    ASSERT_GT(simulation, 0);
    leaveUnfinishedFile(mesh_);
    ::kill(simulation, SIGKILL);
    const std::string output = restOfOutput(program);
    EXPECT_NE(output.find("the simulation ended unexpectedly: its process ended by signal 9 (Killed)"),
              std::string::npos)
        << output;
    const host::ChildEnd end = program.wait();
    EXPECT_TRUE(end.isRegular);
    EXPECT_EQ(end.code, unsigned{host::kExitCrashed});
    EXPECT_GE(countWholeFrames(), 2);
    EXPECT_EQ(folder_.listing().find(".tmp"), std::string::npos) << folder_.listing();
}

/// Whether a process is there and has not ended.
bool isRunning(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/stat");
    const std::string text{std::istreambuf_iterator<char>(status), {}};
    return !text.empty() && text.find(") Z ") == std::string::npos;
}

TEST_F(RunEnd, SimulationDoesNotOutliveTheProgram) {
    pid_t simulation = 0;
    {
        host::ChildProcess program(longRun(mesh_), host::ChildErrors::kWithOutput);
        ASSERT_TRUE(readUntil(program, "epoch: 2\t"));
        simulation = processOfRun(program.id());
        ASSERT_GT(simulation, 0);
        ASSERT_TRUE(isRunning(simulation));
        // Its end is the program's own end, not that of its output: nobody reads on here.
        program.kill();
        program.wait();
        // The signal is on its way when the program is no more; a simulation that goes on gets far in this time.
        for (int i = 0; i < 1000 && isRunning(simulation); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    EXPECT_FALSE(isRunning(simulation));
    EXPECT_FALSE(exists(mesh_ + ".obj_w.obj"));
}

/// While it lives, no file may become longer than this.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit = {bytes, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &before_); }

  private:
    rlimit before_{};
};

TEST_F(RunEnd, FrameThatDoesNotFitOnTheDiskIsTold) {
    ProgramResult result;
    {
        const FileSizeLimit limit(20000);
        result = runProgram({"run", mesh_, "--epochs", "3"});
    }
    EXPECT_EQ(result.end.code, unsigned{host::kExitFrame}) << result.output;
    EXPECT_NE(result.output.find("stone.obj.obj_w_1.obj: the frame could not be written"), std::string::npos)
        << result.output;
    EXPECT_FALSE(exists(mesh_ + ".obj_w_1.obj"));
    EXPECT_EQ(folder_.listing().find(".tmp"), std::string::npos) << folder_.listing();
}

TEST_F(RunEnd, FrameOfAnEarlierRunIsNotTakenForANewOne) {
    ASSERT_EQ(runProgram({"run", mesh_, "--epochs", "2"}).end.code, 0U);
    const std::string earlier = readFile(mesh_ + ".obj_w_2.obj");
    ProgramResult result;
    {
        const FileSizeLimit limit(20000);
        result = runProgram({"run", mesh_, "--epochs", "2", "--days", "3000"});
    }
    EXPECT_EQ(result.end.code, unsigned{host::kExitFrame}) << result.output;
    EXPECT_NE(result.output.find("is from an earlier run"), std::string::npos) << result.output;
    EXPECT_EQ(readFile(mesh_ + ".obj_w_2.obj"), earlier);
}

TEST_F(RunEnd, LinesThatCannotBeWrittenAreTold) {
    const ProgramResult result = runProgram({"run", mesh_, "--log", "/dev/full"});
    EXPECT_EQ(result.end.code, unsigned{host::kExitOutput}) << result.output;
    EXPECT_NE(result.output.find("/dev/full: the library's lines cannot be written"), std::string::npos);
}

}  // namespace
}  // namespace talvek::test
#endif
