// The figures of all epochs as a page shows them: the text of each is made here and nowhere else.
#pragma once

#include <string>
#include <vector>

#include "talvek/results/change_scale.h"
#include "talvek/results/run_series.h"
#include "talvek/view/coded_run.h"

namespace talvek::host {

/// A figure as it is drawn and as it is shown. Texts of the page are found by its name.
struct NamedFigure {
    std::string key;
    double value = 0;
    std::string text;
};

struct EpochRow {
    std::int32_t epoch = 0;
    std::vector<NamedFigure> figures;
};

/// The scale that holds the displacements of all epochs, and what they are on the whole: loss, growth or both.
ChangeScale scaleOf(const CodedRun& run, const PalettePair& colours);

/// "loss", "growth", "both": how the page's texts name it.
std::string nameOf(ChangeKind kind);

/// One row for each surface of the run. All rows have the same figures in the same order.
std::vector<EpochRow> epochRows(const RunSeries& series, const CodedRun& run);

}  // namespace talvek::host
