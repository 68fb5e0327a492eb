// The page of a run: one file of HTML that holds everything it needs.
#pragma once

#include <cstdint>
#include <string>

#include "talvek/results/run_series.h"

namespace talvek::host {

struct PageOptions {
    /// The page grows no larger than this; epochs are left out for it.
    std::uint64_t largestBytes = 500'000'000;
};

struct WrittenPage {
    std::uint64_t bytes = 0;
    std::int64_t vertices = 0;
    /// Surfaces that the page can show, the first one and the last one among them.
    std::size_t surfaces = 0;
};

/// Writes the page of a run. Throws Failure; then there is no page, or still the old one.
WrittenPage writePage(const RunSeries& series, const std::string& path, const PageOptions& options);

}  // namespace talvek::host
