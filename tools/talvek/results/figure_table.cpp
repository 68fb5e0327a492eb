#include "talvek/results/figure_table.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

#include "talvek/results/run_record_json.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

constexpr int kSchemaVersion = 1;

std::string exactNumber(double value) {
    char digits[64];
    return std::isfinite(value) ? std::string(digits, std::to_chars(digits, digits + sizeof digits, value).ptr) : "";
}

std::string exactNumber(const std::optional<double>& value) {
    return value ? exactNumber(*value) : "";
}

/// One row of a table, its cells with commas between.
class CsvRow {
  public:
    void add(const std::string& cell) {
        text_ += (isEmpty_ ? "" : ",") + cell;
        isEmpty_ = false;
    }
    void addStatistics(const ValueStatistics& statistics) {
        for (const double value :
             {statistics.mean, statistics.areaWeightedMean, statistics.smallest, statistics.largest}) {
            add(exactNumber(value));
        }
        for (const double value : statistics.percentiles) {
            add(exactNumber(value));
        }
    }
    void addStatisticsNames(const std::string& of) {
        for (const char* name : {"mean", "area_mean", "smallest", "largest"}) {
            add(of + "_" + name + "_mm");
        }
        for (const double percent : kPercentiles) {
            add(of + "_p" + exactNumber(percent) + "_mm");
        }
    }
    std::string line() const { return text_ + "\n"; }

  private:
    std::string text_;
    bool isEmpty_ = true;
};

Json statisticsJson(const ValueStatistics& statistics) {
    Json object = {{"mean", jsonOf(statistics.mean)},
                   {"areaMean", jsonOf(statistics.areaWeightedMean)},
                   {"smallest", jsonOf(statistics.smallest)},
                   {"largest", jsonOf(statistics.largest)},
                   {"percentiles", Json::object()}};
    for (std::size_t i = 0; i < kPercentiles.size(); ++i) {
        object["percentiles"][exactNumber(kPercentiles[i])] = jsonOf(statistics.percentiles[i]);
    }
    return object;
}

Json mineralJson(const MineralFigures& mineral) {
    return {{"mineral", mineral.mineral},
            {"factor", jsonOf(mineral.factor)},
            {"vertices", mineral.displacement.count},
            {"displacement", statisticsJson(mineral.displacement)}};
}

Json epochJson(const EpochFigures& figures) {
    Json object = {{"epoch", figures.epoch}, {"days", jsonOf(figures.days)}};
    const auto addIfKnown = [&object](const char* name, const std::optional<double>& value) {
        if (value) {
            object[name] = jsonOf(*value);
        }
    };
    addIfKnown("delta", figures.delta);
    object["vertices"] = figures.displacement.count;
    object["displacement"] = statisticsJson(figures.displacement);
    object["distance"] = statisticsJson(figures.distance);
    object["area"] = jsonOf(figures.area);
    addIfKnown("volume", figures.volume);
    addIfKnown("massLost", figures.massLost);
    if (!figures.minerals.empty()) {
        object["minerals"] = Json::array();
        std::ranges::transform(figures.minerals, std::back_inserter(object["minerals"]), mineralJson);
    }
    return object;
}

using Cells = std::vector<std::string>;

/// Columns of even width, the numbers to the right.
std::string alignedText(const std::vector<Cells>& rows) {
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const Cells& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    std::string text;
    for (const Cells& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            text += std::string(2 + widths[i] - row[i].size(), ' ') + row[i];
        }
        text += "\n";
    }
    return text;
}

std::string briefOr(const std::optional<double>& value, const char* otherwise) {
    return value ? briefNumber(*value) : otherwise;
}

