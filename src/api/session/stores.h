// The parameter stores of the session: the material record and the epoch table.
#pragma once

namespace talvek {

/// Creates what does not exist, with the defaults of the session's mode, epoch count and days. Throws std::bad_alloc.
void createMissingStores();

void releaseStores();

}  // namespace talvek
