// How large a mesh is, for messages.
#pragma once

#include <algorithm>
#include <array>
#include <string>

#include "mesh/object3d.h"

namespace talvek::host {

/// The extents along x, y and z in millimetres. Coordinates that are not finite are left out.
struct MeshSize {
    std::array<double, 3> extents{};

    double largest() const { return *std::ranges::max_element(extents); }
    MeshSize times(double factor) const { return {{extents[0] * factor, extents[1] * factor, extents[2] * factor}}; }
    /// "300 x 200 x 150 mm"
    std::string text() const;
};

MeshSize sizeOf(const Object3D& mesh);

/// How far apart the single-precision numbers around a coordinate are.
double spacingAt(double coordinate);

/// The largest |x|, |y| and |z| of a mesh that are finite.
std::array<double, 3> largestCoordinates(const Object3D& mesh);

}  // namespace talvek::host