Cells epochCells(const EpochFigures& figures) {
    constexpr double kCubicCentimetre = 1000;
    constexpr double kSquareCentimetre = 100;
    const ValueStatistics& moved = figures.displacement;
    return {std::to_string(figures.epoch),
            exactNumber(figures.days),
            briefOr(figures.delta, "-"),
            briefNumber(moved.mean),
            briefNumber(moved.areaWeightedMean),
            briefNumber(moved.smallest),
            briefNumber(moved.percentiles[3]),
            briefNumber(moved.largest),
            briefNumber(figures.area / kSquareCentimetre),
            figures.volume ? briefNumber(*figures.volume / kCubicCentimetre) : "-",
            briefOr(figures.massLost, "-")};
}

}  // namespace

std::string csvOf(std::span<const EpochFigures> epochs) {
    CsvRow names;
    for (const char* name : {"epoch", "days", "delta_mm", "vertices"}) {
        names.add(name);
    }
    names.addStatisticsNames("displacement");
    names.addStatisticsNames("distance");
    for (const char* name : {"area_mm2", "volume_mm3", "mass_lost_g"}) {
        names.add(name);
    }
    std::string text = names.line();
    for (const EpochFigures& figures : epochs) {
        CsvRow row;
        row.add(std::to_string(figures.epoch));
        row.add(exactNumber(figures.days));
        row.add(exactNumber(figures.delta));
        row.add(std::to_string(figures.displacement.count));
        row.addStatistics(figures.displacement);
        row.addStatistics(figures.distance);
        row.add(exactNumber(figures.area));
        row.add(exactNumber(figures.volume));
        row.add(exactNumber(figures.massLost));
        text += row.line();
    }
    return text;
}

std::string mineralCsvOf(std::span<const EpochFigures> epochs) {
    CsvRow names;
    for (const char* name : {"epoch", "days", "mineral", "factor", "vertices"}) {
        names.add(name);
    }
    names.addStatisticsNames("displacement");
    std::string text = names.line();
    for (const EpochFigures& figures : epochs) {
        for (const MineralFigures& mineral : figures.minerals) {
            CsvRow row;
            row.add(std::to_string(figures.epoch));
            row.add(exactNumber(figures.days));
            row.add(std::to_string(mineral.mineral));
            row.add(briefNumber(mineral.factor));
            row.add(std::to_string(mineral.displacement.count));
            row.addStatistics(mineral.displacement);
            text += row.line();
        }
    }
    return text;
}

Json jsonOf(const RunSeries& series, std::span<const EpochFigures> epochs) {
    Json object = {{"schema", "talvek-results"}, {"version", kSchemaVersion}, {"source", series.source()}};
    if (series.mode() != nullptr) {
        object["mode"] = series.mode()->name;
    }
    if (series.model() != nullptr) {
        object["model"] = series.model()->name;
    }
    if (series.density()) {
        object["density"] = jsonOf(*series.density());
    }
    object["plannedEpochs"] = series.numEpochs();
    object["epochs"] = Json::array();
    std::ranges::transform(epochs, std::back_inserter(object["epochs"]), epochJson);
    return object;
}

std::string textOf(const RunSeries& series, std::span<const EpochFigures> epochs) {
    std::vector<Cells> rows = {{"epoch", "days", "delta mm", "mean mm", "area mean", "smallest", "median", "largest",
                                "area cm2", "volume cm3", "lost g"}};
    std::ranges::transform(epochs, std::back_inserter(rows), epochCells);
    std::string text =
        series.source() + ": displacements along the first normals, in mm, negative where stone is lost\n";
    text += alignedText(rows);
    if (epochs.empty() || epochs.back().minerals.empty()) {
        return text;
    }
    rows = {{"mineral", "share", "vertices", "mean mm", "smallest", "median", "largest"}};
    for (const MineralFigures& mineral : epochs.back().minerals) {
        const ValueStatistics& moved = mineral.displacement;
        rows.push_back({std::to_string(mineral.mineral), briefNumber(mineral.factor), std::to_string(moved.count),
                        briefNumber(moved.mean), briefNumber(moved.smallest), briefNumber(moved.percentiles[3]),
                        briefNumber(moved.largest)});
    }
    return text + "by mineral, after epoch " + std::to_string(epochs.back().epoch) + "\n" + alignedText(rows);
}

}  // namespace talvek::host
