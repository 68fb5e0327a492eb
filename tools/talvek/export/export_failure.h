// What is said when an exported file cannot be written.
#pragma once

#include <string>

#include "base/output_file.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

/// Puts a file in place. Throws Failure when anything failed; an old file is then untouched.
inline void finishExport(OutputFile& file, const std::string& path) {
    if (!file.finish()) {
        throw Failure(kExitOutput,
                      path + ": the file cannot be written; look for the folder, its permissions and room");
    }
}

}  // namespace talvek::host
