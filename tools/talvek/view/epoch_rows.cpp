#include "talvek/view/epoch_rows.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "base/number_text.h"

namespace talvek::host {

namespace {

/// A model's year, and the one that rain is given for.
constexpr double kDaysPerYear = 365;
constexpr double kSquareMillimetresPerSquareCentimetre = 100;
constexpr double kCubicMillimetresPerCubicCentimetre = 1000;
/// Figures of one column have as many decimals as give the largest of them this many digits.
constexpr int kDigits = 5;

std::string fixedText(double value, int decimals) {
    char text[kNumberTextSize];
    // A figure that rounds to nothing has no sign.
    const double smallest = 0.5 * std::pow(10.0, -decimals);
    return {text, formatFixed(text, std::abs(value) < smallest ? 0 : value, decimals)};
}

int decimalsFor(double largest) {
    const int before = largest > 0 ? static_cast<int>(std::floor(std::log10(largest))) + 1 : 1;
    return std::clamp(kDigits - before, 0, 9);
}

using Rows = std::vector<EpochRow>;

/// Adds a figure to every row, all with the same number of decimals.
void addColumn(Rows& rows, const char* key, const std::vector<double>& values) {
    double largest = 0;
    for (const double value : values) {
        largest = std::isfinite(value) ? std::max(largest, std::abs(value)) : largest;
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i].figures.push_back({key, values[i], fixedText(values[i], decimalsFor(largest))});
    }
}

std::vector<double> valuesOf(const CodedRun& run, const std::function<double(const EpochFigures&)>& value) {
    std::vector<double> values;
    std::ranges::transform(run.figures, std::back_inserter(values), value);
    return values;
}

void addDisplacements(Rows& rows, const CodedRun& run, ChangeKind kind) {
    const bool isLoss = kind == ChangeKind::kLoss;
    const double sign = isLoss ? -1 : 1;
    std::vector<double> all[] = {
        valuesOf(run, [&](const EpochFigures& each) { return sign * each.displacement.mean; }),
        valuesOf(
            run,
            [&](const EpochFigures& each) { return isLoss ? -each.displacement.smallest : each.displacement.largest; }),
        valuesOf(
            run,
            [&](const EpochFigures& each) { return isLoss ? -each.displacement.largest : each.displacement.smallest; }),
    };
    const char* const keys[] = {"mean", "largest", "smallest"};
    for (std::size_t i = 0; i < std::size(keys); ++i) {
        // A minus before a 0 would be a sign of nothing.
        std::ranges::replace(all[i], -0.0, 0.0);
        addColumn(rows, keys[i], all[i]);
    }
}

void addVolumes(Rows& rows, const CodedRun& run, ChangeKind kind) {
    const double sign = (kind == ChangeKind::kLoss ? 1 : -1) / kCubicMillimetresPerCubicCentimetre;
    const double first = *run.figures.front().volume;
    std::vector<double> changed;
    std::vector<double> inEpoch;
    double before = first;
    for (const EpochFigures& each : run.figures) {
        const double volume = each.volume.value_or(std::nan(""));
        changed.push_back(volume == first ? 0 : sign * (first - volume));
        inEpoch.push_back(volume == before ? 0 : sign * (before - volume));
        before = volume;
    }
    addColumn(rows, "volume", changed);
    addColumn(rows, "epochVolume", inEpoch);
}

struct EpochQuantity {
    const char* key;
    /// What the shown number counts.
    double unit;
    int decimals;
};

constexpr EpochQuantity kEnvironment[TALVEK_EPOCH_PARAMS] = {
    {"so2", 1e-13, 2}, {"no2", 1e-13, 2}, {"rain", 1, 2}, {"ph", 1, 2}};
constexpr EpochQuantity kOffsets[TALVEK_EPOCH_PARAMS] = {
    {"offset", 1, 6}, {"offsetMean", 1, 6}, {"offsetSpread", 1, 6}, {"offsetSmoothing", 1, 6}};

/// Air and rain, or what was prescribed. The first surface has none.
void addEnvironment(Rows& rows, const RunSeries& series) {
    const std::vector<SeriesSurface>& surfaces = series.surfaces();
    const bool areKnown = std::ranges::all_of(
        surfaces, [](const SeriesSurface& surface) { return surface.epoch == 0 || surface.values.has_value(); });
    const bool isOffsetting = series.mode() != nullptr && series.mode()->isOffsetting;
    for (std::size_t k = 0; areKnown && k < TALVEK_EPOCH_PARAMS; ++k) {
        const EpochQuantity& quantity = (isOffsetting ? kOffsets : kEnvironment)[k];
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const double value = surfaces[i].values ? (*surfaces[i].values)[k] / quantity.unit : 0;
            rows[i].figures.push_back(
                {quantity.key, value, surfaces[i].values ? fixedText(value, quantity.decimals) : ""});
        }
    }
}

}  // namespace

ChangeScale scaleOf(const CodedRun& run, const PalettePair& colours) {
    std::vector<double> ends;
    for (const EpochFigures& each : run.figures) {
        ends.push_back(each.displacement.smallest);
        ends.push_back(each.displacement.largest);
    }
    return ChangeScale(ends, colours, std::nullopt);
}

std::string nameOf(ChangeKind kind) {
    return kind == ChangeKind::kLoss ? "loss" : kind == ChangeKind::kGrowth ? "growth" : "both";
}

Rows epochRows(const RunSeries& series, const CodedRun& run) {
    Rows rows;
    const ChangeKind kind = scaleOf(run, palettes().front()).kind();
    for (const EpochFigures& each : run.figures) {
        EpochRow& row = rows.emplace_back();
        row.epoch = each.epoch;
        row.figures.push_back({"days", each.days, fixedText(each.days, 0)});
        row.figures.push_back({"years", each.days / kDaysPerYear, fixedText(each.days / kDaysPerYear, 2)});
    }
    addDisplacements(rows, run, kind);
    addColumn(rows, "area", valuesOf(run, [](const EpochFigures& each) {
                  return each.area / kSquareMillimetresPerSquareCentimetre;
              }));
    if (run.isClosed()) {
        addVolumes(rows, run, kind);
    }
    addEnvironment(rows, series);
    return rows;
}

}  // namespace talvek::host
