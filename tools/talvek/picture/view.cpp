#include "talvek/picture/view.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>

#include "base/number_text.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

using Vector = Vector3<double>;

struct Angles {
    double round, above;
};

struct NamedView {
    const char* name;
    Angles angles;
};

constexpr NamedView kViews[] = {{"corner", {-32, 38}}, {"front", {0, 0}}, {"back", {180, 0}},  {"left", {-90, 0}},
                                {"right", {90, 0}},    {"top", {0, 90}},  {"bottom", {0, -90}}};

/// "30,20"; nothing for what are no two numbers.
std::optional<Angles> anglesOf(const std::string& text) {
    Angles angles{};
    const std::string_view whole = text;
    const std::size_t first = parseDouble(whole, angles.round);
    if (first == 0 || first == whole.size() || whole[first] != ',') {
        return std::nullopt;
    }
    const std::string_view rest = whole.substr(first + 1);
    const std::size_t second = parseDouble(rest, angles.above);
    const bool isWhole = second > 0 && second == rest.size() && std::isfinite(angles.round);
    return isWhole && std::abs(angles.above) <= 90 ? std::optional(angles) : std::nullopt;
}

Angles requireAngles(const std::string& text) {
    for (const NamedView& view : kViews) {
        if (text == view.name) {
            return view.angles;
        }
    }
    if (const std::optional<Angles> angles = anglesOf(text)) {
        return *angles;
    }
    throw Failure(kExitUsage, text +
                                  ": views are corner, front, back, left, right, top, bottom, or two angles such as "
                                  "30,20 (round the stone, and above the horizon from -90 to 90)");
}

/// From axes of which z points up to those of the mesh.
Vector turned(const Vector& v, char upAxis) {
    switch (upAxis) {
        case 'x':
            return {v.z, v.x, v.y};
        case 'y':
            return {v.x, v.z, -v.y};
        default:
            return v;
    }
}

ScreenPoint pointOf(const Vector& position, const View& view) {
    return {static_cast<float>(dot(position, view.right)), static_cast<float>(-dot(position, view.up)),
            static_cast<float>(dot(position, view.towards))};
}

bool isFinite(const ScreenPoint& point) {
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.depth);
}

Box extentOf(const std::vector<ScreenPoint>& points) {
    constexpr double kFar = std::numeric_limits<double>::infinity();
    double left = kFar;
    double top = kFar;
    double right = -kFar;
    double bottom = -kFar;
    for (const ScreenPoint& point : points) {
        if (isFinite(point)) {
            left = std::min(left, static_cast<double>(point.x));
            right = std::max(right, static_cast<double>(point.x));
            top = std::min(top, static_cast<double>(point.y));
            bottom = std::max(bottom, static_cast<double>(point.y));
        }
    }
    return left <= right ? Box{left, top, right - left, bottom - top} : Box{0, 0, 0, 0};
}

}  // namespace

View viewOf(const std::string& text, char upAxis) {
    constexpr double kDegree = std::numbers::pi / 180;
    const Angles angles = requireAngles(text);
    const double round = angles.round * kDegree;
    const double above = angles.above * kDegree;
    const Vector towards = {std::cos(above) * std::sin(round), -std::cos(above) * std::cos(round), std::sin(above)};
    const Vector right = {std::cos(round), std::sin(round), 0};
    return {turned(right, upAxis), turned(cross(towards, right), upAxis), turned(towards, upAxis)};
}

Projection project(const Object3D& mesh, const View& view, const Box& box) {
    Projection projection;
    projection.points.reserve(static_cast<std::size_t>(mesh.numVertices));
    for (std::int64_t v = 0; v < mesh.numVertices; ++v) {
        projection.points.push_back(pointOf(tripleAt<double>(mesh.vertices.get(), v), view));
    }
    const Box extent = extentOf(projection.points);
    const double wide = std::max(extent.width, 1e-30);
    const double high = std::max(extent.height, 1e-30);
    projection.scale = std::min(box.width / wide, box.height / high);
    const double shiftX = box.left + box.width / 2 - projection.scale * (extent.left + extent.width / 2);
    const double shiftY = box.top + box.height / 2 - projection.scale * (extent.top + extent.height / 2);
    for (ScreenPoint& point : projection.points) {
        point = {static_cast<float>(projection.scale * static_cast<double>(point.x) + shiftX),
                 static_cast<float>(projection.scale * static_cast<double>(point.y) + shiftY),
                 static_cast<float>(projection.scale * static_cast<double>(point.depth))};
    }
    return projection;
}

}  // namespace talvek::host
