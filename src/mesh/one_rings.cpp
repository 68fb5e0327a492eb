#include "mesh/one_rings.h"

#include <numeric>
#include <utility>

namespace talvek {

OneRings::OneRings(const Object3D& mesh) {
    reserveRings(mesh);
    collectEdges(mesh);
    dropRepetitions(mesh.numVertices);
}

/// Every corner of a face brings its vertex two neighbours.
void OneRings::reserveRings(const Object3D& mesh) {
    const std::int64_t numVertices = mesh.numVertices;
    starts_ = makeZeroedArray<std::int64_t>(numVertices + 1);
    for (const std::int32_t vertex : mesh.faceSpan()) {
        starts_[static_cast<std::size_t>(vertex) + 1] += 2;
    }
    std::partial_sum(starts_.get(), starts_.get() + numVertices + 1, starts_.get());
}

/// Enters each edge of each face at both its ends. The start of a ring wanders to its end meanwhile, which is where the
/// next ring starts; so the starts are moved on by one place afterwards.
void OneRings::collectEdges(const Object3D& mesh) {
    const std::int64_t numVertices = mesh.numVertices;
    neighbours_ = makeArray<std::int32_t>(starts_[static_cast<std::size_t>(numVertices)]);
    const auto append = [this](std::int32_t vertex, std::int32_t neighbour) {
        std::int64_t& place = starts_[static_cast<std::size_t>(vertex)];
        neighbours_[static_cast<std::size_t>(place++)] = neighbour;
    };
    const auto addEdge = [&append](std::int32_t p, std::int32_t q) {
        append(p, q);
        append(q, p);
    };
    for (std::int64_t face = 0; face < mesh.numFaces; ++face) {
        const std::int32_t* corner = mesh.vertexIndex.get() + 3 * face;
        addEdge(corner[0], corner[1]);
        addEdge(corner[0], corner[2]);
        addEdge(corner[1], corner[2]);
    }
    std::memmove(starts_.get() + 1, starts_.get(), arrayBytes<std::int64_t>(numVertices));
    starts_[0] = 0;
}

/// Keeps the first appearance of every neighbour and closes the gaps. What tells a repetition is a note at the
/// neighbour, of the last vertex whose ring it was found in.
void OneRings::dropRepetitions(std::int32_t numVertices) {
    const HeapArray<std::int32_t> lastRing = makeFilledArray<std::int32_t>(numVertices, -1);
    std::int64_t kept = 0;
    std::int64_t begin = 0;
    for (std::int32_t vertex = 0; vertex < numVertices; ++vertex) {
        const std::int64_t end = starts_[static_cast<std::size_t>(vertex) + 1];
        // An edge from a vertex to itself was entered twice in a row, and both entries stay or go together.
        std::int64_t entries = 1;
        for (std::int64_t i = begin; i < end; i += entries) {
            const std::int32_t neighbour = neighbours_[static_cast<std::size_t>(i)];
            entries = neighbour == vertex ? 2 : 1;
            if (std::exchange(lastRing[static_cast<std::size_t>(neighbour)], vertex) != vertex) {
                for (std::int64_t entry = 0; entry < entries; ++entry) {
                    neighbours_[static_cast<std::size_t>(kept++)] = neighbour;
                }
            }
        }
        begin = end;
        starts_[static_cast<std::size_t>(vertex) + 1] = kept;
    }
    neighbours_ = shrinkArray(std::move(neighbours_), kept);
}

}  // namespace talvek
