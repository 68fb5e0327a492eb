// What the page's script has to know before it decodes anything, as JSON.
#pragma once

#include <string>
#include <vector>

#include "talvek/view/epoch_rows.h"

namespace talvek::host {

/// The mesh file's name without its folders.
std::string pageTitle(const RunSeries& series);

std::string pageHeader(const RunSeries& series, const CodedRun& run, const std::vector<EpochRow>& rows);

}  // namespace talvek::host
