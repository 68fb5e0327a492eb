// Parameter files, sound and faulty, for the command-line cases.
#pragma once

#include "support/test_files.h"

namespace talvek::test {

/// Each has the fault that its name says; marked.cfg, remarks.cfg and template.cfg have none.
void writeConfigFixtures(const TempFolder& folder);

}  // namespace talvek::test
