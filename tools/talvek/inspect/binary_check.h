// Compares what the head of a binary mesh file promises with what the file holds.
#pragma once

#include <string>

#include "talvek/inspect/findings.h"

namespace talvek::host {

void checkSasFile(const std::string& path, Findings& findings);
void checkBinFile(const std::string& path, Findings& findings);
void checkFimFile(const std::string& path, Findings& findings);

}  // namespace talvek::host
