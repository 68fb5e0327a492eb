// Two runs must not write to the same names.
#pragma once

#include <optional>

#include "base/system.h"
#include "talvek/plan/run_files.h"
#include "talvek/watch/child_process.h"

namespace talvek::host {

/// Holds the names of a run's files. Names are taken without the mesh's extension, for the run log is.
class RunLock {
  public:
    /// Throws Failure, telling the process, when another run has them.
    explicit RunLock(const RunFiles& files);

  private:
    system::File file_;
    /// Goes before the file is let go, so that no other run loses its own.
    std::optional<ScratchFile> scratch_;
};

}  // namespace talvek::host
