// What the program says about itself, on standard error.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace talvek::host {

/// "talvek 2.2.0"
std::string programVersion();

void printWarning(const std::string& message);
/// Those that are not empty.
void printWarnings(const std::vector<std::string>& messages);
void printError(const std::string& message);

/// The warnings that have been printed so far, in order.
const std::vector<std::string>& printedWarnings();

/// A line for people on standard output, unless it is kept for something else.
void say(const std::string& line);
/// From now on `say` says nothing.
void keepSilent();

/// "1 frame", "2 frames", "2 vertices".
std::string countOf(std::uint64_t count, const std::string& thing);

/// A number with as many digits as tell something, "%.4g".
std::string briefNumber(double value);

/// "0:42", "1:02:03"
std::string clockTime(std::uint64_t seconds);

/// "3.4 MB"
std::string byteCount(double bytes);

}  // namespace talvek::host
