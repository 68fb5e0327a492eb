// How far a surface has moved, and how large it is. Sums are taken in double precision, in order of the vertices or
// faces, so that every command gives the same figures.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "mesh/object3d.h"

namespace talvek::host {

/// How far each vertex lies from where it was, along the normal it had there, in millimetres: positive outwards (the
/// surface has grown), negative inwards (it has lost). Not finite where a position is not. Both meshes have the same
/// number of vertices, and the first has vertex normals.
std::vector<double> normalDisplacements(const Object3D& first, const Object3D& last);

/// How far each vertex lies from where it was, in millimetres. Not finite where a position is not.
std::vector<double> distances(const Object3D& first, const Object3D& last);

/// A third of the area of the faces around each vertex, in square millimetres.
std::vector<double> vertexAreas(const Object3D& mesh);

/// The shares of the vertices, in per cent, for which a statistic gives the value that they do not exceed.
inline constexpr std::array<double, 7> kPercentiles = {1, 5, 25, 50, 75, 95, 99};

/// Of the finite values among those of a surface's vertices. All 0 where there are none.
struct ValueStatistics {
    std::int64_t count = 0;
    double mean = 0;
    /// Each value weighted by the area around its vertex; the mean where no vertex has any.
    double areaWeightedMean = 0;
    double smallest = 0;
    double largest = 0;
    /// For kPercentiles, interpolated linearly between the two nearest values.
    std::array<double, kPercentiles.size()> percentiles{};
};

/// `areas` has as many elements as `values`.
ValueStatistics statisticsOf(std::span<const double> values, std::span<const double> areas);

/// In square millimetres. Faces with a corner that is not finite are left out.
double surfaceArea(const Object3D& mesh);

/// In cubic millimetres, positive where the faces run counter-clockwise as seen from outside; nothing for a surface
/// that is not closed or not finite.
std::optional<double> enclosedVolume(const Object3D& mesh);

}  // namespace talvek::host
