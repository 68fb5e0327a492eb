#include "talvek/formats/mesh_builder.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>

#include "talvek/formats/polygon.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
/// Stands for every vertex that no mesh can have.
constexpr std::int32_t kNowhere = -2;

std::int32_t narrowIndex(std::int64_t index) {
    return index < 0 || index > kMost ? kNowhere : static_cast<std::int32_t>(index);
}

}  // namespace

void MeshBuilder::setColour(std::int64_t vertex, float red, float green, float blue, float opacity) {
    mesh_.colours.resize(4 * static_cast<std::size_t>(vertex), 1.0F);
    mesh_.colours.insert(mesh_.colours.end(), {red, green, blue, opacity});
}

void MeshBuilder::addFace(std::span<const std::int64_t> corners, std::span<const std::int64_t> texels) {
    if (corners.size() < 3) {
        ++mesh_.counts.leftOut;
        return;
    }
    ++numFaces_;
    const std::int64_t firstTriangle = mesh_.numTriangles();
    // A fan until all vertices are known.
    for (std::size_t i = 2; i < corners.size(); ++i) {
        for (const std::size_t corner : {std::size_t{0}, i - 1, i}) {
            mesh_.corners.push_back(narrowIndex(corners[corner]));
        }
    }
    addTexels(texels, corners.size());
    addMaterials(corners.size() - 2);
    if (corners.size() > 3) {
        mesh_.polygons.push_back(
            {.firstTriangle = firstTriangle, .numCorners = static_cast<std::int32_t>(corners.size())});
    }
}

void MeshBuilder::addTexels(std::span<const std::int64_t> texels, std::size_t numCorners) {
    if (texels.empty() && mesh_.cornerTexels.empty()) {
        return;
    }
    mesh_.cornerTexels.resize(mesh_.corners.size() - 3 * (numCorners - 2), -1);
    for (std::size_t i = 2; i < numCorners; ++i) {
        for (const std::size_t corner : {std::size_t{0}, i - 1, i}) {
            const std::int64_t texel = texels.empty() ? -1 : texels[corner];
            mesh_.cornerTexels.push_back(texel == -1 ? -1 : narrowIndex(texel));
        }
    }
}

void MeshBuilder::addMaterials(std::size_t numTriangles) {
    if (material_ >= 0 || !mesh_.triangleMaterials.empty()) {
        mesh_.triangleMaterials.resize(static_cast<std::size_t>(mesh_.numTriangles()) - numTriangles, -1);
        mesh_.triangleMaterials.resize(static_cast<std::size_t>(mesh_.numTriangles()), material_);
    }
}

std::int64_t MeshBuilder::faceOf(std::int64_t triangle) const {
    std::int64_t face = triangle + 1;
    for (const SourcePolygon& polygon : mesh_.polygons) {
        const std::int64_t behindFirst =
            std::min<std::int64_t>(triangle - polygon.firstTriangle, polygon.numCorners - 3);
        if (behindFirst <= 0) {
            break;
        }
        face -= behindFirst;
    }
    return face;
}

void MeshBuilder::requireSizes() const {
    if (mesh_.numVertices() > kMost || mesh_.numTriangles() > kMost / 3 ||
        mesh_.texels.size() / 2 > static_cast<std::size_t>(kMost)) {
        throw Failure(kExitMesh, path_ + ": the mesh has " +
                                     countOf(static_cast<std::uint64_t>(mesh_.numVertices()), "vertex") + " and " +
                                     countOf(static_cast<std::uint64_t>(mesh_.numTriangles()), "triangle") +
                                     ", more than the simulation can number; divide it");
    }
}

void MeshBuilder::requireVertices() const {
    const std::int64_t count = mesh_.numVertices();
    const auto bad =
        std::ranges::find_if(mesh_.corners, [count](std::int32_t corner) { return corner < 0 || corner >= count; });
    if (bad != mesh_.corners.end()) {
        throw Failure(kExitMesh, path_ + ": the mesh does not load: face " +
                                     std::to_string(faceOf((bad - mesh_.corners.begin()) / 3)) +
                                     " names a vertex that is not there");
    }
}

void MeshBuilder::dropAbsentTexels() {
    const auto count = static_cast<std::int64_t>(mesh_.texels.size() / 2);
    for (std::int32_t& texel : mesh_.cornerTexels) {
        if (texel < -1 || texel >= count) {
            texel = -1;
            ++mesh_.counts.absentTexels;
        }
    }
}

void MeshBuilder::dividePolygons() {
    PolygonDivision division;
    std::vector<PolygonDivision::Point> points;
    std::vector<std::int32_t> corners;
    std::vector<std::int32_t> texels;
    for (const SourcePolygon& polygon : mesh_.polygons) {
        const auto first = static_cast<std::size_t>(3 * polygon.firstTriangle);
        const auto count = static_cast<std::size_t>(polygon.numCorners);
        // The fan's triangles are (0, 1, 2), (0, 2, 3) and so on.
        const auto placeOf = [first](std::size_t corner) {
            return corner < 2 ? first + corner : first + 3 * (corner - 2) + 2;
        };
        points.resize(count);
        corners.resize(count);
        texels.resize(mesh_.cornerTexels.empty() ? 0 : count);
        for (std::size_t i = 0; i < count; ++i) {
            corners[i] = mesh_.corners[placeOf(i)];
            const double* position = mesh_.positions.data() + 3 * static_cast<std::size_t>(corners[i]);
            points[i] = {position[0], position[1], position[2]};
            if (!texels.empty()) {
                texels[i] = mesh_.cornerTexels[placeOf(i)];
            }
        }
        mesh_.counts.crossingPolygons += division.divide(points) ? 0 : 1;
        std::size_t to = first;
        for (const std::array<std::int32_t, 3>& triangle : division.triangles()) {
            for (const std::int32_t corner : triangle) {
                mesh_.corners[to] = corners[static_cast<std::size_t>(corner)];
                if (!texels.empty()) {
                    mesh_.cornerTexels[to] = texels[static_cast<std::size_t>(corner)];
                }
                ++to;
            }
        }
    }
}

ImportedMesh MeshBuilder::finish() {
    requireSizes();
    requireVertices();
    if (!mesh_.cornerTexels.empty()) {
        mesh_.cornerTexels.resize(mesh_.corners.size(), -1);
    }
    dropAbsentTexels();
    if (!mesh_.triangleMaterials.empty()) {
        mesh_.triangleMaterials.resize(static_cast<std::size_t>(mesh_.numTriangles()), -1);
    }
    if (!mesh_.colours.empty()) {
        mesh_.colours.resize(4 * static_cast<std::size_t>(mesh_.numVertices()), 1.0F);
    }
    try {
        dividePolygons();
    } catch (const std::length_error&) {
        throw Failure(kExitMesh, path_ +
                                     ": the mesh has polygons with so many notches that dividing them into "
                                     "triangles would take hours; triangulate it in the program it comes from");
    }
    return std::move(mesh_);
}

}  // namespace talvek::host
