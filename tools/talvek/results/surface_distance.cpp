#include "talvek/results/surface_distance.h"

#include <algorithm>
#include <cmath>

#include "talvek/inspect/points.h"
#include "talvek/results/face_tree.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

/// Evenly over the numbers of the vertices: more would not find a better place.
std::vector<Point> placesOf(const Object3D& mesh) {
    constexpr std::int32_t kMost = 20000;
    const std::int32_t step = std::max(1, mesh.numVertices / kMost);
    std::vector<Point> places;
    for (std::int32_t v = 0; v < mesh.numVertices; v += step) {
        places.push_back(pointOf(mesh, v));
    }
    return places;
}

void move(Object3D& mesh, const RigidMotion& motion) {
    for (std::int32_t v = 0; v < mesh.numVertices; ++v) {
        const Point moved = motion(pointOf(mesh, v));
        storeTriple(mesh.vertices.get(), v,
                    {static_cast<float>(moved.x), static_cast<float>(moved.y), static_cast<float>(moved.z)});
    }
    mesh.updateNormals(true);
}

/// In the order of the vertices, each search beginning at the place that the one before has found.
std::vector<double> distancesTo(const FaceTree& surface, const Object3D& mesh, const RigidMotion& motion) {
    std::vector<double> distances;
    distances.reserve(static_cast<std::size_t>(mesh.numVertices));
    std::int32_t guess = -1;
    for (std::int32_t v = 0; v < mesh.numVertices; ++v) {
        const Point place = motion(pointOf(mesh, v));
        if (!isFinite(place)) {
            distances.push_back(std::nan(""));
            continue;
        }
        const NearestPlace nearest = surface.nearestTo(place, guess);
        guess = nearest.face;
        distances.push_back(nearest.signedDistance);
    }
    return distances;
}

void sumUp(SurfaceDistance& result, const std::vector<double>& areas) {
    std::vector<double> amounts;
    amounts.reserve(result.distances.size());
    double squares = 0;
    for (std::size_t v = 0; v < areas.size(); ++v) {
        const double distance = result.distances[v];
        amounts.push_back(std::abs(distance));
        if (std::isfinite(distance)) {
            squares += distance * distance;
            (distance > 0 ? result.volumeOutside : result.volumeInside) += std::abs(distance) * areas[v];
        }
    }
    result.signedStatistics = statisticsOf(result.distances, areas);
    result.absoluteStatistics = statisticsOf(amounts, areas);
    const auto count = static_cast<double>(result.signedStatistics.count);
    result.rms = count > 0 ? std::sqrt(squares / count) : 0;
}

}  // namespace

SurfaceDistance measureDistance(Object3D& mesh, const Object3D& other, bool wantsAlignment) {
    const FaceTree surface(other);
    if (mesh.numVertices == 0 || surface.isEmpty()) {
        throw Failure(kExitMesh,
                      "there is nothing to compare: the first mesh needs vertices, and the second one faces");
    }
    SurfaceDistance result;
    RigidMotion motion;
    if (wantsAlignment) {
        result.alignment = alignTo(surface, placesOf(mesh));
        motion = result.alignment->motion;
    }
    // Measured before the moved positions are rounded.
    result.distances = distancesTo(surface, mesh, motion);
    const std::optional<double> volume = enclosedVolume(mesh);
    const std::optional<double> otherVolume = enclosedVolume(other);
    if (volume && otherVolume) {
        result.enclosedDifference = *volume - *otherVolume;
    }
    sumUp(result, vertexAreas(mesh));
    if (wantsAlignment) {
        move(mesh, motion);
    }
    return result;
}

}  // namespace talvek::host
