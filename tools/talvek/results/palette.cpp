// Between two anchors a colour is found in the space OKLab (B. Ottosson, "A perceptual color space for image
// processing", 2020), where distances are about as large as they look.

#include "talvek/results/palette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

// Our own: hue and lightness were chosen, then the anchors laid at equal distances in OKLab.
constexpr std::uint32_t kStone[] = {0xEEEAD9, 0xECD9AD, 0xEFC67F, 0xF0AE59, 0xEF943F, 0xED7A2D, 0xE36138,
                                    0xD64A44, 0xC63958, 0xB2306C, 0x9B2B7B, 0x802783, 0x652386};
constexpr std::uint32_t kBrownBlue[] = {0x692119, 0x923616, 0xB55520, 0xD07935, 0xDEA35E, 0xE4CA9A, 0xECEAE1,
                                        0xA3D5EB, 0x6BBAE2, 0x4299D4, 0x2C78BD, 0x21569F, 0x1B387B};
constexpr std::uint32_t kVioletGreen[] = {0x502370, 0x713995, 0x9157B4, 0xAF77CE, 0xC89CDE, 0xDDC1E9, 0xECE8EE,
                                          0xB6D8B4, 0x87C18B, 0x5BA56A, 0x388652, 0x1A683D, 0x07492C};
// By S. van der Walt and N. Smith, dedicated to the public (CC0); here from its light end to the dark one.
constexpr std::uint32_t kViridis[] = {0xFDE725, 0xBDDF26, 0x7AD151, 0x44BF70, 0x22A884, 0x21918C,
                                      0x2A788E, 0x355F8D, 0x414487, 0x482475, 0x440154};

constexpr PalettePair kPalettes[] = {
    {"stone", Palette(kStone), Palette(kBrownBlue)},
    {"viridis", Palette(kViridis), Palette(kVioletGreen)},
};

using Triple = std::array<float, 3>;

Triple toLab(const Colour& colour) {
    const float r = lightOf(colour.red);
    const float g = lightOf(colour.green);
    const float b = lightOf(colour.blue);
    const float l = std::cbrt(0.4122214708F * r + 0.5363325363F * g + 0.0514459929F * b);
    const float m = std::cbrt(0.2119034982F * r + 0.6806995451F * g + 0.1073969566F * b);
    const float s = std::cbrt(0.0883024619F * r + 0.2817188376F * g + 0.6299787005F * b);
    return {0.2104542553F * l + 0.7936177850F * m - 0.0040720468F * s,
            1.9779984951F * l - 2.4285922050F * m + 0.4505937099F * s,
            0.0259040371F * l + 0.7827717662F * m - 0.8086757660F * s};
}

Colour fromLab(const Triple& lab) {
    const float l = lab[0] + 0.3963377774F * lab[1] + 0.2158037573F * lab[2];
    const float m = lab[0] - 0.1055613458F * lab[1] - 0.0638541728F * lab[2];
    const float s = lab[0] - 0.0894841775F * lab[1] - 1.2914855480F * lab[2];
    const Triple cubes = {l * l * l, m * m * m, s * s * s};
    return {channelOf(4.0767416621F * cubes[0] - 3.3077115913F * cubes[1] + 0.2309699292F * cubes[2]),
            channelOf(-1.2684380046F * cubes[0] + 2.6097574011F * cubes[1] - 0.3413193965F * cubes[2]),
            channelOf(-0.0041960863F * cubes[0] - 0.7034186147F * cubes[1] + 1.7076147010F * cubes[2])};
}

}  // namespace

float lightOf(float channel) {
    return channel <= 0.04045F ? channel / 12.92F : std::pow((channel + 0.055F) / 1.055F, 2.4F);
}

float channelOf(float light) {
    const float inside = std::clamp(light, 0.0F, 1.0F);
    return inside <= 0.0031308F ? 12.92F * inside : 1.055F * std::pow(inside, 1 / 2.4F) - 0.055F;
}

Colour Palette::at(double place) const {
    const double steps = static_cast<double>(anchors_.size() - 1);
    const double step = std::clamp(place, 0.0, 1.0) * steps;
    const auto before = static_cast<std::size_t>(std::min(step, steps - 1));
    const auto share = static_cast<float>(step - static_cast<double>(before));
    const Triple from = toLab(colourOf(anchors_[before]));
    const Triple to = toLab(colourOf(anchors_[before + 1]));
    Triple between{};
    for (std::size_t k = 0; k < between.size(); ++k) {
        between[k] = from[k] + share * (to[k] - from[k]);
    }
    return fromLab(between);
}

std::span<const PalettePair> palettes() {
    return kPalettes;
}

const PalettePair& paletteNamed(std::string_view name) {
    std::string names;
    for (const PalettePair& pair : kPalettes) {
        if (pair.name == name) {
            return pair;
        }
        names += (names.empty() ? "" : ", ") + std::string(pair.name);
    }
    throw Failure(kExitUsage, std::string(name) + ": there is no palette of this name; there are " + names);
}

ColourBytes bytesOf(const Colour& colour) {
    const auto byte = [](float channel) {
        return static_cast<std::uint8_t>(std::lround(255 * std::clamp(channel, 0.0F, 1.0F)));
    };
    return {byte(colour.red), byte(colour.green), byte(colour.blue)};
}

}  // namespace talvek::host
