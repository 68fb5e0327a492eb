#include "weathering/mineral_classes.h"

#include <array>
#include <cstddef>

namespace talvek {

namespace {

struct MineralClass {
    std::array<float, 3> pixel;
    float factor;
};

/// Class 1 stands first. The channels are blue, green, red.
constexpr std::array<MineralClass, 20> kClasses = {{
    {{0, 255, 255}, 0.96F},  {{221, 160, 221}, 0.94F}, {{180, 105, 255}, 0.91F}, {{0, 0, 128}, 0.89F},
    {{0, 192, 0}, 0.77F},    {{0, 255, 0}, 0.78F},     {{0, 102, 51}, 0.84F},    {{0, 64, 192}, 0.9F},
    {{0, 128, 128}, 0.96F},  {{255, 192, 192}, 1},     {{255, 128, 128}, 0.76F}, {{128, 192, 255}, 0.8F},
    {{0, 128, 255}, 0.84F},  {{34, 34, 178}, 0.89F},   {{0, 215, 255}, 0.91F},   {{0, 0, 255}, 0.94F},
    {{211, 85, 186}, 0.96F}, {{192, 0, 0}, 1},         {{128, 128, 128}, 0},     {{255, 255, 255}, 1},
}};

}  // namespace

std::int32_t mineralClassOf(float p0, float p1, float p2) {
    for (std::size_t i = 0; i < kClasses.size(); ++i) {
        const std::array<float, 3>& pixel = kClasses[i].pixel;
        if (pixel[0] == p0 && pixel[1] == p1 && pixel[2] == p2) {
            return static_cast<std::int32_t>(i) + 1;
        }
    }
    return 0;
}

float mineralFactor(std::int32_t mineralClass) {
    return mineralClass == 0 ? 0 : kClasses[static_cast<std::size_t>(mineralClass) - 1].factor;
}

float mineralDelta(float p0, float p1, float p2, float delta) {
    const float factor = mineralFactor(mineralClassOf(p0, p1, p2));
    return factor == 0 ? 0 : delta * factor;
}

}  // namespace talvek
