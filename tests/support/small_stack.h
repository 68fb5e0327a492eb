// Hosts may call the library from a thread with little room for its stack.
#pragma once

#include <functional>

namespace talvek::test {

/// Does the work on a thread with a stack of 128 KiB. What it throws ends the process.
void runOnSmallStack(std::function<void()> work);

}  // namespace talvek::test
