#include "talvek/inspect/surface_check.h"

#include <algorithm>

#include "talvek/inspect/mesh_size.h"
#include "talvek/inspect/mesh_survey.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

void noteIf(Findings& findings, const char* kind, std::int64_t count, const char* thing,
            const std::string& consequence) {
    if (count > 0) {
        findings.note(kind, count, countOf(static_cast<std::uint64_t>(count), thing) + " " + consequence);
    }
}

void checkTexture(const TextureSurvey& survey, Findings& findings) {
    noteIf(findings, "absentTexels", survey.absent, "face", "naming texture coordinates that are not there");
    if (survey.faces > 0) {
        noteIf(findings, "untexturedFaces", survey.without, "face", "without texture coordinates, which others have");
    }
    noteIf(findings, "unusedTexels", survey.unused, "texture coordinate", "that no face uses");
    noteIf(findings, "outsideTexture", survey.outside, "face",
           "with texture coordinates outside [0, 1), where no mineral map lies");
    noteIf(findings, "clockwiseTexture", survey.clockwise, "face",
           "clockwise in texture space, which mode 2 passes over");
}

/// Single-precision numbers this far apart lose some of what a year does to a stone.
constexpr double kCoarseSpacing = 0.001;

void checkPlace(const Object3D& mesh, Findings& findings) {
    const double farthest = std::ranges::max(largestCoordinates(mesh));
    const double spacing = spacingAt(farthest);
    if (spacing < kCoarseSpacing) {
        return;
    }
    const MeshSize size = sizeOf(mesh);
    const bool isFar = farthest > size.largest();
    findings.note("farFromOrigin", 1,
                  "coordinates reach " + briefNumber(farthest) + " mm, where single-precision numbers are " +
                      briefNumber(spacing) + " mm apart and smaller movements are lost; the mesh itself is " +
                      size.text() + " large" + (isFar ? ": move it to the origin" : ""));
}

void checkFaces(const MeshSurvey& survey, Findings& findings) {
    noteIf(findings, "withoutNormal", survey.vertices.withoutNormal, "vertex position",
           "without a normal: the faces around cancel out or have no area; nothing moves such a vertex, and smoothing "
           "loses it");
    noteIf(findings, "degenerateFaces", survey.faces.degenerate, "face",
           "without an area, the first of them face " + std::to_string(survey.faces.firstDegenerate + 1) +
               "; such faces have no direction and hold their vertices' normals back");
    noteIf(findings, "nonManifoldEdges", survey.edges.nonManifold, "edge",
           "with more than two faces; curvature, and with it smoothing, is not defined there");
    noteIf(
        findings, "inconsistentEdges", survey.edges.inconsistent, "edge",
        "inconsistently oriented: its faces are turned against each other, and the surface moves to both sides there");
    const Point& fold = survey.edges.firstFold;
    noteIf(findings, "folds", survey.edges.folded, "fold",
           "where neighbouring faces lie on each other, the first at " + briefNumber(fold.x) + " " +
               briefNumber(fold.y) + " " + briefNumber(fold.z) + " mm; the surface passes through itself as it moves");
    noteIf(findings, "unreferencedVertices", survey.vertices.unreferenced, "vertex position",
           "that no face uses and that stays in place");
    noteIf(findings, "duplicateVertices", survey.vertices.duplicate, "vertex position",
           "shared with another vertex; where surfaces only seem joined they come apart as they move");
}

}  // namespace

void checkSurface(const Object3D& mesh, Findings& findings) {
    if (mesh.numFaces == 0 || mesh.numVertices == 0) {
        findings.note("noSurface", 1,
                      "there is no surface: " + countOf(static_cast<std::uint64_t>(mesh.numVertices), "vertex") + ", " +
                          countOf(static_cast<std::uint64_t>(mesh.numFaces), "face"));
        return;
    }
    const MeshSurvey survey = surveyMesh(mesh);
    checkFaces(survey, findings);
    checkPlace(mesh, findings);
    checkTexture(survey.texture, findings);
}

}  // namespace talvek::host
