// Everything that the library asks of the operating system: files, memory, the console, the clock. A function makes
// the plain system call and returns whether it failed; buffering, checking and putting files in place are the business
// of those who call it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace talvek::system {

/// A block of at least `bytes` bytes from the C heap, or null.
void* allocate(std::size_t bytes) noexcept;
void* allocateZeroed(std::size_t bytes) noexcept;
void release(void* block) noexcept;
/// Gives back what lies behind the first `bytes` bytes of a block. Returns the block, which may have moved; unchanged
/// where the system cannot do it.
void* shrink(void* block, std::size_t bytes) noexcept;

/// What a file is found to be: which one of all, whatever it is called, and in what state.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t index = 0;
    std::int64_t size = 0;
    /// When it was last written, in the system's own units.
    std::int64_t written = 0;

    bool isSameFile(const FileStamp& other) const { return device == other.device && index == other.index; }
    bool operator==(const FileStamp&) const = default;
};

/// Who may use a file that is created: whoever the system lets use new files, or for the time being its owner alone.
enum class NewFile : bool { kUsual, kPrivate };

/// An open file; closed when it goes out of scope. It never has one of the descriptors that stand for standard input,
/// output and error, even where these are closed. Writing ends no process: where a signal would, the write fails.
class File {
  public:
    /// An operating system's handle: a descriptor or a HANDLE, -1 when there is none.
    using Handle = std::intptr_t;

    File() = default;
    File(File&& other) noexcept : handle_(std::exchange(other.handle_, kNone)) {}
    File& operator=(File&& other) noexcept {
        if (this != &other) {
            close();
            handle_ = std::exchange(other.handle_, kNone);
        }
        return *this;
    }
    ~File() { close(); }

    static File openForReading(const char* path);
    /// Empties the file, or creates it.
    static File openForWriting(const char* path);
    static File openForAppending(const char* path);
    /// Opens a file, or creates it, and keeps other processes from opening it in this way until this one closes it or
    /// ends, however that comes about. Not open where another one holds it.
    static File openLocked(const char* path);
    /// Creates the file; fails when the name is taken.
    static File createNew(const char* path, NewFile use = NewFile::kUsual);
    /// Creates a file that counts as in use as long as it, or a duplicate of it, is open: removeAbandonedFiles leaves
    /// it alone. Fails when the name is taken.
    static File createInUse(const char* path, NewFile use);

    bool isOpen() const { return handle_ != kNone; }
    /// Reads up to `size` bytes; the number read, 0 at the end of the file, -1 on failure.
    std::int64_t read(void* to, std::size_t size);
    /// Writes all bytes, or returns false.
    bool write(const void* from, std::size_t size);
    /// Moves the reading position forward.
    bool skip(std::int64_t bytes);
    /// Size in bytes of a regular file, -1 of anything else.
    std::int64_t size() const;
    /// Which file this is, and its state; nothing where the system cannot tell.
    std::optional<FileStamp> stamp() const;
    /// The same open file once more.
    File duplicate() const;
    /// Gives this file the owner, the permissions and the further attributes of the one that `path` names. False when
    /// it now has another owner or other permissions.
    bool takeOver(const char* path);
    /// Waits until what was written is on the disk.
    bool flushToDisk();
    /// False when the file, or an earlier write to it, turns out to have failed.
    bool close();

  private:
    static constexpr Handle kNone = -1;
    explicit File(Handle handle) : handle_(handle) {}
    Handle handle_ = kNone;
};

enum class FileKind : std::uint8_t { kAbsent, kRegular, kOther };

/// What tells a file from another one that has its name later on, however coarse the file system's times are.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    std::int64_t written = 0;
    bool operator==(const FileIdentity&) const = default;
};

/// Nothing where there is no file; symbolic links are followed.
std::optional<FileIdentity> identityOf(const char* path);

/// What stands under a name; symbolic links are followed.
FileKind kindOf(const char* path);
/// The file that a symbolic link names in the end, which need not exist; the path itself when it is none; empty for
/// links that lead in a circle.
std::string linkTarget(const char* path);
bool isWritable(const char* path);
/// The file that stands under a name; symbolic links are followed. Nothing where there is none.
std::optional<FileStamp> stampOf(const char* path);
/// Gives a file another name, replacing what stands there, in one step.
bool replaceFile(const char* from, const char* to);
void removeFile(const char* path);
/// Removes the files of a folder whose names begin and end like this and are `length` characters long, unless they are
/// in use. An empty folder name stands for the working directory.
void removeAbandonedFiles(const std::string& folder, std::string_view prefix, std::string_view suffix,
                          std::size_t length);
/// A number that nobody can foresee.
std::uint64_t randomNumber();
/// A number that no other running process has.
std::uint64_t processId();

void writeToStandardOutput(std::string_view text);
void writeToStandardError(std::string_view text);

/// The local time of day, "HH:MM:SS".
std::string timeOfDay();
/// The working directory, empty when it cannot be told or is longer than 1023 characters.
std::string currentDirectory();

/// What ends a line of a text file on this platform.
#ifdef _WIN32
inline constexpr std::string_view kLineEnd = "\r\n";
#else
inline constexpr std::string_view kLineEnd = "\n";
#endif

}  // namespace talvek::system
