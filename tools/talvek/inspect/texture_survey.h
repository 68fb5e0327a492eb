// What can be counted and measured on a mesh's texture coordinates.
#pragma once

#include <cstdint>

#include "mesh/object3d.h"

namespace talvek::host {

struct TextureSurvey {
    /// Faces whose three corners have texels.
    std::int64_t faces = 0;
    /// Of these, faces with a corner outside [0, 1).
    std::int64_t outside = 0;
    /// Of these, faces that run clockwise in texture space, which mode 2 passes over.
    std::int64_t clockwise = 0;
    /// The area of texture space that the faces cover, counting what is covered twice twice.
    double coverage = 0;
    /// Faces with a corner that names no texel.
    std::int64_t without = 0;
    /// Faces with a corner that names a texel which is not there.
    std::int64_t absent = 0;
    /// Texels that no face names.
    std::int64_t unused = 0;
};

/// What the grid of mode 2 makes of the faces. Each is counted once, at the first of these that holds.
struct GridFaces {
    /// Faces with a corner that has no texel, or none that is finite.
    std::int64_t untextured = 0;
    std::int64_t clockwise = 0;
    /// Faces without an area in texture space.
    std::int64_t flat = 0;
    /// Faces that lie wholly outside [0, 1).
    std::int64_t outside = 0;
    /// Faces that reach beyond the grid, of which the rest is drawn.
    std::int64_t partly = 0;

    std::int64_t undrawn() const { return untextured + clockwise + flat + outside; }
};

TextureSurvey surveyTexture(const Object3D& mesh);

GridFaces surveyGridFaces(const Object3D& mesh);

/// Whether a mineral map lies under a texel of a mesh, which need not exist.
bool isOnMap(const Object3D& mesh, std::int64_t texel);

}  // namespace talvek::host
