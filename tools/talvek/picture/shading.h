// How bright a surface looks under a raking light, and darker where little of the sky reaches it.
#pragma once

#include "mesh/vector3.h"
#include "talvek/picture/visible_surface.h"

namespace talvek::host {

/// The share of the light that a surface sends to the eye, by its normal in the axes of the picture (x to the right, y
/// up, z towards the eye), which has length 1. `openness` is the share of the sky that it sees.
float brightnessOf(const Vector3<float>& normal, float openness);

/// How much of the sky a sample sees past the surface within `radius` samples around it, in [0, 1]. (L. Bavoil, M.
/// Sainz and R. Dimitrov, "Image-space horizon-based ambient occlusion", 2008.)
float opennessAt(const VisibleSurface& surface, int x, int y, const Vector3<float>& normal, float radius);

}  // namespace talvek::host
