// What the mason took away: how far the carved surface lies behind each side of the uncarved block.
#pragma once

#include "example_stone/box_sides.h"

namespace talvek::example {

/// The front and the right side are worked finely enough to need the mesh's full density.
constexpr bool isFinelyWorked(Side side) {
    return side == Side::kFront || side == Side::kRight;
}

/// The chisel grooves of the dressed side run along the diagonals of its lattice, so each is sampled alike over its
/// whole length; these are the steps of that lattice.
inline constexpr double kDressedStepU = kBlockSize.z / 64.0;
inline constexpr double kDressedStepV = kBlockSize.y / 86.0;

/// The point of the carved surface that a point of the uncarved block's surface has become.
Vec3 carvedPoint(const Vec3& blockPoint);

}  // namespace talvek::example
