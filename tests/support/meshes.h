// Small meshes whose geometry is known exactly.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "mesh/object3d.h"

namespace talvek::test {

/// The name of a mesh: a text of exactly the field's size has no terminator.
inline std::string_view nameOf(const Object3D& mesh) {
    const std::string_view field(mesh.name, sizeof mesh.name);
    return field.substr(0, field.find('\0'));
}

/// A mesh of these triples, without normals.
std::unique_ptr<Object3D> makeMesh(const std::vector<float>& vertices, const std::vector<std::int32_t>& faces);

/// A square of side `cells` in the plane z = 0, two triangles per unit cell, normals along +z.
std::unique_ptr<Object3D> makePlane(std::int32_t cells);

/// The cube [0, size]^3 of 8 vertices and 12 outward faces.
std::unique_ptr<Object3D> makeCube(float size);

/// An icosahedron whose faces are split into four `levels` times, every vertex at distance `radius` from the origin.
std::unique_ptr<Object3D> makeSphere(float radius, int levels);

/// Gives every vertex a texel at its x and y, scaled.
void layTexture(Object3D& mesh, float uScale, float vScale);

/// OBJ text of a mesh, with coordinates, and texels where there are some, in full precision.
std::string objText(const Object3D& mesh);

}  // namespace talvek::test
