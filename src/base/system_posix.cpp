#ifndef _WIN32
#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/xattr.h>
#endif

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <vector>

#include "base/system.h"

namespace talvek::system {

namespace {

// The largest transfer that Linux makes in one call is a page less than 2 GiB.
constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

constexpr mode_t kNewFileMode = 0666;
constexpr mode_t kPrivateMode = 0600;

/// A host may have closed its standard input, output or error; what takes that place would get what is meant for them.
int awayFromStandardStreams(int descriptor) {
    if (descriptor < 0 || descriptor > STDERR_FILENO) {
        return descriptor;
    }
    const int higher = ::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    ::close(descriptor);
    return higher;
}

File::Handle openHandle(const char* path, int flags, mode_t mode = kNewFileMode) {
    int descriptor = -1;
    do {
        descriptor = ::open(path, flags | O_CLOEXEC, mode);
    } while (descriptor < 0 && errno == EINTR);
    return awayFromStandardStreams(descriptor);
}

int descriptorOf(File::Handle handle) {
    return static_cast<int>(handle);
}

std::optional<FileStamp> stampFrom(const struct stat& status) {
    constexpr std::int64_t kNanoseconds = 1000000000;
    return FileStamp{.device = static_cast<std::uint64_t>(status.st_dev),
                     .index = static_cast<std::uint64_t>(status.st_ino),
                     .size = status.st_size,
                     .written = status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec};
}

/// Keeps the signals away that end a process by default when it writes into a pipe that nobody reads, or beyond the
/// limit for the size of a file. The write fails all the same.
class SignalsOfWriting {
  public:
    SignalsOfWriting() {
        ::sigemptyset(&signals_);
        ::sigaddset(&signals_, SIGPIPE);
        ::sigaddset(&signals_, SIGXFSZ);
        ::pthread_sigmask(SIG_BLOCK, &signals_, &before_);
    }
    SignalsOfWriting(const SignalsOfWriting&) = delete;
    SignalsOfWriting& operator=(const SignalsOfWriting&) = delete;
    ~SignalsOfWriting() {
        takeBack(SIGPIPE);
        takeBack(SIGXFSZ);
        ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }

  private:
    /// What was blocked before is the host's own business.
    void takeBack(int signal) const {
        sigset_t pending;
        if (::sigismember(&before_, signal) == 1 || ::sigpending(&pending) != 0 ||
            ::sigismember(&pending, signal) != 1) {
            return;
        }
        sigset_t one;
        ::sigemptyset(&one);
        ::sigaddset(&one, signal);
        const timespec now{};
        while (::sigtimedwait(&one, nullptr, &now) < 0 && errno == EINTR) {
        }
    }

    sigset_t signals_{};
    sigset_t before_{};
};

void copyAttributes(int to, const char* from) {
#ifdef __linux__
    std::array<char, 4096> names{};
    const ssize_t length = ::listxattr(from, names.data(), names.size());
    for (ssize_t at = 0; at < length;) {
        const char* name = names.data() + at;
        std::array<char, 4096> value{};
        const ssize_t size = ::getxattr(from, name, value.data(), value.size());
        if (size >= 0) {
            // What the system does not let this user set is not for this user to keep.
            static_cast<void>(::fsetxattr(to, name, value.data(), static_cast<std::size_t>(size), 0));
        }
        at += static_cast<ssize_t>(std::strlen(name)) + 1;
    }
#else
    static_cast<void>(to);
    static_cast<void>(from);
#endif
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
File File::createNew(const char* path, NewFile use) {
    return File(openHandle(path, O_WRONLY | O_CREAT | O_EXCL, use == NewFile::kPrivate ? kPrivateMode : kNewFileMode));
}

File File::createInUse(const char* path, NewFile use) {
    File file = createNew(path, use);
    if (!file.isOpen()) {
        return file;
    }
    const int descriptor = descriptorOf(file.handle_);
    struct stat status {};
    // Between its creation and its lock someone may have taken the file for an abandoned one. Where the system knows no
    // such locks, nobody does.
    const bool isTaken = ::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    if (isTaken || ::fstat(descriptor, &status) != 0 || status.st_nlink == 0) {
        file.close();
    }
    return file;
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
    const SignalsOfWriting kept;
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

std::optional<FileStamp> File::stamp() const {
    struct stat status {};
    return ::fstat(descriptorOf(handle_), &status) == 0 ? stampFrom(status) : std::nullopt;
}

File File::duplicate() const {
    return File(isOpen() ? ::fcntl(descriptorOf(handle_), F_DUPFD_CLOEXEC, STDERR_FILENO + 1) : kNone);
}

bool File::takeOver(const char* path) {
    const int descriptor = descriptorOf(handle_);
    struct stat from {};
    struct stat own {};
    if (::stat(path, &from) != 0 || ::fstat(descriptor, &own) != 0) {
        return false;
    }
    const bool isOwned =
        (own.st_uid == from.st_uid && own.st_gid == from.st_gid) || ::fchown(descriptor, from.st_uid, from.st_gid) == 0;
    copyAttributes(descriptor, path);
    // Rights that come with a program's owner are not for another owner.
    const mode_t kept = isOwned ? 07777 : 0777;
    return ::fchmod(descriptor, from.st_mode & kept) == 0 && isOwned;
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

std::optional<FileStamp> stampOf(const char* path) {
    struct stat status {};
    return ::stat(path, &status) == 0 ? stampFrom(status) : std::nullopt;
}

bool replaceFile(const char* from, const char* to) {
    return ::rename(from, to) == 0;
}

void removeFile(const char* path) {
    ::unlink(path);
}

namespace {

/// Whoever uses the file holds a lock on it, which ends with its process.
void removeUnlessInUse(const std::string& path) {
    int descriptor = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        descriptor = ::open(path.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    }
    if (descriptor < 0) {
        return;
    }
    struct stat opened {};
    struct stat named {};
    if (::fstat(descriptor, &opened) == 0 && S_ISREG(opened.st_mode) && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 &&
        ::lstat(path.c_str(), &named) == 0 && named.st_dev == opened.st_dev && named.st_ino == opened.st_ino) {
        removeFile(path.c_str());
    }
    ::close(descriptor);
}

}  // namespace

void removeAbandonedFiles(const std::string& folder, std::string_view prefix, std::string_view suffix,
                          std::size_t length) {
    std::vector<std::string> found;
    if (DIR* entries = ::opendir(folder.empty() ? "." : folder.c_str())) {
        while (const dirent* entry = ::readdir(entries)) {
            const std::string_view name = entry->d_name;
            if (name.size() == length && name.starts_with(prefix) && name.ends_with(suffix)) {
                found.emplace_back(name);
            }
        }
        ::closedir(entries);
    }
    for (const std::string& name : found) {
        removeUnlessInUse(std::string(folder).append(folder.empty() ? "" : "/").append(name));
    }
}

std::uint64_t randomNumber() {
    std::uint64_t number = 0;
    if (::getentropy(&number, sizeof number) != 0) {
        // A name that is taken is passed over, so that no more than chance is needed.
        timespec now{};
        ::clock_gettime(CLOCK_MONOTONIC, &now);
        number = static_cast<std::uint64_t>(now.tv_nsec) * 0x9E3779B97F4A7C15 + processId();
    }
    return number;
}

std::uint64_t processId() {
    return static_cast<std::uint64_t>(::getpid());
}

void writeToStandardOutput(std::string_view text) {
    const SignalsOfWriting kept;
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

void writeToStandardError(std::string_view text) {
    const SignalsOfWriting kept;
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
