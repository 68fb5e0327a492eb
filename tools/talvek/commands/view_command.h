// talvek view: a run as one page that any browser opens.
#pragma once

#include <cstdint>
#include <string>

#include "talvek/commands/command_set.h"

namespace talvek::host {

struct ViewOptions {
    /// The mesh, or the record of a run.
    std::string run;
    /// Empty for a page beside the run's surfaces.
    std::string output;
    std::uint64_t largestMegabytes = 500;
};

/// Writes the page of a run and says where it is. Returns the exit status; throws Failure.
int viewRun(const ViewOptions& options);

void addViewCommand(CommandSet& commands);

}  // namespace talvek::host
