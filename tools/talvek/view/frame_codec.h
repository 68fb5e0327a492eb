// Surfaces of one topology as small blocks of bytes, without loss. viewer/src/decoder reads them.
//
// Positions lie as three planes, x of all vertices, then y, then z, each as an ordered integer. A block is a row of
// zigzag numbers in byte planes: the lowest bytes of all numbers, then the next ones. A number that does not fit is all
// ones there, and stands in full, four bytes with the lowest first, behind the planes.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "talvek/view/block_text.h"
#include "talvek/view/frame_tree.h"

namespace talvek::host {

/// 3V ordered integers.
using Positions = std::vector<std::uint32_t>;

struct Block {
    /// Byte planes of a number: 1 to 4.
    std::uint32_t width = 0;
    /// Numbers that stand in full.
    std::uint32_t escapes = 0;
    Bytes bytes;
};

Positions positionsOf(std::span<const float> vertices);

/// What the page verifies: the CRC-32 of the ordered integers, the lowest byte first.
std::uint32_t checksumOfPositions(const Positions& positions);

/// The first surface, as differences to the vertex before.
Block encodeFirst(const Positions& positions);

/// Faces as differences of corners: the first to the first of the face before, the others to the one before them.
Block encodeFaces(std::span<const std::int32_t> corners);

/// A surface as what the references do not foretell. `references` hold the positions of the coded frame's references.
Block encodeFrame(const CodedFrame& coded, const Positions& positions, std::span<const Positions* const> references);

/// How far a foretelling is off, over a sample of the vertices; for choosing between two.
double foretellingError(const CodedFrame& coded, const Positions& positions,
                        std::span<const Positions* const> references);

}  // namespace talvek::host
