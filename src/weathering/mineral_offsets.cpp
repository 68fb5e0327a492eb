#include "weathering/mineral_offsets.h"

#include <algorithm>
#include <cmath>

#include "mesh/texture.h"
#include "weathering/mineral_classes.h"
#include "weathering/surface.h"

namespace talvek {

namespace {

bool isInside(float cell, std::int32_t size) {
    return cell >= 0 && static_cast<double>(cell) < size;
}

/// The pixel under a texel; null where there is none. The column is found in single precision: what rounding takes
/// from it is part of the result.
const float* pixelUnder(const Object3D& mesh, const MineralMap& map, std::int32_t texel) {
    if (!isTexel(mesh, texel)) {
        return nullptr;
    }
    const float* coordinates = mesh.texels.get() + 2 * std::int64_t{texel};
    const float x = std::floor(static_cast<float>(map.width) * coordinates[0]);
    const float y = std::floor(static_cast<float>(map.height) * coordinates[1]);
    if (!isInside(x, map.width) || !isInside(y, map.height)) {
        return nullptr;
    }
    return map.pixel(static_cast<std::int64_t>(x), static_cast<std::int64_t>(y));
}

/// Calls use(vertex, its mineral class).
template <typename Use>
void forEachVertex(const Object3D& mesh, const MineralMap& map, Use use) {
    const HeapArray<std::int32_t> texelOf = texelOfVertices(mesh);
    float pixel[3] = {};
    for (std::int32_t vertex = 0; vertex < mesh.numVertices; ++vertex) {
        const float* found =
            map.channels == 3 ? pixelUnder(mesh, map, texelOf[static_cast<std::size_t>(vertex)]) : nullptr;
        if (found != nullptr) {
            std::copy(found, found + 3, pixel);
        }
        use(vertex, mineralClassOf(pixel[0], pixel[1], pixel[2]));
    }
}

}  // namespace

HeapArray<std::int32_t> texelOfVertices(const Object3D& mesh) {
    HeapArray<std::int32_t> texelOf = makeZeroedArray<std::int32_t>(mesh.numVertices);
    for (std::size_t corner = 0; corner < mesh.faceSpan().size(); ++corner) {
        texelOf[static_cast<std::size_t>(mesh.vertexIndex[corner])] = mesh.texelIndex[corner];
    }
    return texelOf;
}

std::vector<std::int32_t> mineralsOfVertices(const Object3D& mesh, const MineralMap& map) {
    std::vector<std::int32_t> minerals;
    minerals.reserve(static_cast<std::size_t>(mesh.numVertices));
    forEachVertex(mesh, map, [&minerals](std::int32_t, std::int32_t mineral) { minerals.push_back(mineral); });
    return minerals;
}

void applyMineralOffsets(Object3D& mesh, const MineralMap& map, float delta) {
    if (map.channels == 3) {
        forEachVertex(mesh, map, [&mesh, delta](std::int32_t vertex, std::int32_t mineral) {
            moveVertex(mesh, vertex, delta * mineralFactor(mineral));
        });
    }
}

}  // namespace talvek
