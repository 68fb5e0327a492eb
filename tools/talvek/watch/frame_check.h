// Whether the frames of a run are there, complete and readable. The library does not report a frame that it could not
// write, so it is found out here.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "talvek/plan/prepared_run.h"

namespace talvek::host {

class FrameCheck {
  public:
    /// Notes which of the files stand there already, so that they are not taken for new ones. Without expected counts
    /// a frame may hold any number of vertices but none.
    FrameCheck(const std::vector<std::string>& names, std::optional<ExpectedCounts> expected);

    /// Reads a file that should be complete by now. Throws Failure when it is not.
    void check(const std::string& name);

    /// Whether a file of the run has been written since.
    bool isNew(const std::string& name) const;

  private:
    using Time = std::filesystem::file_time_type;
    std::unordered_map<std::string, Time> earlier_;
    std::optional<ExpectedCounts> expected_;
};

}  // namespace talvek::host
