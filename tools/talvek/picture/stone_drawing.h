// Draws the surface of a stone into a picture.
#pragma once

#include <functional>
#include <span>

#include "mesh/object3d.h"
#include "talvek/picture/image.h"
#include "talvek/picture/view.h"

namespace talvek::host {

struct StoneColours {
    /// Of each vertex, a place in [0, 1]; empty for a bare stone, not finite where there is none.
    std::vector<float> places;
    /// The colour of a place.
    std::function<Colour(double place)> colourAt;
};

/// Draws the mesh, which has vertex normals, into a box of the picture. Returns the pixels per millimetre. Throws
/// std::bad_alloc.
double drawStone(Image& image, const Box& box, const Object3D& mesh, const View& view, const StoneColours& colours);

}  // namespace talvek::host
