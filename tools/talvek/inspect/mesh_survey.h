// What can be counted and measured on a mesh.
#pragma once

#include <cstdint>

#include "mesh/object3d.h"
#include "talvek/inspect/points.h"
#include "talvek/inspect/texture_survey.h"

namespace talvek::host {

/// Edges are those between the corners of faces, each counted once. Faces that name a vertex twice have none.
struct EdgeSurvey {
    std::int64_t count = 0;
    double shortest = 0;
    double longest = 0;
    double mean = 0;
    /// Edges of one face only.
    std::int64_t boundary = 0;
    /// Edges of more than two faces.
    std::int64_t nonManifold = 0;
    /// Edges of two faces that run the same way round along it.
    std::int64_t inconsistent = 0;
    /// Edges at which two faces, of one outside, lie folded on each other: their directions are more than 150 degrees
    /// apart.
    std::int64_t folded = 0;
    /// The middle of the first of them.
    Point firstFold{};
};

struct VertexSurvey {
    /// Vertices that no face names.
    std::int64_t unreferenced = 0;
    /// Vertices at the position of one before them.
    std::int64_t duplicate = 0;
    /// Vertices with a coordinate that is infinite or not a number.
    std::int64_t notFinite = 0;
    /// Vertices whose faces cancel each other out, so that they have no normal; counted where the mesh has normals.
    std::int64_t withoutNormal = 0;
};

struct FaceSurvey {
    /// Faces without an area.
    std::int64_t degenerate = 0;
    /// The first of them, counted from 0; -1 when there is none.
    std::int64_t firstDegenerate = -1;
    double area = 0;
};

struct MeshSurvey {
    BoundingBox box{};
    EdgeSurvey edges;
    VertexSurvey vertices;
    FaceSurvey faces;
    TextureSurvey texture;
};

/// Vertices with a coordinate that is infinite or not a number.
std::int64_t countNotFinite(const Object3D& mesh);

/// Every vertex index has to lie in [0, V).
MeshSurvey surveyMesh(const Object3D& mesh);

}  // namespace talvek::host
