// Positions of a mesh in double precision, for what is measured on it.
#pragma once

#include <cmath>
#include <cstdint>

#include "mesh/object3d.h"
#include "mesh/vector3.h"

namespace talvek::host {

using Point = Vector3<double>;

inline Point pointOf(const Object3D& mesh, std::int32_t vertex) {
    return tripleAt<double>(mesh.vertices.get(), vertex);
}

inline bool isFinite(const Point& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

/// Twice the face's area long, and along its normal.
inline Point faceCross(const Object3D& mesh, std::int64_t face) {
    const std::int32_t* corners = mesh.vertexIndex.get() + 3 * face;
    const Point a = pointOf(mesh, corners[0]);
    return cross(pointOf(mesh, corners[1]) - a, pointOf(mesh, corners[2]) - a);
}

inline double faceArea(const Object3D& mesh, std::int64_t face) {
    return length(faceCross(mesh, face)) / 2;
}

}  // namespace talvek::host
