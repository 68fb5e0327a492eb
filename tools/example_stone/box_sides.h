// The six sides of the uncarved block, and where each lies in the texture: unfolded side by side, three above three.
#pragma once

#include <array>
#include <cstddef>

namespace talvek::example {

/// Millimetres; x to the right, y up, z towards the viewer. The uncarved block fills [0, kBlockSize].
struct Vec3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// A corner of the box (0 or 1 per axis), or a direction along an axis.
struct Axis {
    int x = 0;
    int y = 0;
    int z = 0;
};

enum class Side { kFront, kRight, kBack, kTop, kLeft, kBottom };

/// A side has coordinates u and v in millimetres from `corner`; u, v and the outward direction are right-handed, so
/// what runs counter-clockwise in the texture does so on the stone as seen from outside.
struct BoxSide {
    Side side = Side::kFront;
    Axis corner;
    Axis uAxis;
    Axis vAxis;
    Axis outward;
    double uLength = 0.0;
    double vLength = 0.0;
    double atlasLeft = 0.0;
    double atlasBottom = 0.0;
};

struct SidePoint {
    double u = 0.0;
    double v = 0.0;
};

inline constexpr Vec3 kBlockSize{300.0, 200.0, 150.0};
inline constexpr double kAtlasMargin = 10.0;
/// The atlas has the scale of the stone: 790 mm by 430 mm stand for texture coordinates from 0 to 1.
inline constexpr double kAtlasWidth = 2.0 * kBlockSize.x + kBlockSize.z + 4.0 * kAtlasMargin;
inline constexpr double kAtlasHeight = 2.0 * kBlockSize.y + 3.0 * kAtlasMargin;

inline constexpr double kAtlasColumn1 = kBlockSize.x + 2.0 * kAtlasMargin;
inline constexpr double kAtlasColumn2 = kAtlasColumn1 + kBlockSize.z + kAtlasMargin;
inline constexpr double kAtlasRow1 = kBlockSize.y + 2.0 * kAtlasMargin;

// In the order of the enumerators of Side.
inline constexpr std::array<BoxSide, 6> kBoxSides{{
    {Side::kFront, {0, 0, 1}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, kBlockSize.x, kBlockSize.y, kAtlasMargin, kAtlasRow1},
    {Side::kRight, {1, 0, 1}, {0, 0, -1}, {0, 1, 0}, {1, 0, 0}, kBlockSize.z, kBlockSize.y, kAtlasColumn1, kAtlasRow1},
    {Side::kBack, {1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, 0, -1}, kBlockSize.x, kBlockSize.y, kAtlasColumn2, kAtlasRow1},
    {Side::kTop, {0, 1, 1}, {1, 0, 0}, {0, 0, -1}, {0, 1, 0}, kBlockSize.x, kBlockSize.z, kAtlasMargin, kAtlasMargin},
    {Side::kLeft, {0, 0, 0}, {0, 0, 1}, {0, 1, 0}, {-1, 0, 0}, kBlockSize.z, kBlockSize.y, kAtlasColumn1, kAtlasMargin},
    {Side::kBottom,
     {0, 0, 0},
     {1, 0, 0},
     {0, 0, 1},
     {0, -1, 0},
     kBlockSize.x,
     kBlockSize.z,
     kAtlasColumn2,
     kAtlasMargin},
}};

constexpr const BoxSide& boxSide(Side side) {
    return kBoxSides[static_cast<std::size_t>(side)];
}

/// The side whose tile of the atlas a point belongs to; the margins are shared out half and half.
constexpr const BoxSide& sideAtAtlasPoint(double atlasX, double atlasY) {
    const bool upper = atlasY >= kAtlasRow1 - kAtlasMargin / 2.0;
    if (atlasX < kAtlasColumn1 - kAtlasMargin / 2.0) {
        return boxSide(upper ? Side::kFront : Side::kTop);
    }
    if (atlasX < kAtlasColumn2 - kAtlasMargin / 2.0) {
        return boxSide(upper ? Side::kRight : Side::kLeft);
    }
    return boxSide(upper ? Side::kBack : Side::kBottom);
}

/// Where a point of a side lies on the uncarved block.
constexpr Vec3 pointOnSide(const BoxSide& side, const SidePoint& at) {
    return {side.corner.x * kBlockSize.x + side.uAxis.x * at.u + side.vAxis.x * at.v,
            side.corner.y * kBlockSize.y + side.uAxis.y * at.u + side.vAxis.y * at.v,
            side.corner.z * kBlockSize.z + side.uAxis.z * at.u + side.vAxis.z * at.v};
}

constexpr double along(const Axis& axis, const Vec3& vector) {
    return axis.x * vector.x + axis.y * vector.y + axis.z * vector.z;
}

constexpr Vec3 fromCorner(const BoxSide& side, const Vec3& point) {
    return {point.x - side.corner.x * kBlockSize.x, point.y - side.corner.y * kBlockSize.y,
            point.z - side.corner.z * kBlockSize.z};
}

/// The foot of a point of the block on a side, in the side's coordinates.
constexpr SidePoint projectedOnSide(const BoxSide& side, const Vec3& point) {
    const Vec3 offset = fromCorner(side, point);
    return {along(side.uAxis, offset), along(side.vAxis, offset)};
}

/// How far inside the block a point lies behind a side.
constexpr double depthBehindSide(const BoxSide& side, const Vec3& point) {
    return -along(side.outward, fromCorner(side, point));
}

}  // namespace talvek::example
