// Where bytes go: a file that is written from front to back, buffered, every write checked, and put in place as a
// whole.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/heap_array.h"
#include "base/system.h"

namespace talvek {

/// Whether a finished file may still be lost when the machine stops.
enum class Durability : bool { kUnflushed, kOnDisk };

class OutputFile {
  public:
    /// Creates a file beside the one that `path` names, which takes its place in finish. Symbolic links are followed;
    /// what is no regular file (a device, a pipe) is written directly. Throws std::bad_alloc.
    explicit OutputFile(const char* path, Durability durability = Durability::kUnflushed);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    /// What was not finished leaves no trace.
    ~OutputFile();

    bool isOpen() const { return file_.isOpen(); }

    void write(std::string_view text) { writeBytes(text.data(), text.size()); }
    void writeBytes(const void* bytes, std::size_t size);

    /// Room for `size` characters, at most kLargestReservation, which the caller fills from the front and then hands
    /// over with commit.
    char* reserve(std::size_t size) {
        if (kBufferSize - used_ < size) {
            flush();
        }
        return buffer_.get() + used_;
    }
    void commit(const char* end) { used_ = static_cast<std::size_t>(end - buffer_.get()); }

    /// Writes what is left, closes the file and puts it in place. False when anything failed since the constructor: the
    /// old file is then untouched.
    bool finish();

    static constexpr std::size_t kLargestReservation = 65536;

  private:
    static constexpr std::size_t kBufferSize = 262144;

    void openBeside(const char* path);
    void flush();
    void discard();

    std::string target_;
    std::string path_;
    Durability durability_;
    bool isDirect_ = false;
    bool isFailed_ = false;
    system::File file_;
    HeapArray<char> buffer_;
    std::size_t used_ = 0;
};

}  // namespace talvek
