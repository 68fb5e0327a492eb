// Colours for numbers. Equal steps of a number are equal steps to the eye, and the colours stay apart for the
// colour-blind; a test measures both.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace talvek::host {

/// Red, green and blue of sRGB, in [0, 1].
struct Colour {
    float red, green, blue;
};

class Palette {
  public:
    /// `anchors` are colours, 0xRRGGBB, at equal distances from the palette's beginning to its end.
    constexpr explicit Palette(std::span<const std::uint32_t> anchors) : anchors_(anchors) {}

    /// The colour of a place in [0, 1]; of one outside, that of the nearer end.
    Colour at(double place) const;

  private:
    std::span<const std::uint32_t> anchors_;
};

/// One palette for quantities that begin at nothing, and one for those that go to both sides.
struct PalettePair {
    std::string_view name;
    /// From nothing to much.
    Palette sequential;
    /// From much loss by way of nothing to much growth.
    Palette diverging;
};

/// The first one is used unless another is asked for.
std::span<const PalettePair> palettes();

/// Throws Failure where there is none of that name.
const PalettePair& paletteNamed(std::string_view name);

constexpr Colour colourOf(std::uint32_t rgb) {
    return {static_cast<float>(rgb >> 16 & 0xFF) / 255, static_cast<float>(rgb >> 8 & 0xFF) / 255,
            static_cast<float>(rgb & 0xFF) / 255};
}

/// The nearest of the 256 steps of each channel, red first.
struct ColourBytes {
    std::uint8_t red, green, blue;
};
ColourBytes bytesOf(const Colour& colour);

/// A channel of sRGB as an amount of light, and back.
float lightOf(float channel);
float channelOf(float light);

}  // namespace talvek::host
