// Work done in a process of its own, as a user without privileges or with little room on the disk.
#pragma once
#ifndef _WIN32

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

// There in programs whose coverage is measured: a process that ends at once has to write its counts by itself.
extern "C" __attribute__((weak)) int __llvm_profile_write_file();

namespace talvek::test {

enum class Restriction : unsigned char { kNoPrivileges, kFilesUpTo1000Bytes };

/// Runs `work` in a child process under a restriction; whether it returned true there.
template <typename Work>
bool holdsUnder(Restriction restriction, Work work) {
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t kNobody = 65534;
        if (restriction == Restriction::kNoPrivileges && ::getuid() == 0 && ::setuid(kNobody) != 0) {
            ::_exit(2);
        }
        const rlimit limit = {1000, 1000};
        ::signal(SIGXFSZ, SIG_IGN);
        if (restriction == Restriction::kFilesUpTo1000Bytes && ::setrlimit(RLIMIT_FSIZE, &limit) != 0) {
            ::_exit(3);
        }
        const bool holds = work();
        if (restriction == Restriction::kNoPrivileges && __llvm_profile_write_file != nullptr) {
            __llvm_profile_write_file();
        }
        ::_exit(holds ? 0 : 1);
    }
    int status = -1;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace talvek::test
#endif
