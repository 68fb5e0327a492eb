// The stone going through its years, in one binary glTF file for Blender and the web.
#pragma once

#include <cstdint>
#include <string>

#include "talvek/results/change_scale.h"
#include "talvek/results/run_series.h"

namespace talvek::host {

inline constexpr std::size_t kMostKeyFrames = 64;

struct GltfOptions {
    /// The axis of the mesh that points up.
    char upAxis = 'z';
    /// Colours the last surface by its change; otherwise it has the scan's picture where there is one.
    bool wantsColours = false;
    std::string palette;
};

struct GltfReport {
    std::size_t keyFrames = 0;
    bool hasPicture = false;
};

/// Writes one mesh with a morph target for each of at most kMostKeyFrames surfaces and a time track that goes through
/// them. Throws Failure when the file cannot be written; an old one is then untouched.
GltfReport writeGltfAnimation(const RunSeries& series, const GltfOptions& options, const std::string& path);

}  // namespace talvek::host
