#include "faults/fault_injection.h"

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <new>

namespace talvek::test {

namespace {

struct Injection {
    Fault fault = Fault::kNone;
    std::int64_t countdown = 0;
    bool hasHappened = false;
    char folder[PATH_MAX] = {};
};

Injection injection;
std::int64_t blocks = 0;

// Whether a descriptor belongs to a file in the folder under test.
std::array<bool, 1024> isWatched = {};

bool strikes(Fault fault) {
    if (injection.fault != fault || injection.hasHappened) {
        return false;
    }
    injection.hasHappened = --injection.countdown == 0;
    return injection.hasHappened;
}

bool isBelowFolder(const char* path) {
    return std::strncmp(path, injection.folder, std::strlen(injection.folder)) == 0;
}

bool watches(int descriptor) {
    return descriptor >= 0 && descriptor < 1024 && isWatched[std::size_t(descriptor)];
}

/// A fault that lasts: once it has happened, everything of its kind fails.
bool lasts(Fault fault) {
    return injection.fault == fault && injection.hasHappened;
}

bool deniesMemory() {
    return strikes(Fault::kAllocation) || lasts(Fault::kMemory) || strikes(Fault::kMemory);
}

}  // namespace

std::string faultName(Fault fault) {
    constexpr const char* kNames[] = {"none", "allocation", "memory",      "read",  "short read", "interruption",
                                      "open", "write",      "short write", "close", "flush",      "rename"};
    return kNames[static_cast<std::size_t>(fault)];
}

void armFault(Fault fault, std::int64_t n, const std::string& folder) {
    injection = {.fault = fault, .countdown = n};
    folder.copy(injection.folder, sizeof injection.folder - 1);
}

bool disarmFault() {
    injection.fault = Fault::kNone;
    return injection.hasHappened;
}

std::int64_t liveBlocks() {
    return blocks;
}

}  // namespace talvek::test

using talvek::test::Fault;
namespace faults = talvek::test;

extern "C" {

void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);
int __real_open(const char* path, int flags, ...);
ssize_t __real_read(int descriptor, void* to, std::size_t size);
ssize_t __real_write(int descriptor, const void* from, std::size_t size);
int __real_close(int descriptor);
int __real_rename(const char* from, const char* to);

void* __wrap_malloc(std::size_t size) {
    void* block = faults::deniesMemory() ? nullptr : __real_malloc(size);
    faults::blocks += block != nullptr ? 1 : 0;
    return block;
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
    void* block = faults::deniesMemory() ? nullptr : __real_calloc(count, size);
    faults::blocks += block != nullptr ? 1 : 0;
    return block;
}

/// The library gives memory back with it, so that the number of blocks stays the same.
void* __wrap_realloc(void* block, std::size_t size) {
    return faults::deniesMemory() ? nullptr : __real_realloc(block, size);
}

void __wrap_free(void* block) {
    faults::blocks -= block != nullptr ? 1 : 0;
    __real_free(block);
}

int __wrap_open(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const auto mode = static_cast<mode_t>((flags & O_CREAT) != 0 ? va_arg(arguments, int) : 0);
    va_end(arguments);
    const bool isWatched = faults::isBelowFolder(path);
    if (isWatched && faults::strikes(Fault::kInterruption)) {
        errno = EINTR;
        return -1;
    }
    if (isWatched && faults::strikes(Fault::kOpen)) {
        errno = EMFILE;
        return -1;
    }
    const int descriptor = __real_open(path, flags, mode);
    if (descriptor >= 0 && descriptor < 1024) {
        faults::isWatched[std::size_t(descriptor)] = isWatched;
    }
    return descriptor;
}

ssize_t __wrap_read(int descriptor, void* to, std::size_t size) {
    if (faults::watches(descriptor)) {
        if (faults::strikes(Fault::kInterruption)) {
            errno = EINTR;
            return -1;
        }
        if (faults::strikes(Fault::kRead)) {
            errno = EIO;
            return -1;
        }
        if (faults::strikes(Fault::kShortRead)) {
            return __real_read(descriptor, to, (size + 1) / 2);
        }
    }
    return __real_read(descriptor, to, size);
}

ssize_t __wrap_write(int descriptor, const void* from, std::size_t size) {
    if (faults::watches(descriptor)) {
        if (faults::strikes(Fault::kInterruption)) {
            errno = EINTR;
            return -1;
        }
        if (faults::strikes(Fault::kWrite) || faults::lasts(Fault::kShortWrite)) {
            errno = ENOSPC;
            return -1;
        }
        if (faults::strikes(Fault::kShortWrite)) {
            return __real_write(descriptor, from, (size + 1) / 2);
        }
    }
    return __real_write(descriptor, from, size);
}

int __wrap_close(int descriptor) {
    const bool fails = faults::watches(descriptor) && faults::strikes(Fault::kClose);
    const int result = __real_close(descriptor);
    if (fails) {
        errno = EIO;
        return -1;
    }
    return result;
}

int __wrap_fsync(int descriptor) {
    if (faults::watches(descriptor) && faults::strikes(Fault::kFlush)) {
        errno = EIO;
        return -1;
    }
    // The files under test are gone in a moment; thousands of them are not worth a disk's time.
    return 0;
}

int __wrap_rename(const char* from, const char* to) {
    if (faults::isBelowFolder(to) && faults::strikes(Fault::kRename)) {
        errno = EIO;
        return -1;
    }
    return __real_rename(from, to);
}

}  // extern "C"

void* operator new(std::size_t size) {
    void* block = __wrap_malloc(size > 0 ? size : 1);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* block) noexcept {
    __wrap_free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    __wrap_free(block);
}
