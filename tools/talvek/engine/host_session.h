// The library as this program uses it: its exported functions and nothing else. What stands here runs in a child
// process, because the library reports to standard output and keeps its caller until a run is over.
#pragma once

#include <string>

namespace talvek::host {

struct SessionOrder {
    /// The mesh that the library is to read.
    std::string mesh;
    /// A parameter file with all that is to be done. It is removed when it has been read.
    std::string plan;
    bool saveConfig = false;
    bool keepInputFrame = false;
};

/// Runs the library. Returns the exit status; throws Failure.
int runSession(const SessionOrder& order);

}  // namespace talvek::host
