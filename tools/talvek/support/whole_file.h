// A file as one string.
#pragma once

#include <string>

#include "talvek/support/exit_status.h"

namespace talvek::host {

/// Throws Failure with this status when the file cannot be opened.
std::string readWholeFile(const std::string& path, ExitStatus otherwise);

/// The first bytes of a file, as many as there are up to `size`. Throws as readWholeFile does.
std::string readBeginning(const std::string& path, std::size_t size, ExitStatus otherwise);

}  // namespace talvek::host
