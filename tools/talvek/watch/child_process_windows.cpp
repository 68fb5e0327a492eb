#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include "talvek/watch/child_process.h"

namespace talvek::host {

namespace {

// What a process that was ended by TerminateProcess reports: a number that no program of ours returns.
constexpr UINT kKilledCode = 0xC000013A;
// Exit codes from here on are the system's exception codes.
constexpr DWORD kFirstExceptionCode = 0xC0000000;
// How often a start is tried that the system itself gives up.
constexpr int kMaxStarts = 5;

std::atomic<HANDLE> cancellableChild = nullptr;
std::atomic<bool> isCancelRequested = false;
std::array<std::atomic<const char*>, ScratchFile::kMostScratchFiles> scratchFiles{};

/// With a child the program goes on; without one it ends as if there were no handler.
BOOL WINAPI endByWish(DWORD /*event*/) {
    isCancelRequested.store(true);
    const HANDLE child = cancellableChild.load();
    if (child != nullptr) {
        ::TerminateProcess(child, kKilledCode);
        return TRUE;
    }
    for (const std::atomic<const char*>& file : scratchFiles) {
        if (const char* const name = file.load()) {
            ::DeleteFileA(name);
        }
    }
    return FALSE;
}

void handleConsoleEvents() {
    static const BOOL areHandled = ::SetConsoleCtrlHandler(endByWish, TRUE);
    static_cast<void>(areHandled);
}

HANDLE handleOf(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

void closeHandle(std::intptr_t& handle) {
    if (handle != -1) {
        ::CloseHandle(handleOf(std::exchange(handle, -1)));
    }
}

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": system error " + std::to_string(::GetLastError()));
}

/// Quotes an argument so that the usual splitting of a command line gives it back.
void appendArgument(std::string& commandLine, const std::string& argument) {
    commandLine += commandLine.empty() ? "\"" : " \"";
    std::size_t backslashes = 0;
    for (const char c : argument) {
        if (c == '"') {
            commandLine.append(backslashes + 1, '\\');
        }
        backslashes = c == '\\' ? backslashes + 1 : 0;
        commandLine += c;
    }
    commandLine.append(backslashes, '\\');
    commandLine += '"';
}

/// A pipe whose writing end a child inherits.
std::pair<HANDLE, HANDLE> makePipe() {
    SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE readingEnd = nullptr;
    HANDLE writingEnd = nullptr;
    if (::CreatePipe(&readingEnd, &writingEnd, &inheritable, 0) == 0) {
        fail("cannot create a pipe");
    }
    ::SetHandleInformation(readingEnd, HANDLE_FLAG_INHERIT, 0);
    return {readingEnd, writingEnd};
}

/// A job that ends its processes when its last handle is closed, as happens when this program ends.
HANDLE makeJob() {
    const HANDLE job = ::CreateJobObjectA(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    ::SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

/// Starts a suspended process. Wine now and then loses a new process before its first instruction and reports an
/// internal error; as nothing has run by then, it is started again.
bool startSuspended(const std::string& program, std::string commandLine, STARTUPINFOA& startup,
                    PROCESS_INFORMATION& started) {
    for (int i = 0; i < kMaxStarts; ++i) {
        if (::CreateProcessA(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE,
                             CREATE_SUSPENDED | CREATE_NEW_PROCESS_GROUP, nullptr, nullptr, &startup, &started) != 0) {
            return true;
        }
        if (::GetLastError() != ERROR_INTERNAL_ERROR) {
            return false;
        }
    }
    return false;
}

}  // namespace

std::string ChildEnd::describe() const {
    if (isRegular) {
        return "ended with status " + std::to_string(code);
    }
    char text[64];
    std::snprintf(text, sizeof text, "ended with system code 0x%08X", static_cast<unsigned>(code));
    return text;
}

ChildProcess::ChildProcess(const std::vector<std::string>& command, ChildErrors errors) {
    std::string commandLine;
    for (const std::string& argument : command) {
        appendArgument(commandLine, argument);
    }
    const auto [readingEnd, writingEnd] = makePipe();
    output_ = reinterpret_cast<std::intptr_t>(readingEnd);
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = ::GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = writingEnd;
    startup.hStdError = errors == ChildErrors::kWithOutput ? writingEnd : ::GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION started{};
    const bool isStarted = startSuspended(command[0], commandLine, startup, started);
    const DWORD startError = ::GetLastError();
    ::CloseHandle(writingEnd);
    if (!isStarted) {
        closeOutput();
        ::SetLastError(startError);
        fail("cannot start " + command[0]);
    }
    const HANDLE job = makeJob();
    ::AssignProcessToJobObject(job, started.hProcess);
    ::ResumeThread(started.hThread);
    ::CloseHandle(started.hThread);
    process_ = reinterpret_cast<std::intptr_t>(started.hProcess);
    job_ = reinterpret_cast<std::intptr_t>(job);
    id_ = started.dwProcessId;
}

ChildProcess::~ChildProcess() {
    if (!hasEnded_) {
        kill();
        wait();
    }
    closeOutput();
    closeHandle(process_);
    closeHandle(job_);
}

void ChildProcess::closeOutput() {
    closeHandle(output_);
}

std::size_t ChildProcess::readOutput(char* to, std::size_t size) {
    DWORD got = 0;
    return ::ReadFile(handleOf(output_), to, static_cast<DWORD>(size), &got, nullptr) != 0 ? got : 0;
}

ChildEnd ChildProcess::wait() {
    if (!hasEnded_) {
        ::WaitForSingleObject(handleOf(process_), INFINITE);
        cancellableChild.store(nullptr);
        DWORD code = 0;
        ::GetExitCodeProcess(handleOf(process_), &code);
        hasEnded_ = true;
        end_ = {code < kFirstExceptionCode, code};
    }
    return end_;
}

void ChildProcess::kill() {
    if (!hasEnded_) {
        ::TerminateProcess(handleOf(process_), kKilledCode);
    }
}

CancelGuard::CancelGuard(ChildProcess& child) {
    isCancelRequested.store(false);
    cancellableChild.store(handleOf(child.process_));
    handleConsoleEvents();
}

CancelGuard::~CancelGuard() {
    cancellableChild.store(nullptr);
}

bool CancelGuard::isCancelled() const {
    return isCancelRequested.load();
}

ScratchFile::ScratchFile(std::string name) : name_(std::move(name)) {
    handleConsoleEvents();
    while (slot_ + 1 < kMostScratchFiles) {
        const char* none = nullptr;
        if (scratchFiles[static_cast<std::size_t>(++slot_)].compare_exchange_strong(none, name_.c_str())) {
            return;
        }
    }
    slot_ = -1;
}

ScratchFile::~ScratchFile() {
    ::DeleteFileA(name_.c_str());
    if (slot_ >= 0) {
        scratchFiles[static_cast<std::size_t>(slot_)].store(nullptr);
    }
}

// The job that the child was put into sees to it.
void endWithParent() {}

std::string programPath() {
    char path[32768];
    const DWORD length = ::GetModuleFileNameA(nullptr, path, sizeof path);
    if (length == 0 || length == sizeof path) {
        fail("cannot find this program's own file");
    }
    return {path, length};
}

bool hasTerminal() {
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

// No such limit exists here.
void reportFileSizeLimitAsError() {}

}  // namespace talvek::host
#endif
