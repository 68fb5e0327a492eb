// Vertices as formats want them that allow each vertex one texture coordinate.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/object3d.h"

namespace talvek::host {

struct SplitVertices {
    /// The vertex and the texel (-1 for none) of each; the mesh's own vertices stand first, in their order.
    std::vector<std::int32_t> vertices;
    std::vector<std::int32_t> texels;
    /// 3F of them, by those numbers.
    std::vector<std::uint32_t> corners;
};

/// A vertex whose corners name several texels is repeated behind the others. `textured` has the mesh's faces, or is
/// null for a mesh without texture.
SplitVertices splitVertices(const Object3D& mesh, const Object3D* textured);

}  // namespace talvek::host
