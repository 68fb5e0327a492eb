// The table of all epochs, which can be read without the page's script.
#pragma once

#include <string>
#include <vector>

#include "talvek/view/epoch_rows.h"

namespace talvek::host {

std::string epochTable(const std::vector<EpochRow>& rows, ChangeKind kind);

}  // namespace talvek::host
