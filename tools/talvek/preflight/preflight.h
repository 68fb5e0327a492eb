// What is looked into before a run, so that a run that cannot work is refused at once and with a reason.
#pragma once

#include <cstdint>
#include <optional>

#include "mesh/object3d.h"
#include "talvek/mineral_map/mineral_map_file.h"
#include "talvek/plan/prepared_run.h"
#include "talvek/plan/run_files.h"
#include "talvek/plan/run_options.h"
#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// Throws Failure where the mesh does not carry what the mode needs.
void requireSuitableMesh(const SessionPlan& plan, const Object3D& mesh, const RunFiles& files);

/// In the modes that read a mineral map: throws Failure unless there is one that can be used. Returns the one of the
/// options where it is still to be put in place.
std::optional<MapToPlace> requireMineralMap(const SessionPlan& plan, const RunOptions& options, const RunFiles& files);

/// Finds out how much room the run needs. Throws Failure unless files can be created in the folder, or where it is to
/// be, and the disk has the room.
void requireRoom(PreparedRun& run);

/// Throws Failure for a run that needs more room than it may: a small file can promise a large mesh.
void requireBoundedOutput(const PreparedRun& run, std::uint64_t most);

}  // namespace talvek::host
