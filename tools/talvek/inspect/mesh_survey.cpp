#include "talvek/inspect/mesh_survey.h"

#include <algorithm>
#include <iterator>
#include <tuple>
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

VertexSurvey surveyVertices(const Object3D& mesh) {
    VertexSurvey survey;
    std::vector<bool> isReferenced(static_cast<std::size_t>(mesh.numVertices));
    for (const std::int32_t vertex : mesh.faceSpan()) {
        isReferenced[static_cast<std::size_t>(vertex)] = true;
    }
    survey.unreferenced = std::ranges::count(isReferenced, false);
    std::vector<Point> points;
    for (std::int32_t v = 0; v < mesh.numVertices; ++v) {
        if (isFinite(pointOf(mesh, v))) {
            points.push_back(pointOf(mesh, v));
        }
        survey.withoutNormal += isReferenced[static_cast<std::size_t>(v)] && hasNoNormal(mesh, v) ? 1 : 0;
    }
    survey.notFinite = countNotFinite(mesh);
    const auto coordinates = [](const Point& p) { return std::tuple(p.x, p.y, p.z); };
    std::ranges::sort(points, {}, coordinates);
    const auto repeated = std::ranges::unique(points, {}, coordinates);
    survey.duplicate = std::ssize(repeated);
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
