// A mesh file as its readers see it: bytes or lines from front to back, whether it is compressed or not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/input_file.h"
#include "talvek/formats/gzip_stream.h"

namespace talvek::host {

class MeshInput {
  public:
    /// Throws Failure when the file cannot be opened.
    explicit MeshInput(std::string path);

    /// What comes next: at least `size` bytes, unless the file ends before. Valid until the next call; pass tells how
    /// much of it has been read.
    std::string_view ahead(std::size_t size);
    void pass(std::size_t size) { begin_ += size; }

    /// The next line without its end; false behind the last one. Valid until the next call.
    bool nextLine(std::string_view& line);
    /// The number of the line that was read last, from 1.
    std::int64_t lineNumber() const { return lineNumber_; }

    /// No more than this many bytes can still come: what promises more is damaged.
    std::uint64_t mostLeft() const;
    bool isCompressed() const { return gzip_ != nullptr; }
    const std::string& path() const { return path_; }

    /// Throws Failure, naming the line that was read last.
    [[noreturn]] void failAtLine(const std::string& reason) const;
    /// Throws Failure, naming the byte that comes next.
    [[noreturn]] void failAtByte(const std::string& reason) const;

  private:
    std::size_t read(char* to, std::size_t size);
    /// Passes over the mark that some programs put in front of their text.
    void beginText();
    /// Reads on until `size` bytes lie ahead, or the file ends.
    void fill(std::size_t size);

    std::string path_;
    InputFile file_;
    std::unique_ptr<GzipStream> gzip_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    /// Bytes of the mesh that have left the buffer.
    std::uint64_t passed_ = 0;
    std::int64_t lineNumber_ = 0;
    bool atEnd_ = false;
};

}  // namespace talvek::host
