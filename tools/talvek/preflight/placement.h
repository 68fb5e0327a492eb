// What a run puts in its folder before it begins: the folder itself, the mesh and the mineral map.
#pragma once

#include "talvek/plan/prepared_run.h"
#include "talvek/plan/run_files.h"
#include "talvek/plan/run_options.h"

namespace talvek::host {

/// Throws Failure where the mesh would take the place of another file, unless `force` is set.
void requireFreePlace(const PreparedRun& run, bool force);

/// Throws Failure where --save-config would take the place of a file that it has not written, unless --force is given.
void requireReplaceableParameters(const RunOptions& options, const RunFiles& files);

/// Creates the folder of the run where it is absent. Throws Failure.
void makeFolder(const RunFiles& files);

/// Puts the mesh and the mineral map in their places, where they do not stand there already. Throws Failure.
void placeInputs(const PreparedRun& run);

}  // namespace talvek::host
