// Moves every vertex by what the mineral under it allows.
#pragma once

#include <vector>

#include "mesh/object3d.h"
#include "weathering/mineral_map.h"

namespace talvek {

/// V texel numbers: that of the last corner which names the vertex, 0 for a vertex without faces. The mesh has to have
/// named texels. Throws std::bad_alloc.
HeapArray<std::int32_t> texelOfVertices(const Object3D& mesh);

/// The mineral class of each vertex: that of the pixel at the texel of the last corner that names the vertex. Where
/// that lies outside the map, or the corner names no texel, the pixel of the vertex before holds. Under a map of other
/// than three channels there is no mineral, class 0. The mesh has to have named texels. Throws std::bad_alloc.
std::vector<std::int32_t> mineralsOfVertices(const Object3D& mesh, const MineralMap& map);

/// Moves every vertex along its normal by `delta` millimetres times the factor of its mineral. The mesh has to have
/// named texels and vertex normals. Throws std::bad_alloc.
void applyMineralOffsets(Object3D& mesh, const MineralMap& map, float delta);

}  // namespace talvek
