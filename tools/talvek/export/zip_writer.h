// A ZIP archive of entries that are stored as they are, written from front to back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/output_file.h"

namespace talvek::host {

class ZipWriter {
  public:
    explicit ZipWriter(OutputFile& file) : file_(file) {}

    /// Begins an entry of so many bytes, which are then given to write.
    void begin(const std::string& name, std::uint64_t size);
    void write(std::string_view bytes);
    /// Ends the entry.
    void end();
    /// Writes the list of the entries, which ends the archive.
    void finish();

  private:
    struct Entry {
        std::string name;
        std::uint64_t size = 0;
        std::uint64_t offset = 0;
        std::uint32_t checksum = 0;
    };
    void put16(std::uint32_t value);
    void put32(std::uint32_t value);
    void put64(std::uint64_t value);
    void putListed(const Entry& entry);

    OutputFile& file_;
    std::uint64_t written_ = 0;
    std::vector<Entry> entries_;
};

}  // namespace talvek::host
