#ifndef _WIN32
#include <fcntl.h>
#include <limits.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "base/system.h"

namespace talvek::system {

namespace {

// The largest transfer that Linux makes in one call is a page less than 2 GiB.
constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

constexpr mode_t kNewFileMode = 0666;

File::Handle openHandle(const char* path, int flags) {
    int descriptor = -1;
    do {
        descriptor = ::open(path, flags | O_CLOEXEC, kNewFileMode);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

int descriptorOf(File::Handle handle) {
    return static_cast<int>(handle);
}

/// Asks for large pages where a block covers whole ones: the system then hands out 2 MiB at a time instead of 4 KiB.
/// No more memory is used.
void* onLargePages(void* block, std::size_t bytes) noexcept {
#ifdef MADV_HUGEPAGE
    constexpr std::size_t kPage = std::size_t{2} << 20;
    if (block != nullptr && bytes >= 2 * kPage) {
        const std::size_t before = (kPage - reinterpret_cast<std::uintptr_t>(block) % kPage) % kPage;
        // Advice that is not followed does no harm.
        ::madvise(static_cast<char*>(block) + before, (bytes - before) / kPage * kPage, MADV_HUGEPAGE);
    }
#else
    static_cast<void>(bytes);
#endif
    return block;
}

}  // namespace

void* allocate(std::size_t bytes) noexcept {
    return onLargePages(std::malloc(bytes > 0 ? bytes : 1), bytes);
}
void* allocateZeroed(std::size_t bytes) noexcept {
    return onLargePages(std::calloc(bytes > 0 ? bytes : 1, 1), bytes);
}
void release(void* block) noexcept {
    std::free(block);
}
void* shrink(void* block, std::size_t bytes) noexcept {
    void* smaller = std::realloc(block, bytes > 0 ? bytes : 1);
    return smaller != nullptr ? smaller : block;
}

File File::openForReading(const char* path) {
    File file(openHandle(path, O_RDONLY));
    struct stat status {};
    // A folder opens like a file here, but there is nothing to read in it.
    if (file.isOpen() && ::fstat(descriptorOf(file.handle_), &status) == 0 && S_ISDIR(status.st_mode)) {
        file.close();
    }
    return file;
}
File File::openForWriting(const char* path) {
    return File(openHandle(path, O_WRONLY | O_CREAT | O_TRUNC));
}
File File::openForAppending(const char* path) {
    return File(openHandle(path, O_WRONLY | O_CREAT | O_APPEND));
}
File File::createNew(const char* path) {
    return File(openHandle(path, O_WRONLY | O_CREAT | O_EXCL));
}
File File::openLocked(const char* path) {
    for (;;) {
        File file(openHandle(path, O_RDWR | O_CREAT));
        if (!file.isOpen()) {
            return file;
        }
        const int descriptor = descriptorOf(file.handle_);
        // Some file systems have no locks; a file is better than none there.
        if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
            return {};
        }
        struct stat held {};
        struct stat named {};
        // The one that held it may have removed it in between.
        if (::fstat(descriptor, &held) == 0 && ::stat(path, &named) == 0 && held.st_dev == named.st_dev &&
            held.st_ino == named.st_ino) {
            return file;
        }
    }
}

std::int64_t File::read(void* to, std::size_t size) {
    ssize_t got = -1;
    do {
        got = ::read(descriptorOf(handle_), to, std::min(size, kLargestTransfer));
    } while (got < 0 && errno == EINTR);
    return got;
}

bool File::write(const void* from, std::size_t size) {
    const char* rest = static_cast<const char*>(from);
    while (size > 0) {
        const ssize_t written = ::write(descriptorOf(handle_), rest, std::min(size, kLargestTransfer));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        rest += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool File::skip(std::int64_t bytes) {
    return ::lseek(descriptorOf(handle_), bytes, SEEK_CUR) >= 0;
}

std::int64_t File::size() const {
    struct stat status {};
    if (::fstat(descriptorOf(handle_), &status) != 0 || !S_ISREG(status.st_mode)) {
        return -1;
    }
    return status.st_size;
}

bool File::flushToDisk() {
    return ::fsync(descriptorOf(handle_)) == 0;
}

bool File::close() {
    if (!isOpen()) {
        return true;
    }
    // After a failed close the descriptor is gone all the same; closing it again could hit another file.
    return ::close(descriptorOf(std::exchange(handle_, kNone))) == 0;
}

std::optional<FileIdentity> identityOf(const char* path) {
    struct stat status {};
    if (::stat(path, &status) != 0) {
        return std::nullopt;
    }
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    return FileIdentity{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
                        status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec};
}

FileKind kindOf(const char* path) {
    struct stat status {};
    if (::stat(path, &status) != 0) {
        return FileKind::kAbsent;
    }
    return S_ISREG(status.st_mode) ? FileKind::kRegular : FileKind::kOther;
}

std::string linkTarget(const char* path) {
    std::string target = path;
    // As many links as the system itself follows before it takes them for a circle.
    for (int links = 0; links <= 40; ++links) {
        char next[PATH_MAX];
        const ssize_t length = ::readlink(target.c_str(), next, sizeof next);
        if (length < 0) {
            return target;
        }
        const std::size_t folderEnd = next[0] == '/' ? std::string::npos : target.rfind('/');
        target.erase(folderEnd == std::string::npos ? 0 : folderEnd + 1);
        target.append(next, static_cast<std::size_t>(length));
    }
    return {};
}

bool isWritable(const char* path) {
    return ::access(path, W_OK) == 0;
}

void copyPermissions(const char* from, const char* to) {
    struct stat status {};
    if (::stat(from, &status) == 0) {
        // Where that fails the new file has the permissions of any new one, which is no reason to lose its content.
        static_cast<void>(::chmod(to, status.st_mode & 07777));
    }
}

bool replaceFile(const char* from, const char* to) {
    return ::rename(from, to) == 0;
}

void removeFile(const char* path) {
    ::unlink(path);
}

std::uint64_t processId() {
    return static_cast<std::uint64_t>(::getpid());
}

void writeToStandardOutput(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

void writeToStandardError(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

std::string timeOfDay() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    char text[sizeof "HH:MM:SS"];
    std::strftime(text, sizeof text, "%H:%M:%S", &local);
    return text;
}

std::string currentDirectory() {
    char directory[1024];
    return ::getcwd(directory, sizeof directory) != nullptr ? directory : "";
}

}  // namespace talvek::system
#endif
