#include "talvek/formats/mesh_cleaning.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace talvek::host {

namespace {

using Triangle = std::array<std::int32_t, 3>;

Triangle triangleOf(const ImportedMesh& mesh, std::size_t number) {
    return {mesh.corners[3 * number], mesh.corners[3 * number + 1], mesh.corners[3 * number + 2]};
}

/// By the positions that the simulation will have.
bool isDegenerate(const ImportedMesh& mesh, const Triangle& triangle) {
    std::array<std::array<double, 3>, 3> points{};
    for (std::size_t corner = 0; corner < 3; ++corner) {
        for (std::size_t k = 0; k < 3; ++k) {
            const double position = mesh.positions[3 * static_cast<std::size_t>(triangle[corner]) + k];
            points[corner][k] =
                static_cast<double>(static_cast<float>((position - mesh.place.offset[k]) * mesh.place.unit));
        }
    }
    double area = 0;
    for (std::size_t k = 0; k < 3; ++k) {
        const std::size_t i = (k + 1) % 3;
        const std::size_t j = (k + 2) % 3;
        const double part = (points[1][i] - points[0][i]) * (points[2][j] - points[0][j]) -
                            (points[1][j] - points[0][j]) * (points[2][i] - points[0][i]);
        area += part * part;
    }
    return area == 0;
}

/// Marks the triangles for which `isBad` holds and, if they are to go, takes them out of what follows.
template <typename IsBad>
std::int64_t mark(const ImportedMesh& mesh, std::vector<bool>& isGone, bool isChosen, IsBad isBad) {
    std::int64_t count = 0;
    for (std::size_t i = 0; i < isGone.size(); ++i) {
        if (!isGone[i] && isBad(triangleOf(mesh, i))) {
            ++count;
            isGone[i] = isChosen;
        }
    }
    return count;
}

void removeTriangles(ImportedMesh& mesh, const std::vector<bool>& isGone) {
    std::size_t to = 0;
    for (std::size_t i = 0; i < isGone.size(); ++i) {
        if (isGone[i]) {
            continue;
        }
        for (std::size_t k = 0; k < 3; ++k) {
            mesh.corners[3 * to + k] = mesh.corners[3 * i + k];
            if (!mesh.cornerTexels.empty()) {
                mesh.cornerTexels[3 * to + k] = mesh.cornerTexels[3 * i + k];
            }
        }
        if (!mesh.triangleMaterials.empty()) {
            mesh.triangleMaterials[to] = mesh.triangleMaterials[i];
        }
        ++to;
    }
    mesh.corners.resize(3 * to);
    mesh.cornerTexels.resize(mesh.cornerTexels.empty() ? 0 : 3 * to);
    mesh.triangleMaterials.resize(mesh.triangleMaterials.empty() ? 0 : to);
    // The triangles of a polygon may not stand together any more.
    mesh.polygons.clear();
}

void keepVertices(ImportedMesh& mesh, const std::vector<bool>& isUsed) {
    std::vector<std::int32_t> number(isUsed.size(), -1);
    std::size_t to = 0;
    for (std::size_t v = 0; v < isUsed.size(); ++v) {
        if (!isUsed[v]) {
            continue;
        }
        number[v] = static_cast<std::int32_t>(to);
        for (std::size_t k = 0; k < 3; ++k) {
            mesh.positions[3 * to + k] = mesh.positions[3 * v + k];
        }
        for (std::size_t k = 0; k < 4 && !mesh.colours.empty(); ++k) {
            mesh.colours[4 * to + k] = mesh.colours[4 * v + k];
        }
        ++to;
    }
    mesh.positions.resize(3 * to);
    mesh.colours.resize(mesh.colours.empty() ? 0 : 4 * to);
    for (std::int32_t& corner : mesh.corners) {
        corner = number[static_cast<std::size_t>(corner)];
    }
}

std::vector<bool> usedVertices(const ImportedMesh& mesh) {
    std::vector<bool> isUsed(static_cast<std::size_t>(mesh.numVertices()));
    for (const std::int32_t corner : mesh.corners) {
        isUsed[static_cast<std::size_t>(corner)] = true;
    }
    return isUsed;
}

/// Edges, and how many triangles have them so far.
class EdgeCounts {
  public:
    bool isFull(const Triangle& triangle) const {
        bool isFull = false;
        for (std::size_t k = 0; k < 3; ++k) {
            const auto found = counts_.find(std::minmax(triangle[k], triangle[(k + 1) % 3]));
            isFull |= found != counts_.end() && found->second >= 2;
        }
        return isFull;
    }

    void add(const Triangle& triangle) {
        for (std::size_t k = 0; k < 3; ++k) {
            ++counts_[std::minmax(triangle[k], triangle[(k + 1) % 3])];
        }
    }

  private:
    std::map<std::pair<std::int32_t, std::int32_t>, int> counts_;
};

}  // namespace

CleaningCounts cleanMesh(ImportedMesh& mesh, const CleaningChoice& choice) {
    CleaningCounts counts;
    std::vector<bool> isGone(static_cast<std::size_t>(mesh.numTriangles()));
    counts.degenerate = mark(mesh, isGone, choice.degenerate,
                             [&mesh](const Triangle& triangle) { return isDegenerate(mesh, triangle); });
    std::set<Triangle> seen;
    counts.doubled = mark(mesh, isGone, choice.doubled, [&seen](Triangle triangle) {
        std::ranges::sort(triangle);
        return !seen.insert(triangle).second;
    });
    EdgeCounts edges;
    counts.nonManifold = mark(mesh, isGone, choice.nonManifold, [&edges](const Triangle& triangle) {
        if (edges.isFull(triangle)) {
            return true;
        }
        edges.add(triangle);
        return false;
    });
    removeTriangles(mesh, isGone);
    const std::vector<bool> isUsed = usedVertices(mesh);
    counts.isolated = std::ranges::count(isUsed, false);
    if (choice.isolated && counts.isolated > 0) {
        keepVertices(mesh, isUsed);
    }
    return counts;
}

}  // namespace talvek::host
