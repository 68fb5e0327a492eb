#include "talvek/picture/visible_surface.h"

#include <algorithm>
#include <cmath>

namespace talvek::host {

namespace {

struct Range {
    int first, last;
};

/// The samples between the smallest and the largest of three places; the middle of sample n lies at n + 0.5.
Range samplesBetween(float a, float b, float c, int size) {
    const float low = std::clamp(std::min({a, b, c}) - 0.5F, 0.0F, static_cast<float>(size));
    const float high = std::clamp(std::max({a, b, c}) - 0.5F, -1.0F, static_cast<float>(size - 1));
    return {static_cast<int>(std::ceil(low)), static_cast<int>(std::floor(high))};
}

}  // namespace

std::array<float, 3> FacePoints::sharesAt(float x, float y) const {
    const auto& [a, b, c] = points;
    const float area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    const float ofB = ((x - a.x) * (c.y - a.y) - (y - a.y) * (c.x - a.x)) / area;
    const float ofC = ((b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x)) / area;
    return {1 - ofB - ofC, ofB, ofC};
}

VisibleSurface::VisibleSurface(int width, int height)
    : width_(width),
      height_(height),
      depths_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), kNothing),
      faces_(depths_.size(), -1) {}

void VisibleSurface::draw(std::span<const std::int32_t> corners, std::span<const ScreenPoint> points) {
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3) {
        const FacePoints face = {{points[static_cast<std::size_t>(corners[i])],
                                  points[static_cast<std::size_t>(corners[i + 1])],
                                  points[static_cast<std::size_t>(corners[i + 2])]}};
        const bool isFinite = std::ranges::all_of(face.points, [](const ScreenPoint& point) {
            return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.depth);
        });
        if (isFinite) {
            drawFace(static_cast<std::int32_t>(i / 3), face);
        }
    }
}

void VisibleSurface::drawFace(std::int32_t face, const FacePoints& corners) {
    const auto& [a, b, c] = corners.points;
    const Range columns = samplesBetween(a.x, b.x, c.x, width_);
    const Range rows = samplesBetween(a.y, b.y, c.y, height_);
    for (int y = rows.first; y <= rows.last; ++y) {
        for (int x = columns.first; x <= columns.last; ++x) {
            const auto shares = corners.sharesAt(static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F);
            if (!(shares[0] >= 0 && shares[1] >= 0 && shares[2] >= 0)) {
                continue;
            }
            const float depth = shares[0] * a.depth + shares[1] * b.depth + shares[2] * c.depth;
            const std::size_t at = index(x, y);
            if (depth > depths_[at]) {
                depths_[at] = depth;
                faces_[at] = face;
            }
        }
    }
}

}  // namespace talvek::host
