// A surface as a PLY file for MeshLab and CloudCompare.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "talvek/export/vertex_fields.h"
#include "talvek/results/palette.h"

namespace talvek::host {

struct PlySurface {
    /// With vertex normals.
    const Object3D& mesh;
    std::string comment;
    /// What MeshLab shows.
    std::span<const float> quality;
    /// What CloudCompare shows; `scalar_` is put before their names.
    std::vector<VertexField> fields;
    /// One for each vertex, or none.
    std::span<const ColourBytes> colours;
};

/// Writes little-endian binary PLY. Throws Failure when the file cannot be written; an old one is then untouched.
void writePlySurface(const PlySurface& surface, const std::string& path);

/// The same of a surface of a run, with all that is told of its vertices.
void writePlyFrame(const ExportFrame& frame, std::span<const ColourBytes> colours, const std::string& path);

}  // namespace talvek::host
