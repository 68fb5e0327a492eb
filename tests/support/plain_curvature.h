// Neighbours and curvature in the most direct form, slow and with no regard for memory: what the library has to agree
// with to the last bit.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/object3d.h"

namespace talvek::test {

/// The neighbours of every vertex in the order of their first appearance, found by searching the lists.
std::vector<std::vector<std::int32_t>> plainNeighbours(const Object3D& mesh);

/// The same, sorted by angle.
std::vector<std::vector<std::int32_t>> plainOrderedRings(const Object3D& mesh);

struct PlainCurvature {
    std::vector<float> shapeIndex, minimum, maximum, mean, gaussian;
    /// The estimates as they were before any vertex was set to zero.
    std::vector<double> unzeroedMean, unzeroedGaussian;
};

PlainCurvature plainCurvature(const Object3D& mesh);

}  // namespace talvek::test
