// How blocks of bytes stand in a page: compressed, and as text.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace talvek::host {

using Bytes = std::vector<std::uint8_t>;

enum class Redundancy : std::uint8_t {
    /// Residuals: few values occur often, repetitions tell nothing.
    kRuns,
    /// Faces: whole sequences occur again.
    kRepetitions,
};

/// A raw deflate stream, without zlib's head and checksum. Throws std::bad_alloc.
Bytes compress(std::span<const std::uint8_t> bytes, Redundancy redundancy);

std::string base64Of(std::span<const std::uint8_t> bytes);

/// The CRC-32 of zlib, PNG and others.
std::uint32_t checksumOf(std::span<const std::uint8_t> bytes);

}  // namespace talvek::host
