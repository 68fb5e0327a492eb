// What modes 2 and 3 can do with a mesh's texture coordinates.
#pragma once

#include <cstdint>
#include <string>

#include "mesh/object3d.h"

namespace talvek::host {

/// Throws Failure where the mode needs texture coordinates and would draw or move nothing with those of the mesh.
void requireUsableTexture(std::int32_t mode, const Object3D& mesh, const std::string& meshName);

/// A warning about faces and vertices whose texture coordinates the mode cannot use; empty when there are none. In mode
/// 3 the mesh has to have a texture.
std::string textureWarning(std::int32_t mode, const Object3D& mesh);

}  // namespace talvek::host
