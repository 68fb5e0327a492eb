// Which mineral a colour of the map stands for, and how strongly it weathers.
#pragma once

#include <cstdint>

namespace talvek {

/// The class of a pixel, given its channels in the order of the file (blue, green, red): 1 to 20, 0 for a colour that
/// stands for no mineral.
std::int32_t mineralClassOf(float p0, float p1, float p2);

/// The share of the weathering of a homogeneous stone that a class suffers; 0 for class 0.
float mineralFactor(std::int32_t mineralClass);

/// The distance by which the surface moves under a pixel where a homogeneous stone moves by `delta`. Classes that do
/// not weather give 0 even where delta is not finite.
float mineralDelta(float p0, float p1, float p2, float delta);

}  // namespace talvek
