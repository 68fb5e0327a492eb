// Blocks of a page back into numbers, as plainly as the form can be read; slow, and with no thought of the encoder's
// ways.
#pragma once

#include <cstdint>
#include <vector>

#include "talvek/view/frame_codec.h"

namespace talvek::test {

std::vector<std::uint8_t> inflated(const host::Bytes& bytes);

/// The numbers of a block before any meaning is given to them.
std::vector<std::uint32_t> unpacked(const host::Block& block, std::size_t count);

host::Positions decodedFirst(const host::Block& block, std::size_t vertices);
std::vector<std::int32_t> decodedFaces(const host::Block& block, std::size_t faces);
host::Positions decodedFrame(const host::Block& block, const host::CodedFrame& coded,
                             const std::vector<host::Positions>& references);

}  // namespace talvek::test
