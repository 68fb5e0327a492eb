// Drawing into a grid in the most direct form: every cell of a triangle's whole box is looked at, inside the grid or
// not. What the library has to agree with to the last bit.
#pragma once

#include <vector>

#include "mesh/object3d.h"

namespace talvek::test {

/// A grid of 460 x 460 cells of three values, row by row. Texture coordinates have to be moderate: the time grows with
/// the boxes.
std::vector<float> plainRaster(const Object3D& mesh, const float* attribute);

}  // namespace talvek::test
