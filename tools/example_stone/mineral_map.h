// The example stone's mineral map: which class of mineral lies under each texel, and the bitmap that says so.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace talvek::example {

struct MapColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

/// Colours of the mineral classes; class 1 stands first.
inline constexpr std::array<MapColor, 20> kClassColors{{
    {255, 255, 0}, {221, 160, 221}, {255, 105, 180}, {128, 0, 0},     {0, 192, 0},     {0, 255, 0},     {51, 102, 0},
    {192, 64, 0},  {128, 128, 0},   {192, 192, 255}, {128, 128, 255}, {255, 192, 128}, {255, 128, 0},   {178, 34, 34},
    {255, 215, 0}, {255, 0, 0},     {186, 85, 211},  {0, 0, 192},     {128, 128, 128}, {255, 255, 255},
}};

/// The class that does not weather; it makes the vein.
inline constexpr std::uint8_t kVeinClass = 19;

/// Row by row from the bottom: the texel (u, v) lies in column floor(width * u) and row floor(height * v).
struct MineralMap {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> classes;
};

MineralMap makeMineralMap();

/// The map as an uncompressed 24-bit bitmap file, bottom row first.
std::string bitmapBytes(const MineralMap& map);

}  // namespace talvek::example
