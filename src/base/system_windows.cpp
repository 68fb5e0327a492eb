#ifdef _WIN32
// For rand_s.
#define _CRT_RAND_S
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "base/system.h"

namespace talvek::system {

namespace {

constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

HANDLE handleOf(File::Handle handle) {
    return reinterpret_cast<HANDLE>(handle);
}

std::uint64_t joined(DWORD high, DWORD low) {
    return std::uint64_t{high} << 32 | low;
}

std::optional<FileStamp> stampFrom(HANDLE handle) {
    BY_HANDLE_FILE_INFORMATION information;
    if (::GetFileInformationByHandle(handle, &information) == 0) {
        return std::nullopt;
    }
    const FILETIME& written = information.ftLastWriteTime;
    return FileStamp{.device = information.dwVolumeSerialNumber,
                     .index = joined(information.nFileIndexHigh, information.nFileIndexLow),
                     .size = static_cast<std::int64_t>(joined(information.nFileSizeHigh, information.nFileSizeLow)),
                     .written = static_cast<std::int64_t>(joined(written.dwHighDateTime, written.dwLowDateTime))};
}

File::Handle openHandle(const char* path, DWORD access, DWORD creation) {
    const HANDLE handle = ::CreateFileA(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        creation, FILE_ATTRIBUTE_NORMAL, nullptr);
    return reinterpret_cast<File::Handle>(handle);
}

}  // namespace

void* allocate(std::size_t bytes) noexcept {
    return std::malloc(bytes > 0 ? bytes : 1);
}
void* allocateZeroed(std::size_t bytes) noexcept {
    return std::calloc(bytes > 0 ? bytes : 1, 1);
}
void release(void* block) noexcept {
    std::free(block);
}
void* shrink(void* block, std::size_t bytes) noexcept {
    void* smaller = std::realloc(block, bytes > 0 ? bytes : 1);
    return smaller != nullptr ? smaller : block;
}

File File::openForReading(const char* path) {
    return File(openHandle(path, GENERIC_READ, OPEN_EXISTING));
}
File File::openForWriting(const char* path) {
    return File(openHandle(path, GENERIC_WRITE, CREATE_ALWAYS));
}
File File::openForAppending(const char* path) {
    return File(openHandle(path, FILE_APPEND_DATA, OPEN_ALWAYS));
}
// Access lists are inherited from the folder.
File File::createNew(const char* path, NewFile /*use*/) {
    return File(openHandle(path, GENERIC_WRITE, CREATE_NEW));
}
File File::openLocked(const char* path) {
    const HANDLE handle = ::CreateFileA(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                        nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    return File(reinterpret_cast<File::Handle>(handle));
}
// A file that is open here cannot be opened by one who shares it with nobody.
File File::createInUse(const char* path, NewFile use) {
    return createNew(path, use);
}

std::int64_t File::read(void* to, std::size_t size) {
    DWORD got = 0;
    const DWORD wanted = static_cast<DWORD>(size < kLargestTransfer ? size : kLargestTransfer);
    if (::ReadFile(handleOf(handle_), to, wanted, &got, nullptr) == 0) {
        return ::GetLastError() == ERROR_BROKEN_PIPE ? 0 : -1;
    }
    return got;
}

bool File::write(const void* from, std::size_t size) {
    const char* rest = static_cast<const char*>(from);
    while (size > 0) {
        DWORD written = 0;
        const DWORD wanted = static_cast<DWORD>(size < kLargestTransfer ? size : kLargestTransfer);
        if (::WriteFile(handleOf(handle_), rest, wanted, &written, nullptr) == 0 || written == 0) {
            return false;
        }
        rest += written;
        size -= written;
    }
    return true;
}

bool File::skip(std::int64_t bytes) {
    LARGE_INTEGER distance;
    distance.QuadPart = bytes;
    return ::SetFilePointerEx(handleOf(handle_), distance, nullptr, FILE_CURRENT) != 0;
}

std::int64_t File::size() const {
    LARGE_INTEGER size;
    if (::GetFileType(handleOf(handle_)) != FILE_TYPE_DISK || ::GetFileSizeEx(handleOf(handle_), &size) == 0) {
        return -1;
    }
    return size.QuadPart;
}

std::optional<FileStamp> File::stamp() const {
    return stampFrom(handleOf(handle_));
}

File File::duplicate() const {
    const HANDLE process = ::GetCurrentProcess();
    HANDLE second = INVALID_HANDLE_VALUE;
    const bool isDuplicated = isOpen() && ::DuplicateHandle(process, handleOf(handle_), process, &second, 0, FALSE,
                                                            DUPLICATE_SAME_ACCESS) != 0;
    return File(isDuplicated ? reinterpret_cast<Handle>(second) : kNone);
}

// The read-only flag is the one permission a replaced file could carry, and a read-only file is not replaced.
bool File::takeOver(const char*) {
    return true;
}

bool File::flushToDisk() {
    return ::FlushFileBuffers(handleOf(handle_)) != 0;
}

bool File::close() {
    if (!isOpen()) {
        return true;
    }
    return ::CloseHandle(handleOf(std::exchange(handle_, kNone))) != 0;
}

std::optional<FileIdentity> identityOf(const char* path) {
    const HANDLE handle = ::CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return std::nullopt;
    }
    BY_HANDLE_FILE_INFORMATION information{};
    const bool isKnown = ::GetFileInformationByHandle(handle, &information) != 0;
    ::CloseHandle(handle);
    if (!isKnown) {
        return std::nullopt;
    }
    return FileIdentity{information.dwVolumeSerialNumber, joined(information.nFileIndexHigh, information.nFileIndexLow),
                        static_cast<std::int64_t>(joined(information.ftLastWriteTime.dwHighDateTime,
                                                         information.ftLastWriteTime.dwLowDateTime))};
}

FileKind kindOf(const char* path) {
    const HANDLE handle = ::CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return FileKind::kAbsent;
    }
    BY_HANDLE_FILE_INFORMATION information;
    const bool isRegular = ::GetFileType(handle) == FILE_TYPE_DISK &&
                           ::GetFileInformationByHandle(handle, &information) != 0 &&
                           (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
    ::CloseHandle(handle);
    return isRegular ? FileKind::kRegular : FileKind::kOther;
}

std::string linkTarget(const char* path) {
    const DWORD attributes = ::GetFileAttributesA(path);
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return path;
    }
    const HANDLE handle = ::CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return path;
    }
    char target[4096];
    const DWORD length = ::GetFinalPathNameByHandleA(handle, target, sizeof target, FILE_NAME_NORMALIZED);
    ::CloseHandle(handle);
    return length > 0 && length < sizeof target ? std::string(target, length) : std::string(path);
}

