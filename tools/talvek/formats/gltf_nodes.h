// Where the meshes of a glTF file stand.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "talvek/formats/gltf_file.h"

namespace talvek::host {

/// An affine map: the columns of its matrix, then what it adds.
struct GltfTransform {
    std::array<double, 12> columns{1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};

    std::array<double, 3> apply(const std::array<double, 3>& point) const;
    GltfTransform after(const GltfTransform& inner) const;
    /// Whether it turns left into right.
    bool isMirror() const;
};

struct GltfInstance {
    std::int64_t mesh = 0;
    GltfTransform transform;
};

/// The meshes of the file's scene, node by node. Throws Failure for nodes that are within themselves.
std::vector<GltfInstance> gltfInstances(const GltfFile& file);

}  // namespace talvek::host
