// Many small values into a file, without a question for each of them.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <span>

#include "base/little_endian.h"
#include "base/output_file.h"

namespace talvek::host {

/// Writes `count` rows of `rowSize` bytes: out = fill(out, row) writes one and returns where the next begins.
template <typename Fill>
void writeRows(OutputFile& file, std::size_t count, std::size_t rowSize, Fill fill) {
    const std::size_t most = OutputFile::kLargestReservation / rowSize;
    for (std::size_t row = 0; row < count;) {
        const std::size_t end = std::min(count, row + most);
        char* out = file.reserve((end - row) * rowSize);
        for (; row < end; ++row) {
            out = fill(out, row);
        }
        file.commit(out);
    }
}

/// Numbers of 32 bits, the lowest byte first: on most machines as they lie in memory.
template <typename T>
void writeNumbers(OutputFile& file, std::span<const T> values) {
    if constexpr (std::endian::native == std::endian::little) {
        file.writeBytes(values.data(), values.size_bytes());
    } else {
        writeRows(file, values.size(), sizeof(T),
                  [values](char* out, std::size_t i) { return toLittleEndian(out, values[i]); });
    }
}

template <typename T>
void writeNumber(OutputFile& file, T value) {
    file.commit(toLittleEndian(file.reserve(sizeof value), value));
}

/// A number of 64 bits.
inline void writeLong(OutputFile& file, std::uint64_t value) {
    writeNumber(file, static_cast<std::uint32_t>(value));
    writeNumber(file, static_cast<std::uint32_t>(value >> 32));
}

}  // namespace talvek::host
