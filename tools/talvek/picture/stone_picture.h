// One picture of a weathered stone: the surface coloured by its change, with everything that is needed to read it.
#pragma once

#include <optional>
#include <string>

#include "talvek/picture/image.h"
#include "talvek/results/change_scale.h"
#include "talvek/results/run_series.h"

namespace talvek::host {

struct PictureOptions {
    /// The last one where it is not given.
    std::optional<std::int32_t> epoch;
    std::string view = "corner";
    char upAxis = 'z';
    int width = 1600;
    int height = 1000;
    std::string palette = "stone";
    std::optional<ScaleRange> range;
};

/// Throws Failure for an epoch, a view or a palette that is not there, and for surfaces that cannot be read.
Image drawStonePicture(const RunSeries& series, const PictureOptions& options);

}  // namespace talvek::host
