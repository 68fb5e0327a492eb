// SHA-256, by which files are told apart (FIPS 180-4).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace talvek::host {

class Sha256 {
  public:
    void add(std::string_view bytes);
    /// The sum of all that was added, in hexadecimal. Nothing is added afterwards.
    std::string finish();

  private:
    static constexpr std::size_t kBlock = 64;

    void addBlock(const unsigned char* block);

    std::array<std::uint32_t, 8> state_ = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                           0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    std::array<unsigned char, kBlock> pending_{};
    std::uint64_t length_ = 0;
};

/// A file's length and sum.
struct FileSum {
    std::uint64_t bytes = 0;
    std::string sha256;
};

/// Throws Failure when the file cannot be read.
FileSum sumOf(const std::string& path);

}  // namespace talvek::host
