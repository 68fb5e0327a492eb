#include "talvek/picture/shading.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace talvek::host {

namespace {

using Vector = Vector3<float>;

struct Light {
    Vector from;
    float strength;
};

Vector unit(const Vector& v) {
    return v / length(v);
}

float sineOfSlope(float slope) {
    return slope / std::sqrt(1 + slope * slope);
}

/// What hides the sky in one direction across the picture, (right, down).
float hiddenTowards(const VisibleSurface& surface, int x, int y, float right, float down, float tangent, float radius) {
    constexpr int kSteps = 6;
    const float depth = surface.depth(x, y);
    float horizon = sineOfSlope(tangent);
    float hidden = 0;
    for (int step = 1; step <= kSteps; ++step) {
        // Denser near the sample, where relief hides most.
        const float share = static_cast<float>(step) / kSteps;
        const float distance = std::max(1.0F, radius * share * share);
        const int u = x + static_cast<int>(std::lround(right * distance));
        const int v = y + static_cast<int>(std::lround(down * distance));
        if (u < 0 || v < 0 || u >= surface.width() || v >= surface.height() || surface.face(u, v) < 0) {
            continue;
        }
        const float rise = surface.depth(u, v) - depth;
        const float sine = sineOfSlope(rise / distance);
        if (sine > horizon) {
            const float falloff = std::max(0.0F, 1 - (rise * rise + distance * distance) / (radius * radius));
            hidden += (sine - horizon) * falloff;
            horizon = sine;
        }
    }
    return hidden;
}

}  // namespace

float brightnessOf(const Vector& normal, float openness) {
    static const Light kLights[] = {
        {unit({-0.62F, 0.62F, 0.48F}), 0.62F}, {unit({0.75F, 0.1F, 0.65F}), 0.26F}, {unit({0, 0, 1}), 0.10F}};
    constexpr float kSky = 0.36F;
    constexpr float kGround = 0.24F;
    float brightness = openness * (kGround + (kSky - kGround) * (0.5F + 0.5F * normal.y));
    for (const Light& light : kLights) {
        brightness += light.strength * std::max(0.0F, dot(normal, light.from)) * (0.5F + 0.5F * openness);
    }
    return brightness;
}

float opennessAt(const VisibleSurface& surface, int x, int y, const Vector& normal, float radius) {
    constexpr int kDirections = 12;
    constexpr float kSteepest = 8;
    const float towards = std::max(normal.z, 1 / kSteepest);
    float hidden = 0;
    for (int k = 0; k < kDirections; ++k) {
        const float angle = static_cast<float>(k) * (2 * std::numbers::pi_v<float> / kDirections);
        const float right = std::cos(angle);
        const float down = std::sin(angle);
        // Samples count downwards, normals point upwards.
        const float tangent = -(normal.x * right - normal.y * down) / towards;
        hidden += hiddenTowards(surface, x, y, right, down, tangent, radius);
    }
    return std::clamp(1 - hidden / kDirections, 0.0F, 1.0F);
}

}  // namespace talvek::host
