// The edges of a mesh, each with the sides of the faces that meet there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "mesh/object3d.h"

namespace talvek::host {

/// One side of a face, which runs from a corner to the next.
struct FaceSide {
    /// The larger of the numbers of its ends.
    std::int32_t high;
    /// Three times the face, plus the corner it begins at.
    std::uint32_t number;
    /// Whether it runs from the larger number to the smaller one.
    bool isReversed;

    std::int64_t face() const { return number / 3; }
};

struct Edge {
    std::int32_t low;
    std::int32_t high;
    /// In order of their numbers.
    std::span<const FaceSide> sides;

    /// Whether two faces meet that run opposite ways along it, as those of a surface with one outside do.
    bool isRegular() const { return sides.size() == 2 && sides[0].isReversed != sides[1].isReversed; }
};

/// Puts the sides of a mesh's faces in order of the lower end, in linear time. Sides from a vertex to itself are left
/// out. Every vertex index has to lie in [0, V).
class MeshEdges {
  public:
    explicit MeshEdges(const Object3D& mesh);

    /// Calls `visit(const Edge&)` for every edge, in order of the lower end and then of the higher one.
    template <typename Visit>
    void forEach(Visit visit) const {
        std::vector<FaceSide> sides;
        for (std::int32_t low = 0; low < mesh_.numVertices; ++low) {
            collectSides(low, sides);
            for (std::size_t first = 0; first < sides.size();) {
                std::size_t last = first + 1;
                while (last < sides.size() && sides[last].high == sides[first].high) {
                    ++last;
                }
                visit(Edge{low, sides[first].high, std::span(sides).subspan(first, last - first)});
                first = last;
            }
        }
    }

  private:
    void collectSides(std::int32_t low, std::vector<FaceSide>& sides) const;

    const Object3D& mesh_;
    /// Where the sides of each vertex end in `numbers_`.
    std::vector<std::uint32_t> ends_;
    std::vector<std::uint32_t> numbers_;
};

/// Whether the faces enclose a volume: all edges are regular.
bool isClosed(const Object3D& mesh);

}  // namespace talvek::host
