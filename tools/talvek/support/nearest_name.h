// What a mistyped word was meant to be.
#pragma once

#include <string>
#include <vector>

namespace talvek::host {

/// The one of the names that takes the fewest changes of a letter; empty where all are too far away.
std::string nearestName(const std::string& word, const std::vector<std::string>& names);

/// ", did you mean NAME?"; empty for an empty name.
std::string didYouMean(const std::string& name);

}  // namespace talvek::host
