// A run that has been found possible.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "mesh/object3d.h"
#include "talvek/formats/imported_mesh.h"
#include "talvek/mineral_map/mineral_map_file.h"
#include "talvek/plan/run_files.h"
#include "talvek/plan/run_options.h"
#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// What the frames of a run have to hold.
struct ExpectedCounts {
    std::int32_t vertices = 0;
    std::int32_t faces = 0;
};

struct PreparedRun {
    RunFiles files;
    SessionPlan plan;
    bool keepInputFrame = false;
    FrameChoice frames;
    /// The surface before, with its normals.
    std::shared_ptr<const Object3D> mesh;
    /// Whether the library's mesh is made of the source, which it cannot read itself or not whole.
    bool isMeshMade = false;
    /// Where the source's coordinates lie in the mesh.
    MeshPlace place;
    /// Nothing where the frames' vertices are not those of the mesh.
    std::optional<ExpectedCounts> counts;
    /// A mineral map that is still to be put in its place.
    std::optional<MapToPlace> map;
    /// The room that the run needs on the disk.
    std::uint64_t bytesNeeded = 0;

    /// All that the run writes, whether it is kept or not.
    std::vector<std::string> outputs() const { return outputFiles(files, plan.numEpochs(), keepInputFrame); }
    bool keepsFrame(std::int32_t number) const { return frames.keeps(number, plan.numEpochs()); }
};

/// The first and the last surface, and frame 0 where it is asked for.
inline std::vector<std::string> surfacesOf(const PreparedRun& run) {
    std::vector<std::string> names = {run.files.firstSurface, run.files.lastSurface};
    if (run.keepInputFrame) {
        names.push_back(run.files.frame(0));
    }
    return names;
}

}  // namespace talvek::host
