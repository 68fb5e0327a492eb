#include "talvek/results/displacement.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "talvek/inspect/mesh_edges.h"
#include "talvek/inspect/points.h"

namespace talvek::host {

namespace {

template <typename Measure>
std::vector<double> measureVertices(const Object3D& mesh, Measure measure) {
    std::vector<double> values(static_cast<std::size_t>(mesh.numVertices));
    for (std::int32_t vertex = 0; vertex < mesh.numVertices; ++vertex) {
        values[static_cast<std::size_t>(vertex)] = measure(vertex);
    }
    return values;
}

/// Of length 1, or 0 where the vertex has none.
Point normalOf(const Object3D& mesh, std::int32_t vertex) {
    const auto normal = tripleAt<double>(mesh.vertexNormals.get(), vertex);
    const double size = length(normal);
    return size > 0 ? normal / size : Point{};
}

/// The value below which this share of the values lies; they are put in order beyond `sorted` as far as needed.
double percentileOf(std::vector<double>& values, double percent, std::size_t& sorted) {
    const double rank = percent / 100 * static_cast<double>(values.size() - 1);
    const auto below = static_cast<std::size_t>(rank);
    const auto begin = values.begin() + static_cast<std::ptrdiff_t>(sorted);
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(below);
    std::nth_element(begin, at, values.end());
    sorted = below;
    const double part = rank - static_cast<double>(below);
    return part > 0 ? *at + part * (*std::min_element(at + 1, values.end()) - *at) : *at;
}

double ratioOr(double otherwise, double sum, double weight) {
    return weight > 0 ? sum / weight : otherwise;
}

}  // namespace

std::vector<double> normalDisplacements(const Object3D& first, const Object3D& last) {
    return measureVertices(first, [&](std::int32_t vertex) {
        return dot(pointOf(last, vertex) - pointOf(first, vertex), normalOf(first, vertex));
    });
}

std::vector<double> distances(const Object3D& first, const Object3D& last) {
    return measureVertices(first,
                           [&](std::int32_t vertex) { return length(pointOf(last, vertex) - pointOf(first, vertex)); });
}

std::vector<double> vertexAreas(const Object3D& mesh) {
    std::vector<double> areas(static_cast<std::size_t>(mesh.numVertices));
    for (std::int64_t face = 0; face < mesh.numFaces; ++face) {
        const double share = faceArea(mesh, face) / 3;
        if (std::isfinite(share)) {
            for (std::int64_t corner = 3 * face; corner < 3 * face + 3; ++corner) {
                areas[static_cast<std::size_t>(mesh.vertexIndex[static_cast<std::size_t>(corner)])] += share;
            }
        }
    }
    return areas;
}

ValueStatistics statisticsOf(std::span<const double> values, std::span<const double> areas) {
    ValueStatistics result;
    std::vector<double> finite;
    finite.reserve(values.size());
    double sum = 0;
    double weighted = 0;
    double area = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (std::isfinite(values[i])) {
            finite.push_back(values[i]);
            sum += values[i];
            weighted += values[i] * areas[i];
            area += areas[i];
        }
    }
    if (finite.empty()) {
        return result;
    }
    result.count = static_cast<std::int64_t>(finite.size());
    result.mean = sum / static_cast<double>(finite.size());
    result.areaWeightedMean = ratioOr(result.mean, weighted, area);
    const auto [smallest, largest] = std::ranges::minmax(finite);
    result.smallest = smallest;
    result.largest = largest;
    std::size_t sorted = 0;
    for (std::size_t i = 0; i < kPercentiles.size(); ++i) {
        result.percentiles[i] = percentileOf(finite, kPercentiles[i], sorted);
    }
    return result;
}

double surfaceArea(const Object3D& mesh) {
    double sum = 0;
    for (std::int64_t face = 0; face < mesh.numFaces; ++face) {
        const double area = faceArea(mesh, face);
        sum += std::isfinite(area) ? area : 0;
    }
    return sum;
}

std::optional<double> enclosedVolume(const Object3D& mesh) {
    if (!isClosed(mesh)) {
        return std::nullopt;
    }
    // Measured from a point of the mesh: far from the origin the terms would be large and their sum inexact.
    const Point origin = pointOf(mesh, mesh.vertexIndex[0]);
    double sum = 0;
    for (std::int64_t face = 0; face < mesh.numFaces; ++face) {
        const std::int32_t* corners = mesh.vertexIndex.get() + 3 * face;
        const Point a = pointOf(mesh, corners[0]) - origin;
        const Point b = pointOf(mesh, corners[1]) - origin;
        sum += dot(a, cross(b, pointOf(mesh, corners[2]) - origin));
    }
    return std::isfinite(sum) ? std::optional(sum / 6) : std::nullopt;
}

}  // namespace talvek::host
