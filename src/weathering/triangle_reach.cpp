#include "weathering/triangle_reach.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "weathering/grid.h"

namespace talvek {

namespace {

std::int32_t cellAt(double place) {
    return static_cast<std::int32_t>(std::clamp(place * kGridSize, -2.0, static_cast<double>(kGridSize)));
}

}  // namespace

// In single precision, with e = 2^-24: each of the four differences is off by at most e of itself, each of both
// products by 3 e and the difference of these by one e more; the products are at most that of the largest differences
// in both directions. That makes 8 e of it. The margin is twice that, which covers the arithmetic here and products too
// small for their digits too.
TriangleReach::TriangleReach(const std::array<float, 4>& u, const std::array<float, 4>& v) {
    double largestU = 0;
    double largestV = 0;
    for (std::size_t i = 0; i < corners_.size(); ++i) {
        corners_[i] = {static_cast<double>(u[i]), static_cast<double>(v[i])};
        largestU = std::max(largestU, std::fabs(corners_[i].u));
        largestV = std::max(largestV, std::fabs(corners_[i].v));
    }
    margin_ = 0x1p-20 * (largestU + 1) * (largestV + 1);
}

/// The areas that a point makes with the edges add up to that of the triangle.
bool TriangleReach::isClockwise() const {
    const auto& [a, b, c] = corners_;
    return (b.u - a.u) * (c.v - a.v) - (b.v - a.v) * (c.u - a.u) < -3 * margin_;
}

CellRange TriangleReach::columns(float v, CellRange range) const {
    double low = -std::numeric_limits<double>::infinity();
    double high = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < corners_.size(); ++i) {
        const Corner& q = corners_[i];
        const Corner& r = corners_[(i + 1) % corners_.size()];
        const double row = static_cast<double>(v);
        // No negative zero, so that the quotients below have the right sign.
        const double slope = q.v - r.v + 0.0;
        const double atZero = q.u * (r.v - row) - r.u * (q.v - row) + margin_;
        // An edge along the row bounds nothing, or lets nothing be reached: the quotient is infinite.
        if (slope < 0) {
            high = std::min(high, -atZero / slope);
        } else {
            low = std::max(low, -atZero / slope);
        }
    }
    // Downwards for the first column and upwards for the last, which makes up for the rounding of their coordinates.
    return {std::max(range.first, cellAt(low)), std::min(range.last, cellAt(high) + 1)};
}

}  // namespace talvek
