#ifndef _WIN32
#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "talvek/support/exit_status.h"
#include "talvek/watch/child_process.h"

namespace talvek::host {

namespace {

std::atomic<pid_t> cancellableChild = 0;
std::atomic<bool> isCancelRequested = false;
std::array<std::atomic<const char*>, ScratchFile::kMostScratchFiles> scratchFiles{};
static_assert(std::atomic<pid_t>::is_always_lock_free && std::atomic<const char*>::is_always_lock_free,
              "signal handlers can use nothing else");

constexpr std::array kEndingSignals = {SIGINT, SIGTERM, SIGHUP};

/// With a child the program goes on; without one it ends as if there were no handler.
void endByWish(int signal) {
    isCancelRequested.store(true);
    const pid_t child = cancellableChild.load();
    if (child > 0) {
        ::kill(child, SIGKILL);
        return;
    }
    for (const std::atomic<const char*>& file : scratchFiles) {
        if (const char* const name = file.load()) {
            ::unlink(name);
        }
    }
    ::signal(signal, SIG_DFL);
    ::raise(signal);
}

/// Whether the program was started with orders to ignore the signal, as nohup does, and shells for jobs behind them.
bool isIgnored(int signal) {
    struct sigaction action {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void handleEndingSignals() {
    static const bool areHandled = [] {
        struct sigaction action {};
        action.sa_handler = endByWish;
        ::sigemptyset(&action.sa_mask);
        for (const int signal : kEndingSignals) {
            if (!isIgnored(signal)) {
                ::sigaction(signal, &action, nullptr);
            }
        }
        return true;
    }();
    static_cast<void>(areHandled);
}

[[noreturn]] void fail(const std::string& what, int error) {
    throw std::runtime_error(what + ": " + std::generic_category().message(error));
}

/// What is to be arranged in the child before the program starts.
class SpawnSettings {
  public:
    SpawnSettings() {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawnattr_init(&attributes);
        sigset_t handledByDefault;
        ::sigemptyset(&handledByDefault);
        for (const int signal : kEndingSignals) {
            if (!isIgnored(signal)) {
                ::sigaddset(&handledByDefault, signal);
            }
        }
        ::posix_spawnattr_setsigdefault(&attributes, &handledByDefault);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
    }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

pid_t spawn(const std::vector<std::string>& command, int outputEnd, ChildErrors errors) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    SpawnSettings settings;
    ::posix_spawn_file_actions_adddup2(&settings.actions, outputEnd, STDOUT_FILENO);
    if (errors == ChildErrors::kWithOutput) {
        ::posix_spawn_file_actions_adddup2(&settings.actions, outputEnd, STDERR_FILENO);
    }
    pid_t child = 0;
    const int error =
        ::posix_spawn(&child, arguments[0], &settings.actions, &settings.attributes, arguments.data(), environ);
    return error == 0 ? child : -error;
}

}  // namespace

std::string ChildEnd::describe() const {
    if (isRegular) {
        return "ended with status " + std::to_string(code);
    }
    return "ended by signal " + std::to_string(code) + " (" + ::strsignal(static_cast<int>(code)) + ")";
}

ChildProcess::ChildProcess(const std::vector<std::string>& command, ChildErrors errors) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        fail("cannot create a pipe", errno);
    }
    const pid_t child = spawn(command, ends[1], errors);
    ::close(ends[1]);
    output_ = ends[0];
    if (child < 0) {
        closeOutput();
        fail("cannot start " + command[0], -child);
    }
    id_ = static_cast<std::uint64_t>(child);
}

ChildProcess::~ChildProcess() {
    if (!hasEnded_) {
        kill();
        wait();
    }
    closeOutput();
}

void ChildProcess::closeOutput() {
    if (output_ >= 0) {
        ::close(static_cast<int>(output_));
        output_ = -1;
    }
}

std::size_t ChildProcess::readOutput(char* to, std::size_t size) {
    ssize_t got = -1;
    do {
        got = ::read(static_cast<int>(output_), to, size);
    } while (got < 0 && errno == EINTR);
    return got > 0 ? static_cast<std::size_t>(got) : 0;
}

ChildEnd ChildProcess::wait() {
    if (hasEnded_) {
        return end_;
    }
    const auto child = static_cast<pid_t>(id_);
    siginfo_t information{};
    while (::waitid(P_PID, static_cast<id_t>(child), &information, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    // Only now is its number given back, so a late signal cannot hit another process of the same number.
    cancellableChild.store(0);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    hasEnded_ = true;
    end_.isRegular = WIFEXITED(status);
    end_.code = static_cast<std::uint32_t>(end_.isRegular ? WEXITSTATUS(status) : WTERMSIG(status));
    return end_;
}

void ChildProcess::kill() {
    if (!hasEnded_) {
        ::kill(static_cast<pid_t>(id_), SIGKILL);
    }
}

CancelGuard::CancelGuard(ChildProcess& child) {
    isCancelRequested.store(false);
    cancellableChild.store(static_cast<pid_t>(child.id()));
    handleEndingSignals();
}

CancelGuard::~CancelGuard() {
    cancellableChild.store(0);
}

bool CancelGuard::isCancelled() const {
    return isCancelRequested.load();
}

ScratchFile::ScratchFile(std::string name) : name_(std::move(name)) {
    handleEndingSignals();
    while (slot_ + 1 < kMostScratchFiles) {
        const char* none = nullptr;
        if (scratchFiles[static_cast<std::size_t>(++slot_)].compare_exchange_strong(none, name_.c_str())) {
            return;
        }
    }
    slot_ = -1;
}

ScratchFile::~ScratchFile() {
    ::unlink(name_.c_str());
    if (slot_ >= 0) {
        scratchFiles[static_cast<std::size_t>(slot_)].store(nullptr);
    }
}

void endWithParent() {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The parent may be gone already, and with it the reader of what is printed here.
    pollfd output{.fd = STDOUT_FILENO, .events = 0, .revents = 0};
    if (::poll(&output, 1, 0) == 1 && (output.revents & POLLERR) != 0) {
        ::_exit(kExitCancelled);
    }
}

std::string programPath() {
    char path[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
    if (length <= 0) {
        fail("cannot find this program's own file", errno);
    }
    return {path, static_cast<std::size_t>(length)};
}

bool hasTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

void reportFileSizeLimitAsError() {
    std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace talvek::host
#endif
