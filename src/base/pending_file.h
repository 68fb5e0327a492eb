// One file that is being written beside the one whose place it takes when it is complete.
#pragma once

#include <cstddef>
#include <string>

#include "base/system.h"

namespace talvek {

/// Whether a finished file may still be lost when the machine stops.
enum class Durability : bool { kUnflushed, kOnDisk };

class PendingFile {
  public:
    /// Symbolic links are followed; what is no regular file (a device, a pipe) is written directly. Throws
    /// std::bad_alloc.
    explicit PendingFile(const char* path);
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

    std::string target_;
    std::string path_;
    bool isDirect_ = false;
    bool isFailed_ = false;
    system::File file_;
};

}  // namespace talvek
