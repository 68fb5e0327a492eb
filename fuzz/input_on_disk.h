// The input of a fuzz target as a file: readers take paths.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace talvek::fuzz {

/// A folder in memory of this process's own, removed when the process ends.
const std::string& folder();

/// Writes the input to a file of this name in the folder and returns its path. The file is a new one each time: a
/// reader may have replaced the last one.
const char* writeInput(const char* name, const std::uint8_t* data, std::size_t size);

/// To be called when an input was sound enough to be worked on. A target that has ended without one has tested nothing,
/// and aborts.
void countUse();

}  // namespace talvek::fuzz
