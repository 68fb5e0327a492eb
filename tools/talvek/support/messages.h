// What the program says about itself, on standard error.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace talvek::host {

void printWarning(const std::string& message);
/// Those that are not empty.
void printWarnings(const std::vector<std::string>& messages);
void printError(const std::string& message);

/// "1 frame", "2 frames", "2 vertices".
std::string countOf(std::uint64_t count, const std::string& thing);

/// A number with as many digits as tell something, "%.4g".
std::string briefNumber(double value);

/// "3.4 MB"
std::string byteCount(double bytes);

}  // namespace talvek::host
