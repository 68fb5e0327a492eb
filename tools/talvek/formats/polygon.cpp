#include "talvek/formats/polygon.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace talvek::host {

namespace {

using Point = PolygonDivision::Point;

Point minus(const Point& a, const Point& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Point cross(const Point& a, const Point& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double dot(const Point& a, const Point& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

/// M. E. Newell's normal: the areas of the outline's three projections. Large coordinates do not blur it, for it is
/// taken from one of the corners.
Point normalOf(std::span<const Point> corners) {
    Point sum{};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Point part = cross(minus(corners[i], corners[0]), minus(corners[(i + 1) % corners.size()], corners[0]));
        sum = {sum[0] + part[0], sum[1] + part[1], sum[2] + part[2]};
    }
    return sum;
}

/// A unit vector across `normal`.
Point across(const Point& normal) {
    Point axis{};
    const auto smallest = std::ranges::min_element(normal, {}, [](double value) { return std::fabs(value); });
    axis[static_cast<std::size_t>(smallest - normal.begin())] = 1;
    const Point side = cross(axis, normal);
    const double length = std::sqrt(dot(side, side));
    return length > 0 ? Point{side[0] / length, side[1] / length, side[2] / length} : Point{1, 0, 0};
}

}  // namespace

void PolygonDivision::project(std::span<const Point> corners) {
    Point normal = normalOf(corners);
    const double length = std::sqrt(dot(normal, normal));
    normal = length > 0 ? Point{normal[0] / length, normal[1] / length, normal[2] / length} : Point{0, 0, 1};
    const Point right = across(normal);
    const Point up = cross(normal, right);
    const auto count = static_cast<std::int32_t>(corners.size());
    outline_.resize(corners.size());
    for (std::int32_t i = 0; i < count; ++i) {
        const Point from = minus(corners[static_cast<std::size_t>(i)], corners[0]);
        outline_[static_cast<std::size_t>(i)] = {
            .x = dot(from, right), .y = dot(from, up), .before = (i + count - 1) % count, .after = (i + 1) % count};
    }
}

/// Positive where the outline turns to the left, which is outwards.
double PolygonDivision::turnAt(const Corner& corner) const {
    const Corner& before = outline_[static_cast<std::size_t>(corner.before)];
    const Corner& after = outline_[static_cast<std::size_t>(corner.after)];
    return (corner.x - before.x) * (after.y - corner.y) - (corner.y - before.y) * (after.x - corner.x);
}

void PolygonDivision::look(std::size_t numCorners) {
    looks_ -= static_cast<std::int64_t>(numCorners);
    if (looks_ < 0) {
        throw std::length_error("polygon");
    }
}

/// Whether the outline goes round once, to the left. One that crosses itself may do that as well.
bool PolygonDivision::goesRoundOnce() const {
    struct Edge {
        double x;
        double y;
    };
    std::vector<Edge> edges;
    for (const Corner& corner : outline_) {
        const Corner& after = outline_[static_cast<std::size_t>(corner.after)];
        const Edge edge = {after.x - corner.x, after.y - corner.y};
        if (edge.x != 0 || edge.y != 0) {
            edges.push_back(edge);
        }
    }
    double angle = 0;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        const Edge& next = edges[(i + 1) % edges.size()];
        angle += std::atan2(edges[i].x * next.y - edges[i].y * next.x, edges[i].x * next.x + edges[i].y * next.y);
    }
    return std::fabs(angle - 2 * std::numbers::pi) < 1;
}

bool PolygonDivision::isEar(std::int32_t at) {
    look(1);
    const Corner& corner = outline_[static_cast<std::size_t>(at)];
    if (!(turnAt(corner) > 0)) {
        return false;
    }
    look(reflex_.size());
    const Corner& before = outline_[static_cast<std::size_t>(corner.before)];
    const Corner& after = outline_[static_cast<std::size_t>(corner.after)];
    const auto isInside = [&](std::int32_t other) {
        const Corner& point = outline_[static_cast<std::size_t>(other)];
        if (point.isGone || other == at || other == corner.before || other == corner.after) {
            return false;
        }
        const auto side = [&point](const Corner& a, const Corner& b) {
            return (b.x - a.x) * (point.y - a.y) - (b.y - a.y) * (point.x - a.x);
        };
        // A corner in the same place as one of the ear's own is not in the way.
        const auto isAt = [&point](const Corner& a) { return a.x == point.x && a.y == point.y; };
        return side(before, corner) >= 0 && side(corner, after) >= 0 && side(after, before) >= 0 && !isAt(before) &&
               !isAt(after) && !isAt(corner);
    };
    return std::ranges::none_of(reflex_, isInside);
}

void PolygonDivision::cut(std::int32_t at) {
    Corner& corner = outline_[static_cast<std::size_t>(at)];
    triangles_.push_back({corner.before, at, corner.after});
    corner.isGone = true;
    outline_[static_cast<std::size_t>(corner.before)].after = corner.after;
    outline_[static_cast<std::size_t>(corner.after)].before = corner.before;
}

bool PolygonDivision::cutAll(std::int32_t numCorners) {
    bool isSound = true;
    std::int32_t at = 0;
    std::int32_t inVain = 0;
    for (std::int32_t left = numCorners; left > 3;) {
        const Corner& corner = outline_[static_cast<std::size_t>(at)];
        const std::int32_t next = corner.after;
        // Corners in a straight line are cut off last: a triangle without an area helps nobody, but has to be there.
        const bool isStuck = inVain >= left;
        const bool isStraight = isStuck && turnAt(corner) == 0;
        if (isEar(at) || isStraight || inVain >= 2 * left) {
            isSound &= inVain < 2 * left;
            cut(at);
            // Cutting turns both neighbours outwards at most, so what was no ear may be one now.
            inVain = 0;
            --left;
            look(reflex_.size());
            std::erase_if(reflex_, [this](std::int32_t other) {
                const Corner& point = outline_[static_cast<std::size_t>(other)];
                return point.isGone || turnAt(point) > 0;
            });
            at = outline_[static_cast<std::size_t>(next)].after;
        } else {
            ++inVain;
            at = next;
        }
    }
    while (outline_[static_cast<std::size_t>(at)].isGone) {
        at = outline_[static_cast<std::size_t>(at)].after;
    }
    const Corner& last = outline_[static_cast<std::size_t>(at)];
    triangles_.push_back({last.before, at, last.after});
    return isSound;
}

bool PolygonDivision::divide(std::span<const Point> corners) {
    triangles_.clear();
    reflex_.clear();
    project(corners);
    const auto count = static_cast<std::int32_t>(corners.size());
    for (std::int32_t i = 0; i < count; ++i) {
        if (!(turnAt(outline_[static_cast<std::size_t>(i)]) > 0)) {
            reflex_.push_back(i);
        }
    }
    constexpr std::int32_t kQuad = 4;
    if (reflex_.empty() && count <= kQuad) {
        for (std::int32_t i = 2; i < count; ++i) {
            triangles_.push_back({0, i - 1, i});
        }
        return true;
    }
    const bool isRound = goesRoundOnce();
    return cutAll(count) && isRound;
}

}  // namespace talvek::host
