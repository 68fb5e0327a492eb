// Looks through an OBJ file line by line, as people see it, for what the library's reader makes something else of.
#pragma once

#include <string_view>

#include "talvek/inspect/findings.h"

namespace talvek::host {

/// Adds the first place of every kind of trouble, with its line and face number.
void checkObjText(std::string_view text, Findings& findings);

}  // namespace talvek::host
