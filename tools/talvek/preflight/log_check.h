// The file for the library's lines must not be one that the run needs.
#pragma once

#include <cstdint>

#include "talvek/plan/run_files.h"
#include "talvek/plan/run_options.h"

namespace talvek::host {

/// Throws Failure when --log names a file that the run reads or writes. Its lines would take the place of what is
/// there.
void requireFreeLog(const RunOptions& options, const RunFiles& files, std::int32_t epochs);

}  // namespace talvek::host
