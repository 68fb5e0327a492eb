#include "bumpy_sphere.h"

#include <algorithm>
#include <cmath>

namespace talvek::bench {

namespace {

struct Point {
    double x, y;
};

/// A point on the square with its corners on the axes, `part` of the way from the start of a quadrant to its end. From
/// a table of corners GCC 12 reads zeros, from -O2 on.
Point pointOnSquare(std::int32_t quadrant, double part) {
    switch (quadrant) {
        case 0:
            return {1 - part, part};
        case 1:
            return {-part, 1 - part};
        case 2:
            return {part - 1, -part};
        default:
            return {part, part - 1};
    }
}

/// The distance from the centre in the direction of a unit vector.
double radius(double x, double y, double z) {
    return 100 + 2 * std::sin(11 * x) * std::sin(13 * y + 1) + 0.5 * std::sin(41 * z + 7 * x) +
           0.02 * std::sin(301 * x + 211 * y + 173 * z);
}

void addVertex(Surface& surface, double x, double y, double z) {
    const double length = std::sqrt(x * x + y * y + z * z);
    x /= length;
    y /= length;
    z /= length;
    const double r = radius(x, y, z);
    surface.positions.insert(surface.positions.end(),
                             {static_cast<float>(r * x), static_cast<float>(r * y), static_cast<float>(r * z)});
}

/// Row `row` of 2 * cuts + 1, with four times as many vertices as it is rows away from its pole.
void addRow(Surface& surface, std::int32_t row, std::int32_t cuts) {
    const std::int32_t perQuadrant = std::min(row, 2 * cuts - row);
    const double z = 1 - static_cast<double>(row) / cuts;
    for (std::int32_t i = 0; i < std::max(4 * perQuadrant, 1); ++i) {
        const std::int32_t quadrant = perQuadrant > 0 ? i / perQuadrant : 0;
        const double part = perQuadrant > 0 ? static_cast<double>(i % perQuadrant) / perQuadrant : 0;
        const double wide = 1 - std::fabs(z);
        const Point point = pointOnSquare(quadrant, part);
        addVertex(surface, wide * point.x, wide * point.y, z);
        surface.texels.push_back(static_cast<float>((quadrant + part) / 4));
        surface.texels.push_back(static_cast<float>(1 - static_cast<double>(row) / (2 * cuts)));
    }
}

/// The faces between a shorter row of 4 m vertices and a longer one of 4 (m + 1). `isFlipped` when the shorter lies to
/// the south.
void addBand(Surface& surface, std::int32_t shorter, std::int32_t longer, std::int32_t m, bool isFlipped) {
    const auto addFace = [&](std::int32_t a, std::int32_t b, std::int32_t c) {
        surface.faces.insert(surface.faces.end(), {a, isFlipped ? c : b, isFlipped ? b : c});
    };
    const auto shortVertex = [&](std::int32_t i) { return shorter + (m > 0 ? i % (4 * m) : 0); };
    const auto longVertex = [&](std::int32_t i) { return longer + i % (4 * (m + 1)); };
    for (std::int32_t quadrant = 0; quadrant < 4; ++quadrant) {
        for (std::int32_t i = 0; i <= m; ++i) {
            const std::int32_t s = quadrant * m + i;
            const std::int32_t l = quadrant * (m + 1) + i;
            addFace(shortVertex(s), longVertex(l), longVertex(l + 1));
            if (i < m) {
                addFace(shortVertex(s), longVertex(l + 1), shortVertex(s + 1));
            }
        }
    }
}

}  // namespace

Surface makeBumpySphere(std::int32_t cuts) {
    Surface surface;
    std::vector<std::int32_t> rowStart;
    for (std::int32_t row = 0; row <= 2 * cuts; ++row) {
        rowStart.push_back(static_cast<std::int32_t>(surface.positions.size() / 3));
        addRow(surface, row, cuts);
    }
    for (std::int32_t row = 0; row < 2 * cuts; ++row) {
        const std::int32_t above = rowStart[static_cast<std::size_t>(row)];
        const std::int32_t below = rowStart[static_cast<std::size_t>(row) + 1];
        if (row < cuts) {
            addBand(surface, above, below, row, false);
        } else {
            addBand(surface, below, above, 2 * cuts - row - 1, true);
        }
    }
    return surface;
}

}  // namespace talvek::bench
