// The figures of a run as people and programs read them.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <span>
#include <string>

#include "talvek/results/epoch_figures.h"

namespace talvek::host {

/// Comma-separated, a row for each epoch under a row of names that state the units. Numbers have as many digits as give
/// the same number when they are read; what is not known is left empty.
std::string csvOf(std::span<const EpochFigures> epochs);

/// The same for each epoch and mineral.
std::string mineralCsvOf(std::span<const EpochFigures> epochs);

/// One object with the schema "talvek-results".
nlohmann::ordered_json jsonOf(const RunSeries& series, std::span<const EpochFigures> epochs);

/// A table for the eye, and in mode 3 one of the minerals in the last epoch.
std::string textOf(const RunSeries& series, std::span<const EpochFigures> epochs);

}  // namespace talvek::host
