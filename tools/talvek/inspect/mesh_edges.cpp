#include "talvek/inspect/mesh_edges.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <tuple>

namespace talvek::host {

namespace {

std::int32_t endOf(std::span<const std::int32_t> corners, std::size_t side) {
    return corners[side % 3 == 2 ? side - 2 : side + 1];
}

}  // namespace

MeshEdges::MeshEdges(const Object3D& mesh) : mesh_(mesh), ends_(static_cast<std::size_t>(mesh.numVertices) + 1) {
    const std::span<const std::int32_t> corners = mesh.faceSpan();
    if (corners.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw std::length_error("the mesh has more faces than can be looked through");
    }
    for (std::size_t side = 0; side < corners.size(); ++side) {
        const std::int32_t to = endOf(corners, side);
        if (corners[side] != to) {
            ++ends_[static_cast<std::size_t>(std::min(corners[side], to)) + 1];
        }
    }
    for (std::size_t vertex = 1; vertex < ends_.size(); ++vertex) {
        ends_[vertex] += ends_[vertex - 1];
    }
    numbers_.resize(ends_.back());
    // From here on each entry is where the next side goes; at the end that is where the vertex's sides end.
    for (std::size_t side = 0; side < corners.size(); ++side) {
        const std::int32_t to = endOf(corners, side);
        if (corners[side] != to) {
            numbers_[ends_[static_cast<std::size_t>(std::min(corners[side], to))]++] = static_cast<std::uint32_t>(side);
        }
    }
}

void MeshEdges::collectSides(std::int32_t low, std::vector<FaceSide>& sides) const {
    const std::span<const std::int32_t> corners = mesh_.faceSpan();
    const auto vertex = static_cast<std::size_t>(low);
    sides.clear();
    for (std::uint32_t i = vertex > 0 ? ends_[vertex - 1] : 0; i < ends_[vertex]; ++i) {
        const std::int32_t from = corners[numbers_[i]];
        const std::int32_t to = endOf(corners, numbers_[i]);
        sides.push_back({std::max(from, to), numbers_[i], from > to});
    }
    std::ranges::sort(sides, {}, [](const FaceSide& side) { return std::tuple(side.high, side.number); });
}

bool isClosed(const Object3D& mesh) {
    bool allRegular = mesh.numFaces > 0;
    MeshEdges(mesh).forEach([&allRegular](const Edge& edge) { allRegular = allRegular && edge.isRegular(); });
    return allRegular;
}

}  // namespace talvek::host
