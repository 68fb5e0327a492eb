// A temporary file in which blocks are put down one after the other and read again in any order.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <vector>

namespace talvek::host {

class Spool {
  public:
    /// Creates the file in a folder. Throws Failure when that cannot be done, or there is no room.
    explicit Spool(const std::filesystem::path& folder);
    Spool(const Spool&) = delete;
    Spool& operator=(const Spool&) = delete;
    ~Spool();

    struct Piece {
        std::uint64_t offset = 0;
        std::uint64_t size = 0;
    };

    Piece append(std::span<const std::uint8_t> bytes);
    void read(const Piece& piece, std::span<std::uint8_t> into);
    std::vector<std::uint8_t> read(const Piece& piece);

  private:
    std::filesystem::path path_;
    std::fstream file_;
    std::uint64_t end_ = 0;
};

}  // namespace talvek::host
