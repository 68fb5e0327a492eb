// A surface as a PLY file for MeshLab and CloudCompare.
#pragma once

#include <span>
#include <string>

#include "talvek/export/frame_reader.h"
#include "talvek/results/palette.h"

namespace talvek::host {

/// Writes little-endian binary PLY. MeshLab shows `quality`, CloudCompare everything that begins with `scalar_`. One
/// colour for each vertex, or none. Throws Failure when the file cannot be written; an old one is then untouched.
void writePlyFrame(const ExportFrame& frame, std::span<const ColourBytes> colours, const std::string& path);

}  // namespace talvek::host
