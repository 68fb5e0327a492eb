// In which order the surfaces of a run are coded, and from which others each is foretold.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace talvek::host {

/// The weights of a foretelling add up to this.
inline constexpr std::int32_t kUnitWeight = 1 << 14;

struct Reference {
    std::size_t frame = 0;
    std::int32_t weight = 0;
};

/// One frame, and the frames that are decoded before it. The first of these is one of the two neighbours; the weights
/// of all are in `kUnitWeight`s.
struct CodedFrame {
    std::size_t frame = 0;
    std::vector<Reference> references;
};

/// The order for frames 0 to n: the first, the last from the first, then what lies in the middle of two, level by
/// level. Frames between two others have as references the two, and the next frame outside on either side of which one
/// of the two was made: any frame needs no more than log2(n) + 2 others. The weights are left 0.
std::vector<CodedFrame> codingOrder(std::size_t frames);

/// Sets the weights by which the references foretell a frame at `time`: those of the polynomial through all of them.
/// Where references have no times of their own, the nearer half has all the weight.
void setWeights(CodedFrame& coded, std::span<const double> times);

}  // namespace talvek::host
