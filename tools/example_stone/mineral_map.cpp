#include "example_stone/mineral_map.h"

#include <cmath>
#include <cstddef>
#include <limits>

#include "example_stone/box_sides.h"
#include "example_stone/hash_noise.h"

namespace talvek::example {

namespace {

constexpr int kPixelsPerMetre = 1300;
constexpr int kMapWidth = static_cast<int>(kAtlasWidth) * kPixelsPerMetre / 1000;
constexpr int kMapHeight = static_cast<int>(kAtlasHeight) * kPixelsPerMetre / 1000;
static_assert(kMapWidth * 3 % 4 != 0, "the rows show that they are padded to whole words");

/// The grain that a point belongs to: that of the nearest seed, of which every cubic cell holds one.
std::uint64_t grainAt(const Vec3& point, double cellSize, std::uint64_t seed) {
    const Vec3 scaled{point.x / cellSize, point.y / cellSize, point.z / cellSize};
    const auto cellX = static_cast<std::int64_t>(std::floor(scaled.x));
    const auto cellY = static_cast<std::int64_t>(std::floor(scaled.y));
    const auto cellZ = static_cast<std::int64_t>(std::floor(scaled.z));
    std::uint64_t nearest = 0;
    double nearestDistance = std::numeric_limits<double>::max();
    for (int neighbour = 0; neighbour < 27; ++neighbour) {
        const std::int64_t x = cellX + neighbour % 3 - 1;
        const std::int64_t y = cellY + neighbour / 3 % 3 - 1;
        const std::int64_t z = cellZ + neighbour / 9 - 1;
        const std::uint64_t grain = hashOfCell(x, y, z, seed);
        const double dx = static_cast<double>(x) + unitFromHash(grain, 0) - scaled.x;
        const double dy = static_cast<double>(y) + unitFromHash(grain, 21) - scaled.y;
        const double dz = static_cast<double>(z) + unitFromHash(grain, 42) - scaled.z;
        const double distance = dx * dx + dy * dy + dz * dz;
        if (distance < nearestDistance) {
            nearestDistance = distance;
            nearest = grain;
        }
    }
    return nearest;
}

/// Two veins cross the block as warped slabs, the second thinner and branching off the first.
bool isInVein(const Vec3& point) {
    const double warp = 26.0 * valueNoise(point, 55.0, 41) + 5.0 * valueNoise(point, 11.0, 42);
    const double width = 1.8 + 3.0 * valueNoise(point, 30.0, 43);
    const double main = 0.86 * point.x - 0.48 * point.y + 0.17 * point.z - 118.0 + warp;
    const double branch = 0.35 * point.x + 0.92 * point.y + 0.18 * point.z - 186.0 + warp;
    return std::abs(main) < width || (main > 0.0 && std::abs(branch) < 0.45 * width);
}

std::uint8_t mineralAt(const Vec3& point) {
    if (isInVein(point)) {
        return kVeinClass;
    }
    // One entry per twentieth of the grains; 0 is the groundmass.
    constexpr std::array<std::uint8_t, 20> kGrainClasses{12, 11, 9, 13, 14, 7, 4};
    const std::uint64_t choice = hashOfCell(static_cast<std::int64_t>(grainAt(point, 8.0, 51) >> 1U), 0, 0, 52);
    const std::uint8_t grain = kGrainClasses[choice % kGrainClasses.size()];
    if (grain != 0) {
        return grain;
    }
    return valueNoise(point, 24.0, 53) < 0.45 ? 10 : 20;
}

void appendLittleEndian(std::string& bytes, std::uint32_t value, int size) {
    for (int k = 0; k < size; ++k) {
        bytes += static_cast<char>(static_cast<unsigned char>(value >> (8U * static_cast<unsigned>(k)) & 0xFFU));
    }
}

void appendHeader(std::string& bytes, const MineralMap& map, std::size_t pixelBytes) {
    constexpr std::uint32_t kFileHeaderSize = 14;
    constexpr std::uint32_t kImageHeaderSize = 40;
    const auto imageSize = static_cast<std::uint32_t>(pixelBytes);
    bytes += "BM";
    appendLittleEndian(bytes, kFileHeaderSize + kImageHeaderSize + imageSize, 4);
    appendLittleEndian(bytes, 0, 4);
    appendLittleEndian(bytes, kFileHeaderSize + kImageHeaderSize, 4);
    appendLittleEndian(bytes, kImageHeaderSize, 4);
    appendLittleEndian(bytes, static_cast<std::uint32_t>(map.width), 4);
    appendLittleEndian(bytes, static_cast<std::uint32_t>(map.height), 4);
    appendLittleEndian(bytes, 1, 2);   // planes
    appendLittleEndian(bytes, 24, 2);  // bits per pixel
    appendLittleEndian(bytes, 0, 4);   // not compressed
    appendLittleEndian(bytes, imageSize, 4);
    appendLittleEndian(bytes, kPixelsPerMetre, 4);
    appendLittleEndian(bytes, kPixelsPerMetre, 4);
    appendLittleEndian(bytes, 0, 4);  // no palette
    appendLittleEndian(bytes, 0, 4);
}

}  // namespace

MineralMap makeMineralMap() {
    MineralMap map{kMapWidth, kMapHeight, {}};
    map.classes.reserve(static_cast<std::size_t>(kMapWidth) * kMapHeight);
    for (int row = 0; row < kMapHeight; ++row) {
        const double atlasY = (row + 0.5) / kMapHeight * kAtlasHeight;
        for (int column = 0; column < kMapWidth; ++column) {
            const double atlasX = (column + 0.5) / kMapWidth * kAtlasWidth;
            const BoxSide& side = sideAtAtlasPoint(atlasX, atlasY);
            map.classes.push_back(mineralAt(pointOnSide(side, {atlasX - side.atlasLeft, atlasY - side.atlasBottom})));
        }
    }
    return map;
}

std::string bitmapBytes(const MineralMap& map) {
    const std::size_t width = static_cast<std::size_t>(map.width);
    const std::size_t padding = (4 - width * 3 % 4) % 4;
    const std::size_t pixelBytes = (width * 3 + padding) * static_cast<std::size_t>(map.height);
    std::string bytes;
    bytes.reserve(pixelBytes + 64);
    appendHeader(bytes, map, pixelBytes);
    for (std::size_t pixel = 0; pixel < map.classes.size(); ++pixel) {
        const MapColor& color = kClassColors[map.classes[pixel] - 1U];
        bytes += static_cast<char>(color.blue);
        bytes += static_cast<char>(color.green);
        bytes += static_cast<char>(color.red);
        if ((pixel + 1) % width == 0) {
            bytes.append(padding, '\0');
        }
    }
    return bytes;
}

}  // namespace talvek::example
