// Geometry images: a grid of pixels whose three channels are the coordinates of surface points. A pixel of zeros is a
// hole.
#pragma once

#include <memory>

#include "base/float_image.h"
#include "mesh/object3d.h"

namespace talvek {

using FimImage = FloatImage;

/// Reads an image; pixels that the file does not hold are holes. Returns null, after a report on standard error, when
/// the file cannot be opened or its dimensions cannot be true.
std::unique_ptr<FimImage> ReadFimImage(const char* path);

/// Makes up to two triangles of every cell of four pixels, with a texel for each vertex and grey faces. The texel of
/// column x and row y is (x / (width - 2), y / (height - 2)), greater than 1 in the last column and row. Returns null
/// when the image does not have three channels or there is no memory.
std::unique_ptr<Object3D> TriangulateFimImage(const FimImage& image);

/// Reads an image as a mesh with white faces, moved by the position that the first pixel holds. Returns null as the two
/// functions above do.
std::unique_ptr<Object3D> LoadFimFile(const char* path);

}  // namespace talvek
