// One file that is being written beside the one whose place it takes when it is complete.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "base/system.h"

namespace talvek {

/// Whether a finished file may still be lost when the machine stops.
enum class Durability : bool { kUnflushed, kOnDisk };

class PendingFile {
  public:
    /// Symbolic links are followed; what is no regular file (a device, a pipe) is written directly. The new file has
    /// the owner, the permissions and the attributes of the old one, as far as the system allows. With `replaced`, it
    /// replaces that very file in that very state and nothing else, and only if it can have its owner and permissions.
    /// Throws std::bad_alloc.
    explicit PendingFile(const char* path, const std::optional<system::FileStamp>& replaced = std::nullopt);
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;
    /// What was not finished leaves no trace.
    ~PendingFile();

    bool isOpen() const { return file_.isOpen(); }

    /// A write that fails is remembered; those behind it do nothing.
    void write(const void* bytes, std::size_t size);

    /// Closes the file and puts it in place. False when anything failed since the constructor: the old file is then
    /// untouched.
    bool finish(Durability durability);

  private:
    void openBeside(const char* path, system::FileKind kind);
    void createUnfinished(system::NewFile use);
    bool mayReplace() const;

    std::string target_;
    std::string path_;
    std::optional<system::FileStamp> replaced_;
    bool isDirect_ = false;
    bool isFailed_ = false;
    system::File file_;
    /// Keeps the file in use between its closing and its taking its place.
    system::File use_;
};

/// Removes the unfinished files that processes which are no more have left in the folder of a file.
void removeAbandonedFilesBeside(const char* path);

}  // namespace talvek
