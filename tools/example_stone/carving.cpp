#include "example_stone/carving.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "example_stone/hash_noise.h"

namespace talvek::example {

namespace {

constexpr double kFieldDepth = 6.0;
constexpr SidePoint kFrontCentre{kBlockSize.x / 2.0, kBlockSize.y / 2.0};

double distanceBetween(const SidePoint& a, const SidePoint& b) {
    const double du = a.u - b.u;
    const double dv = a.v - b.v;
    return std::sqrt(du * du + dv * dv);
}

double distanceToEdge(const BoxSide& side, const SidePoint& at) {
    return std::max(0.0, std::min({at.u, side.uLength - at.u, at.v, side.vLength - at.v}));
}

/// 1 at 0, falling to 0 at -1 and 1.
double roundedRidge(double x) {
    return std::max(0.0, 1.0 - x * x);
}

/// Six petals as a compass draws them: each is what two circles through the centre have in common.
double petalDepth(const SidePoint& at) {
    constexpr double kRadius = 58.0;
    constexpr double kSlope = 0.8;
    constexpr double kSin60 = 0.8660254037844386;
    constexpr std::array<SidePoint, 6> kDirections{
        {{1.0, 0.0}, {0.5, kSin60}, {-0.5, kSin60}, {-1.0, 0.0}, {-0.5, -kSin60}, {0.5, -kSin60}}};
    std::array<double, 6> inside{};
    for (std::size_t k = 0; k < inside.size(); ++k) {
        const SidePoint centre{kFrontCentre.u + kRadius * kDirections[k].u,
                               kFrontCentre.v + kRadius * kDirections[k].v};
        inside[k] = kRadius - distanceBetween(at, centre);
    }
    double depth = 0.0;
    for (std::size_t k = 0; k < inside.size(); ++k) {
        depth = std::max(depth, kSlope * std::min(inside[k], inside[(k + 2) % inside.size()]));
    }
    return depth;
}

double rosetteDepth(const SidePoint& at) {
    const double radius = distanceBetween(at, kFrontCentre);
    return 0.8 + petalDepth(at) + 2.6 * roundedRidge((radius - 65.0) / 4.0);
}

/// Height of a boss with a ring around it over the sunk field.
double bossHeight(const SidePoint& at, const SidePoint& centre) {
    const double radius = distanceBetween(at, centre);
    const double dome = 5.2 * std::sqrt(roundedRidge(radius / 15.0));
    return dome + 3.2 * roundedRidge((radius - 22.0) / 4.0);
}

double diamondHeight(const SidePoint& at, const SidePoint& centre) {
    const double reach = std::abs(at.u - centre.u) / 16.0 + std::abs(at.v - centre.v) / 20.0;
    return 5.2 * std::max(0.0, 1.0 - reach);
}

/// Height of what stands beside the rosette; the same to its left and right, above and below.
double ornamentHeight(const SidePoint& at) {
    const SidePoint folded{std::min(at.u, kBlockSize.x - at.u), std::min(at.v, kBlockSize.y - at.v)};
    return std::max(bossHeight(folded, {46.0, 49.0}), diamondHeight(folded, {46.0, kFrontCentre.v}));
}

double reliefDepth(const BoxSide& side, const SidePoint& at, const Vec3& point) {
    const double field = kFieldDepth * smoothStep(12.0, 17.0, distanceToEdge(side, at)) - ornamentHeight(at);
    const double rosette = 1.0 - smoothStep(70.0, 75.0, distanceBetween(at, kFrontCentre));
    const double grain = 0.5 * valueNoise(point, 22.0, 11) + 0.35 * valueNoise(point, 5.0, 12);
    return std::max(0.0, field + (rosetteDepth(at) - field) * rosette) + grain;
}

/// One chisel groove beside the other, each cut steeply on one side.
double grooveDepth(const SidePoint& at, const Vec3& point) {
    constexpr double kStepsPerGroove = 5.0;
    constexpr double kSteepPart = 0.4;
    const double position = (at.u / kDressedStepU - at.v / kDressedStepV) / kStepsPerGroove;
    const double groove = std::floor(position);
    const double phase = position - groove;
    const double profile = phase < kSteepPart ? phase / kSteepPart : (1.0 - phase) / (1.0 - kSteepPart);
    const double hand = unitFromHash(hashOfCell(static_cast<std::int64_t>(groove), 0, 0, 21), 0);
    return profile * (1.1 + 0.4 * hand + 0.5 * valueNoise(point, 17.0, 22));
}

double dressedDepth(const BoxSide& side, const SidePoint& at, const Vec3& point) {
    constexpr double kMarginDepth = 1.1;
    const double dressed = smoothStep(14.0, 16.5, distanceToEdge(side, at));
    const double cut = grooveDepth(at, point);
    return kMarginDepth + (cut - kMarginDepth) * dressed + 0.25 * valueNoise(point, 6.0, 23);
}

double roughDepth(const BoxSide& side, const SidePoint& at, const Vec3& point) {
    const auto seed = 100U + 10U * static_cast<std::uint64_t>(side.side);
    const double pitched = 2.5 * (1.0 - smoothStep(0.0, 22.0, distanceToEdge(side, at)));
    return pitched + 4.0 * valueNoise(point, 64.0, seed) + 3.0 * valueNoise(point, 27.0, seed + 1) +
           2.0 * valueNoise(point, 12.0, seed + 2) + 0.6 * valueNoise(point, 5.5, seed + 3);
}

/// Worn and chipped edges; the same noise on both sides of an edge, so that a chip goes around it.
double edgeWear(const BoxSide& side, const SidePoint& at, const Vec3& point) {
    const double distance = distanceToEdge(side, at);
    const double wear = 0.7 * (1.0 - smoothStep(0.0, 4.0, distance));
    const double chip = std::max(0.0, valueNoise(point, 15.0, 31) - 0.66) * 14.0;
    return wear + chip * (1.0 - smoothStep(0.0, 9.0, distance));
}

double carvedDepth(const BoxSide& side, const Vec3& point) {
    const SidePoint at = projectedOnSide(side, point);
    const Vec3 foot = pointOnSide(side, at);
    const double wear = edgeWear(side, at, foot);
    switch (side.side) {
        case Side::kFront:
            return wear + reliefDepth(side, at, foot);
        case Side::kRight:
            return wear + dressedDepth(side, at, foot);
        default:
            return wear + roughDepth(side, at, foot);
    }
}

}  // namespace

Vec3 carvedPoint(const Vec3& blockPoint) {
    // The neighbouring sides draw in the points near an edge as well, less with their distance: were only the points of
    // the edge itself moved, deep ones would pass their neighbours and fold the surface.
    constexpr double kReach = 40.0;
    Vec3 carved = blockPoint;
    for (const BoxSide& side : kBoxSides) {
        const double distance = depthBehindSide(side, blockPoint);
        if (distance >= kReach) {
            continue;
        }
        const double share = 1.0 - distance / kReach;
        const double inward = carvedDepth(side, blockPoint) * share * share;
        carved.x -= side.outward.x * inward;
        carved.y -= side.outward.y * inward;
        carved.z -= side.outward.z * inward;
    }
    return carved;
}

}  // namespace talvek::example
