// A file as one string.
#pragma once

#include <string>

#include "talvek/exit_status.h"

namespace talvek::host {

/// Throws Failure with this status when the file cannot be opened.
std::string readWholeFile(const std::string& path, ExitStatus otherwise);

}  // namespace talvek::host
