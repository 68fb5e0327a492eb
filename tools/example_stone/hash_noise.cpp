#include "example_stone/hash_noise.h"

#include <algorithm>
#include <cmath>

namespace talvek::example {

namespace {

std::uint64_t mixed(std::uint64_t value) {
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
}

double blend(double a, double b, double weight) {
    return a + (b - a) * weight;
}

double smoothWeight(double t) {
    return t * t * (3.0 - 2.0 * t);
}

/// Noise on the plane of lattice corners at `z`, between the four corners around (x + wx, y + wy).
double noiseInLayer(std::int64_t x, std::int64_t y, std::int64_t z, double wx, double wy, std::uint64_t seed) {
    const auto corner = [&](int dx, int dy) { return unitFromHash(hashOfCell(x + dx, y + dy, z, seed), 0); };
    return blend(blend(corner(0, 0), corner(1, 0), wx), blend(corner(0, 1), corner(1, 1), wx), wy);
}

}  // namespace

std::uint64_t hashOfCell(std::int64_t x, std::int64_t y, std::int64_t z, std::uint64_t seed) {
    std::uint64_t hash = mixed(seed + 0x9E3779B97F4A7C15U);
    hash = mixed(hash ^ (static_cast<std::uint64_t>(x) * 0xD6E8FEB86659FD93U));
    hash = mixed(hash ^ (static_cast<std::uint64_t>(y) * 0xA0761D6478BD642FU));
    return mixed(hash ^ (static_cast<std::uint64_t>(z) * 0xE7037ED1A0B428DBU));
}

double unitFromHash(std::uint64_t hash, int shift) {
    constexpr std::uint64_t kMask = (1U << 21U) - 1U;
    return static_cast<double>((hash >> static_cast<unsigned>(shift)) & kMask) / (kMask + 1U);
}

double valueNoise(const Vec3& point, double scale, std::uint64_t seed) {
    const double cellX = std::floor(point.x / scale);
    const double cellY = std::floor(point.y / scale);
    const double cellZ = std::floor(point.z / scale);
    const double wx = smoothWeight(point.x / scale - cellX);
    const double wy = smoothWeight(point.y / scale - cellY);
    const double wz = smoothWeight(point.z / scale - cellZ);
    const auto x = static_cast<std::int64_t>(cellX);
    const auto y = static_cast<std::int64_t>(cellY);
    const auto z = static_cast<std::int64_t>(cellZ);
    return blend(noiseInLayer(x, y, z, wx, wy, seed), noiseInLayer(x, y, z + 1, wx, wy, seed), wz);
}

double smoothStep(double from, double to, double value) {
    return smoothWeight(std::clamp((value - from) / (to - from), 0.0, 1.0));
}

}  // namespace talvek::example
