// From where a stone is looked at, and where its points lie in a picture. Parallel lines stay parallel, so that one
// scale holds for the whole picture.
#pragma once

#include <string>
#include <vector>

#include "mesh/object3d.h"
#include "mesh/vector3.h"
#include "talvek/picture/image.h"

namespace talvek::host {

/// The axes of the picture in the space of the mesh, of length 1: to the right, up, and towards the eye.
struct View {
    Vector3<double> right, up, towards;
};

/// A view by its name ("front", "corner", ...) or as two angles in degrees, "30,20": round the stone from the front to
/// its right, and above the horizon. `upAxis` is that of the mesh which points up, 'x', 'y' or 'z'. Throws Failure.
View viewOf(const std::string& text, char upAxis);

/// A point of the picture in samples, x from the left and y from the top, and its depth, larger towards the eye.
struct ScreenPoint {
    float x, y, depth;
};

struct Projection {
    std::vector<ScreenPoint> points;
    /// Samples per millimetre.
    double scale = 1;
};

/// Lays the vertices into a box, which has the unit of the samples: as large as fits, in its middle. Vertices that are
/// not finite give points that are not.
Projection project(const Object3D& mesh, const View& view, const Box& box);

}  // namespace talvek::host
