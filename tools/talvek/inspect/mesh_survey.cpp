#include "talvek/inspect/mesh_survey.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <tuple>
#include <utility>
#include <vector>

#include "mesh/vector3.h"

namespace talvek::host {

namespace {

using Point = Vector3<double>;

Point pointOf(const Object3D& mesh, std::int32_t vertex) {
    return tripleAt<double>(mesh.vertices.get(), vertex);
}

double faceArea(const Object3D& mesh, const std::int32_t* face) {
    const Point a = pointOf(mesh, face[0]);
    return length(cross(pointOf(mesh, face[1]) - a, pointOf(mesh, face[2]) - a)) / 2;
}

/// One side of a face: its ends in order of number, and whether it runs from the larger one.
struct Side {
    std::int32_t low;
    std::int32_t high;
    bool isReversed;

    std::pair<std::int32_t, std::int32_t> edge() const { return {low, high}; }
};

std::vector<Side> sidesOf(const Object3D& mesh) {
    std::vector<Side> sides;
    sides.reserve(mesh.faceSpan().size());
    for (std::size_t i = 0; i < mesh.faceSpan().size(); ++i) {
        const std::int32_t from = mesh.faceSpan()[i];
        const std::int32_t to = mesh.faceSpan()[i % 3 == 2 ? i - 2 : i + 1];
        if (from != to) {
            sides.push_back({std::min(from, to), std::max(from, to), from > to});
        }
    }
    std::ranges::sort(sides, {}, &Side::edge);
    return sides;
}

void addEdge(EdgeSurvey& survey, const Object3D& mesh, const Side* first, std::ptrdiff_t faces) {
    const double edgeLength = length(pointOf(mesh, first->low) - pointOf(mesh, first->high));
    survey.shortest = survey.count == 0 ? edgeLength : std::min(survey.shortest, edgeLength);
    survey.longest = std::max(survey.longest, edgeLength);
    survey.mean += edgeLength;
    ++survey.count;
    survey.boundary += faces == 1 ? 1 : 0;
    survey.nonManifold += faces > 2 ? 1 : 0;
    survey.inconsistent += faces == 2 && first[0].isReversed == first[1].isReversed ? 1 : 0;
}

EdgeSurvey surveyEdges(const Object3D& mesh) {
    const std::vector<Side> sides = sidesOf(mesh);
    EdgeSurvey survey;
    for (auto first = sides.begin(); first != sides.end();) {
        const auto last =
            std::find_if(first, sides.end(), [first](const Side& side) { return side.edge() != first->edge(); });
        addEdge(survey, mesh, &*first, last - first);
        first = last;
    }
    survey.mean = survey.count > 0 ? survey.mean / static_cast<double>(survey.count) : 0;
    return survey;
}

bool isFinite(const Object3D& mesh, std::int32_t vertex) {
    const Point p = pointOf(mesh, vertex);
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
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
        if (isFinite(mesh, v)) {
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
        const double area = faceArea(mesh, mesh.vertexIndex.get() + 3 * face);
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
        count += isFinite(mesh, vertex) ? 0 : 1;
    }
    return count;
}

MeshSurvey surveyMesh(const Object3D& mesh) {
    return {boundingBox(mesh), surveyEdges(mesh), surveyVertices(mesh), surveyFaces(mesh), surveyTexture(mesh)};
}

}  // namespace talvek::host
