// Whether the frames of a run are there, complete and readable. The library does not report a frame that it could not
// write, so it is found out here.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "base/system.h"
#include "mesh/object3d.h"
#include "talvek/plan/prepared_run.h"

namespace talvek::host {

class FrameCheck {
  public:
    /// Notes which of the files stand there already, so that they are not taken for new ones. Without expected counts
    /// a frame may hold any number of vertices but none.
    FrameCheck(const std::vector<std::string>& names, std::optional<ExpectedCounts> expected);

    /// Reads a file that should be complete by now. Throws Failure when it is not.
    std::unique_ptr<Object3D> check(const std::string& name);

    /// Whether a file of the run has been written since, even if it has gone after its check.
    bool isNew(const std::string& name) const;

  private:
    std::unordered_map<std::string, system::FileIdentity> earlier_;
    std::unordered_set<std::string> checked_;
    std::optional<ExpectedCounts> expected_;
};

}  // namespace talvek::host
