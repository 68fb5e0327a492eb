// The positions of all surfaces in one file, for the mesh cache modifier of Blender and of 3ds Max.
#pragma once

#include <string>

#include "talvek/results/run_series.h"

namespace talvek::host {

/// Writes a PC2 file, one sample for each surface. Throws Failure when the file cannot be written; an old one is then
/// untouched.
void writePointCache(const RunSeries& series, const std::string& path);

}  // namespace talvek::host
