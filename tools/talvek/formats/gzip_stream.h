// The bytes of a file that is compressed with gzip, from front to back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "base/input_file.h"

namespace talvek::host {

class GzipStream {
  public:
    /// Continues a file of which nothing has been read. `path` begins the messages.
    GzipStream(InputFile& file, std::string path);
    ~GzipStream();
    GzipStream(const GzipStream&) = delete;
    GzipStream& operator=(const GzipStream&) = delete;

    /// Up to `size` bytes, fewer at the end only. Throws Failure for damage, for a file that is cut, and when the file
    /// expands beyond what meshes do.
    std::size_t read(void* to, std::size_t size);

    /// No more than this can still come.
    std::uint64_t mostLeft() const { return limit_ - produced_; }

  private:
    struct State;
    void feed();

    InputFile& file_;
    std::string path_;
    std::uint64_t limit_ = 0;
    std::uint64_t produced_ = 0;
    bool atEnd_ = false;
    std::unique_ptr<State> state_;
};

}  // namespace talvek::host
