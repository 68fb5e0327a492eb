#include "talvek/export/split_vertices.h"

#include <map>
#include <utility>

#include "mesh/texture.h"

namespace talvek::host {

SplitVertices splitVertices(const Object3D& mesh, const Object3D* textured) {
    SplitVertices split;
    constexpr std::int32_t kUnset = -2;
    for (std::int32_t v = 0; v < mesh.numVertices; ++v) {
        split.vertices.push_back(v);
    }
    split.texels.assign(split.vertices.size(), textured != nullptr ? kUnset : -1);
    std::map<std::pair<std::int32_t, std::int32_t>, std::uint32_t> repeated;
    for (std::size_t i = 0; i < mesh.faceSpan().size(); ++i) {
        const std::int32_t vertex = mesh.vertexIndex[i];
        const std::int32_t named = textured != nullptr ? cornerTexels(*textured)[i] : -1;
        const std::int32_t texel = textured != nullptr && isTexel(*textured, named) ? named : -1;
        std::int32_t& own = split.texels[static_cast<std::size_t>(vertex)];
        own = own == kUnset ? texel : own;
        if (own == texel) {
            split.corners.push_back(static_cast<std::uint32_t>(vertex));
            continue;
        }
        const auto [found, isNew] =
            repeated.try_emplace({vertex, texel}, static_cast<std::uint32_t>(split.vertices.size()));
        if (isNew) {
            split.vertices.push_back(vertex);
            split.texels.push_back(texel);
        }
        split.corners.push_back(found->second);
    }
    return split;
}

}  // namespace talvek::host
