#include "talvek/inspect/mesh_survey.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

namespace talvek::host {

namespace {

using Point = std::array<double, 3>;

Point pointOf(const Object3D& mesh, std::int32_t vertex) {
    const float* at = mesh.vertices.get() + 3 * std::int64_t{vertex};
    return {static_cast<double>(at[0]), static_cast<double>(at[1]), static_cast<double>(at[2])};
}

Point difference(const Point& a, const Point& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

double length(const Point& p) {
    return std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]);
}

double faceArea(const Object3D& mesh, const std::int32_t* face) {
    const Point a = pointOf(mesh, face[0]);
    const Point u = difference(pointOf(mesh, face[1]), a);
    const Point v = difference(pointOf(mesh, face[2]), a);
    return length({u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]}) / 2;
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
    const double edgeLength = length(difference(pointOf(mesh, first->low), pointOf(mesh, first->high)));
    survey.shortest = survey.count == 0 ? edgeLength : std::min(survey.shortest, edgeLength);
    survey.longest = std::max(survey.longest, edgeLength);
    survey.mean += edgeLength;
    ++survey.count;
    survey.boundary += faces == 1 ? 1 : 0;
    survey.nonManifold += faces > 2 ? 1 : 0;
    survey.turned += faces == 2 && first[0].isReversed == first[1].isReversed ? 1 : 0;
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
    return std::ranges::all_of(pointOf(mesh, vertex), [](double c) { return std::isfinite(c); });
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
    std::ranges::sort(points);
    survey.duplicate = points.end() - std::unique(points.begin(), points.end());
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
