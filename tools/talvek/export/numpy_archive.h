// All displacements of a run as arrays for NumPy.
#pragma once

#include <string>

#include "talvek/results/run_series.h"

namespace talvek::host {

/// Writes an .npz file: `displacement_mm` (surfaces x vertices, along the first normals, float32), `distance_mm` (the
/// same shape), `epoch` and `days` of each surface, and in mode 3 `mineral` of each vertex. Throws Failure when the
/// file cannot be written; an old one is then untouched.
void writeNumpyArchive(const RunSeries& series, const std::string& path);

}  // namespace talvek::host
