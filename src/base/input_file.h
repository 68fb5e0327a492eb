// Where bytes come from: a file that is read from front to back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/system.h"

namespace talvek {

class InputFile {
  public:
    explicit InputFile(const char* path) : file_(system::File::openForReading(path)) {
        size_ = file_.isOpen() ? file_.size() : -1;
    }

    bool isOpen() const { return file_.isOpen(); }

    /// Reads as many bytes as there are, up to `size`. A read that fails counts as the end of the file, and hasFailed
    /// tells the difference.
    std::size_t read(void* to, std::size_t size) {
        std::size_t got = 0;
        while (got < size) {
            const std::int64_t piece = file_.read(static_cast<char*>(to) + got, size - got);
            if (piece <= 0) {
                hasFailed_ |= piece < 0;
                break;
            }
            got += static_cast<std::size_t>(piece);
        }
        position_ += static_cast<std::int64_t>(got);
        return got;
    }

    /// Whether a read has failed, so that what was read is not all there is.
    bool hasFailed() const { return hasFailed_; }

    /// The size of a regular file; of anything else what has been read of it so far.
    std::int64_t size() const { return size_ < 0 ? position_ : size_; }

    /// Which file this is, and its state.
    std::optional<system::FileStamp> stamp() const { return file_.stamp(); }

    /// The bytes that are left in a regular file, -1 for anything else (a pipe, a device).
    std::int64_t remaining() const { return size_ < 0 ? -1 : (size_ > position_ ? size_ - position_ : 0); }

  private:
    system::File file_;
    std::int64_t size_ = -1;
    std::int64_t position_ = 0;
    bool hasFailed_ = false;
};

}  // namespace talvek
