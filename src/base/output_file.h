// Where bytes go: a file, or several with the same content, written from front to back, buffered, every write checked,
// and put in place as a whole.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/heap_array.h"
#include "base/pending_file.h"

namespace talvek {

class OutputFile {
  public:
    /// Creates a file beside the one that `path` names, which takes its place in finish. Symbolic links are followed;
    /// what is no regular file (a device, a pipe) is written directly. With `replaced` that very file in that very
    /// state is replaced and nothing else. Throws std::bad_alloc.
    explicit OutputFile(const char* path, Durability durability = Durability::kUnflushed,
                        const std::optional<system::FileStamp>& replaced = std::nullopt);
    /// The same for several files that get the same content. One that fails does not keep the others from being
    /// finished, in the order of the paths.
    explicit OutputFile(std::span<const std::string> paths);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    bool isOpen() const;

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

    /// Writes what is left, closes each file and puts it in place. False when anything failed since the constructor:
    /// the old file is then untouched. What is not finished leaves no trace.
    bool finish();

    static constexpr std::size_t kLargestReservation = 65536;

  private:
    static constexpr std::size_t kBufferSize = 262144;

    void flush();
    void writeToAll(const void* bytes, std::size_t size);

    Durability durability_ = Durability::kUnflushed;
    HeapArray<char> buffer_ = makeArray<char>(kBufferSize);
    std::size_t used_ = 0;
    /// A deque, for its elements stay where they were made.
    std::deque<PendingFile> files_;
};

}  // namespace talvek
