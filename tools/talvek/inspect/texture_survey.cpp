#include "talvek/inspect/texture_survey.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "mesh/texture.h"

namespace talvek::host {

namespace {

struct TexturePoint {
    double u = 0;
    double v = 0;

    bool isInside() const { return u >= 0 && u < 1 && v >= 0 && v < 1; }
};

using TextureTriangle = std::array<TexturePoint, 3>;

TexturePoint texelAt(const Object3D& mesh, std::int64_t texel) {
    const float* at = mesh.texels.get() + 2 * texel;
    return {static_cast<double>(at[0]), static_cast<double>(at[1])};
}

/// A face in texture space; nothing when a corner has no texel.
std::optional<TextureTriangle> triangleOf(const Object3D& mesh, std::int64_t face) {
    TextureTriangle corners;
    for (std::size_t k = 0; k < corners.size(); ++k) {
        const std::int32_t texel = cornerTexels(mesh)[3 * face + static_cast<std::int64_t>(k)];
        if (!isTexel(mesh, texel)) {
            return std::nullopt;
        }
        corners[k] = texelAt(mesh, texel);
    }
    return corners;
}

/// Negative for one that runs clockwise; not finite for one with such a corner.
double areaOf(const TextureTriangle& triangle) {
    const auto& [a, b, c] = triangle;
    return ((b.u - a.u) * (c.v - a.v) - (c.u - a.u) * (b.v - a.v)) / 2;
}

bool isWhollyInside(const TextureTriangle& triangle) {
    return std::ranges::all_of(triangle, &TexturePoint::isInside);
}

/// The grid ends before 1, so that nothing of a face that reaches up to it is lost.
bool isWithinGrid(const TextureTriangle& triangle) {
    return std::ranges::all_of(triangle, [](const TexturePoint& corner) {
        return corner.u >= 0 && corner.u <= 1 && corner.v >= 0 && corner.v <= 1;
    });
}

/// Whether all corners lie beyond one and the same side of [0, 1).
bool isWhollyOutside(const TextureTriangle& triangle) {
    const auto [left, right] = std::ranges::minmax(triangle, {}, &TexturePoint::u);
    const auto [bottom, top] = std::ranges::minmax(triangle, {}, &TexturePoint::v);
    return right.u < 0 || left.u >= 1 || top.v < 0 || bottom.v >= 1;
}

/// What the corners of a mesh's faces name, whether it is there or not.
void addNamedTexels(TextureSurvey& survey, const Object3D& mesh) {
    constexpr std::int32_t kNone = -1;
    std::vector<bool> isNamed(static_cast<std::size_t>(mesh.numTexels));
    const bool areNamed = mesh.texelIndex != nullptr || mesh.texels != nullptr;
    for (std::int64_t face = 0; areNamed && face < mesh.numFaces; ++face) {
        bool isWithout = false;
        bool isAbsent = false;
        for (std::int64_t corner = 3 * face; corner < 3 * face + 3; ++corner) {
            const std::int32_t texel = cornerTexels(mesh)[corner];
            if (isTexel(mesh, texel)) {
                isNamed[static_cast<std::size_t>(texel)] = true;
            } else {
                (texel == kNone ? isWithout : isAbsent) = true;
            }
        }
        survey.without += isWithout ? 1 : 0;
        survey.absent += isAbsent ? 1 : 0;
    }
    survey.unused = std::ranges::count(isNamed, false);
}

}  // namespace

TextureSurvey surveyTexture(const Object3D& mesh) {
    TextureSurvey survey;
    for (std::int64_t face = 0; face < mesh.numFaces; ++face) {
        if (const std::optional<TextureTriangle> triangle = triangleOf(mesh, face)) {
            const double area = areaOf(*triangle);
            ++survey.faces;
            survey.outside += isWhollyInside(*triangle) ? 0 : 1;
            survey.clockwise += area < 0 ? 1 : 0;
            survey.coverage += std::isfinite(area) ? std::abs(area) : 0;
        }
    }
    addNamedTexels(survey, mesh);
    return survey;
}

GridFaces surveyGridFaces(const Object3D& mesh) {
    GridFaces faces;
    for (std::int64_t face = 0; face < mesh.numFaces; ++face) {
        const std::optional<TextureTriangle> triangle = triangleOf(mesh, face);
        const double area = triangle ? areaOf(*triangle) : 0;
        if (!triangle || !std::isfinite(area)) {
            ++faces.untextured;
        } else if (area < 0) {
            ++faces.clockwise;
        } else if (area == 0) {
            ++faces.flat;
        } else if (isWhollyOutside(*triangle)) {
            ++faces.outside;
        } else {
            faces.partly += isWithinGrid(*triangle) ? 0 : 1;
        }
    }
    return faces;
}

bool isOnMap(const Object3D& mesh, std::int64_t texel) {
    return isTexel(mesh, texel) && texelAt(mesh, texel).isInside();
}

}  // namespace talvek::host
