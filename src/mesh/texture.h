// The texture coordinates of a mesh and the corners that name them.
#pragma once

#include <cstdint>

#include "mesh/object3d.h"

namespace talvek {

inline bool hasTexels(const Object3D& mesh) {
    return mesh.texels != nullptr && mesh.numTexels > 0;
}

/// Whether a mesh has texels, and faces that name them in an index of their own.
inline bool hasNamedTexels(const Object3D& mesh) {
    return hasTexels(mesh) && mesh.texelIndex != nullptr;
}

/// The texels that 3F corners name, whether they exist or not. Where faces name none, the vertices' own numbers stand
/// for them.
inline const std::int32_t* cornerTexels(const Object3D& mesh) {
    return mesh.texelIndex != nullptr ? mesh.texelIndex.get() : mesh.vertexIndex.get();
}

inline bool isTexel(const Object3D& mesh, std::int64_t texel) {
    return mesh.texels != nullptr && texel >= 0 && texel < mesh.numTexels;
}

}  // namespace talvek
