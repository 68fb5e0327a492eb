// A whole run in the form that another program wants.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "talvek/results/run_series.h"

namespace talvek::host {

struct ExportRequest {
    /// A file, or a folder where its name has no extension that stands for a format.
    std::string target;
    /// "ply", "vtp", ...; empty where the target's extension says it, or for a folder of PLY files.
    std::string format;
    bool wantsColours = false;
    std::string palette = "stone";
    bool inYears = false;
    /// Of a single surface; the last one where it is not given.
    std::optional<std::int32_t> epoch;
    char upAxis = 'z';
};

struct ExportReport {
    std::vector<std::string> files;
    /// What the form has no place for, a few words each.
    std::vector<std::string> notCarried;
};

/// The formats, for the help.
std::string exportFormats();

/// Each file is written whole or not at all. Throws Failure.
ExportReport exportRun(const RunSeries& series, const ExportRequest& request);

}  // namespace talvek::host
