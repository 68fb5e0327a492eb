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

// How far the test in single precision can be off, with e = 2^-24 for one rounding. The area is the difference of two
// products, and each factor is a difference of coordinates.
//   Each factor is off by at most 1 e of itself, so each product, rounded once itself, by at most 3 e of itself.
//   The difference of the products is rounded once more: at most 1 e of itself, which is at most the sum of both.
//   With P for the largest product that there can be, that is 3 e P + 3 e P + 2 e P = 8 e P.
// As no point of the grid lies further than 1 from the origin, P is at most (largestU + 1) (largestV + 1). The margin
// is 16 e P: the other half covers the rounding of the arithmetic here, and products so small that they lose digits.
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

// The three areas that a point makes with the edges add up to the area of the triangle. If that is below minus three
// margins, one of the three is below minus one margin, and the point fails the test.
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
