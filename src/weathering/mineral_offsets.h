// Moves every vertex by what the mineral under it allows.
#pragma once

#include "mesh/object3d.h"
#include "weathering/mineral_map.h"

namespace talvek {

/// V texel numbers: that of the last corner which names the vertex, 0 for a vertex without faces. The mesh has to have
/// named texels. Throws std::bad_alloc.
HeapArray<std::int32_t> texelOfVertices(const Object3D& mesh);

/// Moves every vertex along its normal by `delta` millimetres times the factor of the pixel under it. The pixel is the
/// one at the texel of the last corner that names the vertex; where that lies outside the map, or the corner names no
/// texel, the pixel of the vertex before holds. A map of other than three channels moves nothing. The mesh has to have
/// named texels and vertex normals. Throws std::bad_alloc.
void applyMineralOffsets(Object3D& mesh, const MineralMap& map, float delta);

}  // namespace talvek
