// What can be counted and measured on a mesh.
#pragma once

#include <cstdint>

#include "mesh/object3d.h"

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
    std::int64_t turned = 0;
};

struct VertexSurvey {
    /// Vertices that no face names.
    std::int64_t unreferenced = 0;
    /// Vertices at the position of one before them.
    std::int64_t duplicate = 0;
    /// Vertices with a coordinate that is infinite or not a number.
    std::int64_t notFinite = 0;
};

struct FaceSurvey {
    /// Faces without an area.
    std::int64_t degenerate = 0;
    /// The first of them, counted from 0; -1 when there is none.
    std::int64_t firstDegenerate = -1;
    double area = 0;
};

struct TextureSurvey {
    /// Faces whose three corners have texels.
    std::int64_t faces = 0;
    /// Of these, faces with a corner outside [0, 1).
    std::int64_t outside = 0;
    /// Of these, faces that run clockwise in texture space, which mode 2 passes over.
    std::int64_t clockwise = 0;
    /// The area of texture space that the faces cover, counting what is covered twice twice.
    double coverage = 0;
};

struct MeshSurvey {
    BoundingBox box{};
    EdgeSurvey edges;
    VertexSurvey vertices;
    FaceSurvey faces;
    TextureSurvey texture;
};

/// Every vertex index has to lie in [0, V).
MeshSurvey surveyMesh(const Object3D& mesh);

}  // namespace talvek::host
