#include "talvek/inspect/mesh_survey.h"

#include <algorithm>
#include <array>
#include <bit>
#include <vector>

#include "talvek/inspect/mesh_edges.h"
#include "talvek/inspect/points.h"

namespace talvek::host {

namespace {

/// The cosine of the angle between directions that are hardly ever so far apart but by folding.
constexpr double kFolded = -0.8660254037844386;

bool isFolded(const Object3D& mesh, const Edge& edge) {
    if (!edge.isRegular()) {
        return false;
    }
    const Point a = faceCross(mesh, edge.sides[0].face());
    const Point b = faceCross(mesh, edge.sides[1].face());
    return dot(a, b) < kFolded * length(a) * length(b);
}

void addFold(EdgeSurvey& survey, const Object3D& mesh, const Edge& edge) {
    if (survey.folded++ == 0) {
        survey.firstFold = (pointOf(mesh, edge.low) + pointOf(mesh, edge.high)) / 2.0;
    }
}

void addEdge(EdgeSurvey& survey, const Object3D& mesh, const Edge& edge) {
    const double edgeLength = length(pointOf(mesh, edge.low) - pointOf(mesh, edge.high));
    survey.shortest = survey.count == 0 ? edgeLength : std::min(survey.shortest, edgeLength);
    survey.longest = std::max(survey.longest, edgeLength);
    survey.mean += edgeLength;
    ++survey.count;
    survey.boundary += edge.sides.size() == 1 ? 1 : 0;
    survey.nonManifold += edge.sides.size() > 2 ? 1 : 0;
    survey.inconsistent += edge.sides.size() == 2 && !edge.isRegular() ? 1 : 0;
    if (isFolded(mesh, edge)) {
        addFold(survey, mesh, edge);
    }
}

EdgeSurvey surveyEdges(const Object3D& mesh) {
    EdgeSurvey survey;
    MeshEdges(mesh).forEach([&](const Edge& edge) { addEdge(survey, mesh, edge); });
    survey.mean = survey.count > 0 ? survey.mean / static_cast<double>(survey.count) : 0;
    return survey;
}

bool hasNoNormal(const Object3D& mesh, std::int32_t vertex) {
    return mesh.vertexNormals != nullptr &&
           std::ranges::all_of(mesh.normalSpan().subspan(3 * static_cast<std::size_t>(vertex), 3),
                               [](float c) { return c == 0; });
}

/// The positions of a mesh's vertices, found again by their coordinates.
class DistinctPositions {
  public:
    explicit DistinctPositions(const Object3D& mesh)
        : mesh_(mesh), slots_(std::bit_ceil(2 * static_cast<std::size_t>(mesh.numVertices) + 1), kFree) {}

    /// False where a vertex that was added before has the same position.
    bool add(std::int32_t vertex) {
        const std::array<std::uint32_t, 3> key = keyOf(vertex);
        std::size_t slot = hashOf(key) & (slots_.size() - 1);
        while (slots_[slot] != kFree && keyOf(slots_[slot]) != key) {
            slot = (slot + 1) & (slots_.size() - 1);
        }
        const bool isNew = slots_[slot] == kFree;
        slots_[slot] = isNew ? vertex : slots_[slot];
        return isNew;
    }

  private:
    static constexpr std::int32_t kFree = -1;

    std::array<std::uint32_t, 3> keyOf(std::int32_t vertex) const {
        // Adding 0 makes one of the two zeros.
        const float* at = mesh_.vertices.get() + 3 * std::int64_t{vertex};
        return {std::bit_cast<std::uint32_t>(at[0] + 0.0F), std::bit_cast<std::uint32_t>(at[1] + 0.0F),
                std::bit_cast<std::uint32_t>(at[2] + 0.0F)};
    }

    static std::size_t hashOf(const std::array<std::uint32_t, 3>& key) {
        constexpr std::uint64_t kMix = 0x9E3779B97F4A7C15;
        std::uint64_t hash = 0;
        for (const std::uint32_t word : key) {
            hash = (hash ^ word) * kMix;
            hash ^= hash >> 32;
        }
        return static_cast<std::size_t>(hash);
    }

    const Object3D& mesh_;
    std::vector<std::int32_t> slots_;
};

VertexSurvey surveyVertices(const Object3D& mesh) {
    VertexSurvey survey;
    std::vector<bool> isReferenced(static_cast<std::size_t>(mesh.numVertices));
    for (const std::int32_t vertex : mesh.faceSpan()) {
        isReferenced[static_cast<std::size_t>(vertex)] = true;
    }
    survey.unreferenced = std::ranges::count(isReferenced, false);
    DistinctPositions positions(mesh);
    for (std::int32_t v = 0; v < mesh.numVertices; ++v) {
        survey.duplicate += isFinite(pointOf(mesh, v)) && !positions.add(v) ? 1 : 0;
        survey.withoutNormal += isReferenced[static_cast<std::size_t>(v)] && hasNoNormal(mesh, v) ? 1 : 0;
    }
    survey.notFinite = countNotFinite(mesh);
    return survey;
}

FaceSurvey surveyFaces(const Object3D& mesh) {
    FaceSurvey survey;
    for (std::int64_t face = 0; face < mesh.numFaces; ++face) {
        const double area = faceArea(mesh, face);
        survey.area += area;
        if (area == 0) {
            survey.firstDegenerate = survey.degenerate == 0 ? face : survey.firstDegenerate;
            ++survey.degenerate;
        }
    }
    return survey;
}

}  // namespace

std::int64_t countNotFinite(const Object3D& mesh) {
    std::int64_t count = 0;
    for (std::int32_t vertex = 0; vertex < mesh.numVertices; ++vertex) {
        count += isFinite(pointOf(mesh, vertex)) ? 0 : 1;
    }
    return count;
}

MeshSurvey surveyMesh(const Object3D& mesh) {
    return {boundingBox(mesh), surveyEdges(mesh), surveyVertices(mesh), surveyFaces(mesh), surveyTexture(mesh)};
}

}  // namespace talvek::host
