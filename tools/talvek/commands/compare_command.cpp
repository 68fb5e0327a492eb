#include "talvek/commands/compare_command.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "talvek/export/ply_frame.h"
#include "talvek/formats/mesh_file.h"
#include "talvek/plan/import_arguments.h"
#include "talvek/results/change_scale.h"
#include "talvek/results/run_record_json.h"
#include "talvek/results/surface_distance.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/same_file.h"

namespace talvek::host {

namespace {

constexpr int kSchemaVersion = 1;
constexpr std::size_t kBins = 20;

struct CompareOptions {
    std::string mesh;
    std::string other;
    std::string ply;
    std::string palette = "stone";
    bool wantsAlignment = false;
    bool asJson = false;
};

/// Parts of equal width from the first to the 99th percentile; what lies beyond is in the parts at the ends.
struct Histogram {
    double from = 0;
    double width = 0;
    std::array<std::int64_t, kBins> counts{};
};

Histogram histogramOf(const SurfaceDistance& distance) {
    Histogram histogram;
    const ValueStatistics& statistics = distance.signedStatistics;
    histogram.from = statistics.percentiles.front();
    histogram.width = (statistics.percentiles.back() - histogram.from) / kBins;
    for (const double value : distance.distances) {
        if (std::isfinite(value)) {
            const double part = histogram.width > 0 ? (value - histogram.from) / histogram.width : 0;
            ++histogram.counts[static_cast<std::size_t>(std::clamp(part, 0.0, kBins - 1.0))];
        }
    }
    return histogram;
}

std::string joined(const ValueStatistics& statistics) {
    std::string text;
    for (std::size_t i = 0; i < kPercentiles.size(); ++i) {
        text += (i == 0 ? "" : ", ") + briefNumber(kPercentiles[i]) + " %: " + briefNumber(statistics.percentiles[i]);
    }
    return text;
}

void printAlignment(const Alignment& alignment) {
    const Vector3<double>& shift = alignment.motion.shift;
    std::printf(
        "  aligned      RMS %s before and %s mm after %s, from %s %% of the places; turned by %s degrees, origin "
        "moved by (%s, %s, %s) mm\n",
        briefNumber(alignment.rmsBefore).c_str(), briefNumber(alignment.rmsAfter).c_str(),
        countOf(static_cast<std::uint64_t>(alignment.steps), "step").c_str(), briefNumber(100 * alignment.used).c_str(),
        briefNumber(alignment.motion.angle()).c_str(), briefNumber(shift.x).c_str(), briefNumber(shift.y).c_str(),
        briefNumber(shift.z).c_str());
}

void printHistogram(const Histogram& histogram) {
    constexpr double kLongest = 50;
    const auto most = static_cast<double>(std::max<std::int64_t>(*std::ranges::max_element(histogram.counts), 1));
    std::printf("  histogram    from mm, vertices\n");
    for (std::size_t i = 0; i < kBins && histogram.width > 0; ++i) {
        const auto count = static_cast<double>(histogram.counts[i]);
        const auto bar = static_cast<std::size_t>(std::ceil(kLongest * count / most));
        const std::string from = briefNumber(histogram.from + static_cast<double>(i) * histogram.width);
        std::printf("  %10s %9lld %s\n", from.c_str(), static_cast<long long>(histogram.counts[i]),
                    std::string(bar, '#').c_str());
    }
}

void printText(const CompareOptions& options, const SurfaceDistance& distance) {
    const ValueStatistics& statistics = distance.signedStatistics;
    std::printf("%s against %s: distances of %s in mm, positive where they lie outside the second surface\n",
                options.mesh.c_str(), options.other.c_str(),
                countOf(static_cast<std::uint64_t>(statistics.count), "vertex").c_str());
    if (distance.alignment) {
        printAlignment(*distance.alignment);
    }
    std::printf("  mean         %s, by area %s; of the amounts %s; RMS %s\n", briefNumber(statistics.mean).c_str(),
                briefNumber(statistics.areaWeightedMean).c_str(), briefNumber(distance.absoluteStatistics.mean).c_str(),
                briefNumber(distance.rms).c_str());
    std::printf("  range        %s to %s\n", briefNumber(statistics.smallest).c_str(),
                briefNumber(statistics.largest).c_str());
    std::printf("  percentiles  %s\n", joined(statistics).c_str());
    std::printf("  volume       %s cubic mm between them outside the second surface, %s inside it\n",
                briefNumber(distance.volumeOutside).c_str(), briefNumber(distance.volumeInside).c_str());
    if (distance.enclosedDifference) {
        std::printf("               the first encloses %s cubic mm more than the second\n",
                    briefNumber(*distance.enclosedDifference).c_str());
    }
    printHistogram(histogramOf(distance));
}

Json statisticsJson(const ValueStatistics& statistics) {
    return {{"mean", jsonOf(statistics.mean)},
            {"areaMean", jsonOf(statistics.areaWeightedMean)},
            {"smallest", jsonOf(statistics.smallest)},
            {"largest", jsonOf(statistics.largest)},
            {"percentiles", statistics.percentiles}};
}

Json alignmentJson(const Alignment& alignment) {
    Json turn = Json::array();
    for (const Vector3<double>& row : alignment.motion.turn) {
        turn.push_back({row.x, row.y, row.z});
    }
    const Vector3<double>& shift = alignment.motion.shift;
    return {{"turn", turn},
            {"shift", {shift.x, shift.y, shift.z}},
            {"degrees", alignment.motion.angle()},
            {"steps", alignment.steps},
            {"hasSettled", alignment.hasSettled},
            {"rmsBefore", alignment.rmsBefore},
            {"rmsAfter", alignment.rmsAfter},
            {"used", alignment.used}};
}

void printJson(const CompareOptions& options, const SurfaceDistance& distance) {
    Json object = {{"schema", "talvek-compare"}, {"version", kSchemaVersion}};
    object["first"] = options.mesh;
    object["second"] = options.other;
    object["vertices"] = distance.signedStatistics.count;
    object["distance"] = statisticsJson(distance.signedStatistics);
    object["amount"] = statisticsJson(distance.absoluteStatistics);
    object["rms"] = jsonOf(distance.rms);
    object["volumeOutside"] = jsonOf(distance.volumeOutside);
    object["volumeInside"] = jsonOf(distance.volumeInside);
    if (distance.enclosedDifference) {
        object["enclosedDifference"] = jsonOf(*distance.enclosedDifference);
    }
    if (distance.alignment) {
        object["alignment"] = alignmentJson(*distance.alignment);
    }
    const Histogram histogram = histogramOf(distance);
    object["histogram"] = {{"from", histogram.from}, {"width", histogram.width}, {"counts", histogram.counts}};
    std::printf("%s\n", object.dump(2).c_str());
}

void writeColoured(const CompareOptions& options, const Object3D& mesh, const SurfaceDistance& distance) {
    const ChangeScale scale(distance.distances, paletteNamed(options.palette), std::nullopt);
    const std::vector<float> values(distance.distances.begin(), distance.distances.end());
    writePlySurface(
        {mesh, "distance to the compared surface", values, {{"distance_mm", values}}, coloursOf(values, scale)},
        options.ply);
}

int compareCommand(const CompareOptions& options) {
    if (!options.ply.empty() && (isSameFile(options.ply, options.mesh) || isSameFile(options.ply, options.other))) {
        throw Failure(kExitUsage, options.ply + ": a mesh is not written over itself; choose another name");
    }
    const std::unique_ptr<Object3D> mesh = readMesh(options.mesh);
    const SurfaceDistance distance = measureDistance(*mesh, *readMesh(options.other), options.wantsAlignment);
    if (!options.ply.empty()) {
        writeColoured(options, *mesh, distance);
    }
    options.asJson ? printJson(options, distance) : printText(options, distance);
    if (distance.alignment && !distance.alignment->hasSettled) {
        printWarning("the alignment has not settled; lay the meshes roughly on each other first");
    }
    return kExitDone;
}

}  // namespace

void addCompareCommand(CommandSet& commands) {
    const auto options = std::make_shared<CompareOptions>();
    CLI::App& command = commands.add("compare", "Measure how far one surface lies from another",
                                     [options] { return compareCommand(*options); });
    addFileArgument(command, options->mesh, "A", meshArgumentText("Mesh whose vertices are measured"));
    addFileArgument(command, options->other, "B", meshArgumentText("Mesh to whose surface they are measured"));
    command.add_flag("--align", options->wantsAlignment,
                     "Turn and shift A onto B first; they roughly lie there already");
    command.add_option("--ply", options->ply, "Write A, moved where it was, with its distances and their colours")
        ->type_name("FILE");
    command.add_option("--palette", options->palette, "stone (default) or viridis")->type_name("NAME");
    command.add_flag("--json", options->asJson, "Print one JSON object");
}

}  // namespace talvek::host
