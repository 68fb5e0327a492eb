// The weathered surface with the scan's texture, for archives and for repair of the texture.
#pragma once

#include <string>
#include <vector>

#include "talvek/results/run_series.h"

namespace talvek::host {

/// Writes a surface as OBJ in the source's coordinates and units, with the source's texture coordinates, and beside it
/// the material and the picture where there are any. Returns the names of the files. Throws Failure when one cannot be
/// written.
std::vector<std::string> writeObjSurface(const RunSeries& series, const SeriesSurface& surface,
                                         const std::string& path);

}  // namespace talvek::host