bool isWritable(const char* path) {
    const DWORD attributes = ::GetFileAttributesA(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) == 0;
}

std::optional<FileStamp> stampOf(const char* path) {
    const HANDLE handle = ::CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return std::nullopt;
    }
    const std::optional<FileStamp> stamp = stampFrom(handle);
    ::CloseHandle(handle);
    return stamp;
}

bool replaceFile(const char* from, const char* to) {
    return ::MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING) != 0;
}

void removeFile(const char* path) {
    ::DeleteFileA(path);
}

void removeAbandonedFiles(const std::string& folder, std::string_view prefix, std::string_view suffix,
                          std::size_t length) {
    const std::string before = folder.empty() ? std::string() : folder + "/";
    std::vector<std::string> found;
    WIN32_FIND_DATAA entry;
    const HANDLE search = ::FindFirstFileA((before + "*").c_str(), &entry);
    for (bool isThere = search != INVALID_HANDLE_VALUE; isThere; isThere = ::FindNextFileA(search, &entry) != 0) {
        const std::string_view name = entry.cFileName;
        if (name.size() == length && name.starts_with(prefix) && name.ends_with(suffix)) {
            found.emplace_back(name);
        }
    }
    if (search != INVALID_HANDLE_VALUE) {
        ::FindClose(search);
    }
    for (const std::string& name : found) {
        // Shared with nobody, so that it fails where someone has the file open.
        const HANDLE handle = ::CreateFileA((before + name).c_str(), DELETE, 0, nullptr, OPEN_EXISTING,
                                            FILE_FLAG_DELETE_ON_CLOSE, nullptr);
        if (handle != INVALID_HANDLE_VALUE) {
            ::CloseHandle(handle);
        }
    }
}

std::uint64_t randomNumber() {
    unsigned high = 0;
    unsigned low = 0;
    // Where that fails, names that are taken are passed over all the same.
    if (::rand_s(&high) != 0 || ::rand_s(&low) != 0) {
        return ::GetTickCount64() * 0x9E3779B97F4A7C15 + processId();
    }
    return joined(high, low);
}

std::uint64_t processId() {
    return ::GetCurrentProcessId();
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
    SYSTEMTIME now;
    ::GetLocalTime(&now);
    char text[] = "00:00:00";
    const auto putTwoDigits = [&text](int at, int value) {
        text[at] = static_cast<char>('0' + value / 10);
        text[at + 1] = static_cast<char>('0' + value % 10);
    };
    putTwoDigits(0, now.wHour);
    putTwoDigits(3, now.wMinute);
    putTwoDigits(6, now.wSecond);
    return text;
}

std::string currentDirectory() {
    char directory[1024];
    const DWORD length = ::GetCurrentDirectoryA(sizeof directory, directory);
    return length > 0 && length < sizeof directory ? std::string(directory, length) : std::string();
}

}  // namespace talvek::system
#endif
