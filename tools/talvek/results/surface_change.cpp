#include "talvek/results/surface_change.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>

#include "Vexo_Lib/load3d.h"
#include "talvek/inspect/mesh_survey.h"

namespace talvek::host {

namespace {

/// Not finite where one of the positions is not.
double distance(const Object3D& first, const Object3D& last, std::int64_t vertex) {
    double square = 0;
    for (std::int64_t i = 3 * vertex; i < 3 * vertex + 3; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const double step = static_cast<double>(last.vertexSpan()[at]) - static_cast<double>(first.vertexSpan()[at]);
        square += step * step;
    }
    return std::sqrt(square);
}

void measureDistances(SurfaceChange& change, const Object3D& first, const Object3D& last) {
    std::int64_t measured = 0;
    for (std::int64_t vertex = 0; vertex < change.vertices; ++vertex) {
        const double moved = distance(first, last, vertex);
        if (std::isfinite(moved)) {
            change.mean += moved;
            change.largest = std::max(change.largest, moved);
            ++measured;
        }
    }
    change.mean = measured > 0 ? change.mean / static_cast<double>(measured) : 0;
}

}  // namespace

std::optional<SurfaceChange> compareSurfaces(const std::string& first, const std::string& last) {
    const std::unique_ptr<Object3D> before = LoadMeshFile(first.c_str());
    const std::unique_ptr<Object3D> after = LoadMeshFile(last.c_str());
    if (before == nullptr || after == nullptr) {
        return std::nullopt;
    }
    SurfaceChange change;
    change.vertices = after->numVertices;
    change.notFinite = countNotFinite(*after);
    change.notFiniteBefore = countNotFinite(*before);
    change.isByVertex = before->numVertices == after->numVertices;
    if (change.isByVertex) {
        measureDistances(change, *before, *after);
    }
    return change;
}

std::string notFiniteText(const SurfaceChange& change, bool isSmoothed) {
    if (change.notFinite == 0) {
        return {};
    }
    const bool areAll = change.notFinite == change.vertices;
    std::string text =
        areAll ? "no vertex has"
               : std::to_string(change.notFinite) + " of " + std::to_string(change.vertices) + " vertices have";
    text += areAll ? " a finite position in the last surface" : " no finite position in the last surface";
    if (change.notFiniteBefore > 0) {
        text += "; the first surface had " + std::to_string(change.notFiniteBefore) + " of that kind";
    }
    if (isSmoothed) {
        text +=
            "; where the faces around a vertex cancel out it has no normal, smoothing has no result there, and every "
            "epoch carries that to its neighbours: talvek check counts such vertices, and fewer epochs carry it less "
            "far";
    }
    return text;
}

}  // namespace talvek::host
