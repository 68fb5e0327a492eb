// What is told of each vertex of an exported surface, by the names that the files give it.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "talvek/export/frame_reader.h"
#include "talvek/results/change_scale.h"

namespace talvek::host {

/// One number for each vertex.
struct VertexField {
    std::string name;
    std::span<const float> values;
};

/// displacement_mm, delta_mm, and where the mesh has faces mean_curvature and gaussian_curvature, in 1/mm and 1/mm2.
/// The frame has to outlive them.
std::vector<VertexField> fieldsOf(const ExportFrame& frame);

/// Three bytes for each vertex: the colour of its displacement.
std::vector<ColourBytes> coloursOf(std::span<const float> displacements, const ChangeScale& scale);

/// The scale for all surfaces of a run: that of the last one. Throws Failure.
ChangeScale scaleOf(const RunSeries& series, const std::string& palette);

}  // namespace talvek::host
