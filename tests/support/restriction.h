// Work done in a process of its own that has to obey permissions, or has little room on the disk.
#pragma once
#ifndef _WIN32

#include <linux/capability.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>

// There in programs whose coverage is measured: a process that ends at once has to write its counts by itself.
extern "C" __attribute__((weak)) int __llvm_profile_write_file();

namespace talvek::test {

enum class Restriction : unsigned char { kNoPrivileges, kFilesUpTo1000Bytes };

/// Takes from this process, and from what it starts, root's right to read and write whatever the permissions say. It
/// stays root: another user could not start programs that were built below root's home.
inline bool obeyPermissions() {
    if (::geteuid() != 0) {
        return true;
    }
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct sets[_LINUX_CAPABILITY_U32S_3] = {};
    if (::syscall(SYS_capget, &header, sets) != 0) {
        return false;
    }
    for (const unsigned capability : {unsigned{CAP_DAC_OVERRIDE}, unsigned{CAP_DAC_READ_SEARCH}}) {
        sets[0].effective &= ~(1U << capability);
        sets[0].permitted &= ~(1U << capability);
        if (::prctl(PR_CAPBSET_DROP, capability, 0, 0, 0) != 0) {
            return false;
        }
    }
    return ::syscall(SYS_capset, &header, sets) == 0;
}

inline bool haveRoomFor1000Bytes() {
    const rlimit limit = {1000, 1000};
    return ::signal(SIGXFSZ, SIG_IGN) != SIG_ERR && ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

inline bool accept(Restriction restriction) {
    return restriction == Restriction::kNoPrivileges ? obeyPermissions() : haveRoomFor1000Bytes();
}

/// Runs `work` in a child process under a restriction; whether it returned true there.
template <typename Work>
bool holdsUnder(Restriction restriction, Work work) {
    const pid_t child = ::fork();
    if (child == 0) {
        int status = 2;
        try {
            if (accept(restriction)) {
                status = work() ? 0 : 1;
            }
        } catch (const std::exception& error) {
            // The tests that follow are the parent's.
            std::fprintf(stderr, "%s\n", error.what());
        }
        if (restriction == Restriction::kNoPrivileges && __llvm_profile_write_file != nullptr) {
            __llvm_profile_write_file();
        }
        ::_exit(status);
    }
    int status = -1;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace talvek::test
#endif
