// The materials of a glTF file.
#pragma once

#include <vector>

#include "talvek/formats/gltf_file.h"
#include "talvek/formats/imported_mesh.h"

namespace talvek::host {

/// In the order of the file, with the pictures that the file holds. Throws Failure.
std::vector<MeshMaterial> gltfMaterials(const GltfFile& file);

}  // namespace talvek::host
