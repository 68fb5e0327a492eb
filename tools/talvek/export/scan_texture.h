// The photograph that a scan carries, and the texture coordinates that lay it on the stone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "mesh/object3d.h"
#include "talvek/results/run_series.h"

namespace talvek::host {

struct ScanPicture {
    /// A file name without a folder.
    std::string name;
    /// "image/png" or "image/jpeg"; empty for another kind.
    std::string kind;
    std::string bytes;
};

/// The picture of the source's first material that has one; nothing where there is none or it cannot be read.
std::optional<ScanPicture> readScanPicture(const RunSeries& series);

/// The library's mesh with its texture coordinates; null where it has none for the faces of the surfaces.
std::unique_ptr<Object3D> readTexturedMesh(const RunSeries& series, const Object3D& first);

}  // namespace talvek::host
