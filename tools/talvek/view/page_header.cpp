#include "talvek/view/page_header.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <nlohmann/json.hpp>

#include "talvek/support/messages.h"
#include "talvek/support/paths.h"
#include "weathering/mineral_classes.h"

namespace talvek::host {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::int32_t kLastMineral = 20;

Json blockJson(const StoredBlock& block) {
    return {{"width", block.width}, {"escapes", block.escapes}, {"bytes", block.piece.size}};
}

Json frameJson(const StoredFrame& frame) {
    Json references = Json::array();
    Json weights = Json::array();
    for (const Reference& reference : frame.coded.references) {
        references.push_back(reference.frame);
        weights.push_back(reference.weight);
    }
    return {{"epoch", frame.surface}, {"frame", frame.coded.frame}, {"references", references},
            {"weights", weights},     {"checksum", frame.checksum}, {"block", blockJson(frame.block)}};
}

Json epochJson(const EpochRow& row, const std::string& date) {
    Json figures = Json::object();
    for (const NamedFigure& each : row.figures) {
        figures[each.key] = {{"value", each.value}, {"text", each.text}};
    }
    return {{"number", row.epoch}, {"figures", figures}, {"date", date}};
}

/// What is said of a vertex on each class of the map.
Json mineralsJson() {
    Json names = Json::array();
    for (std::int32_t mineral = 0; mineral <= kLastMineral; ++mineral) {
        names.push_back(std::to_string(mineral) + " × " + briefNumber(static_cast<double>(mineralFactor(mineral))));
    }
    return names;
}

/// Colours from the scale's beginning to its end, two hexadecimal digits for each of red, green and blue.
std::string coloursOf(const ChangeScale& scale) {
    constexpr int kSteps = 256;
    std::string text;
    for (int step = 0; step < kSteps; ++step) {
        const ColourBytes colour = bytesOf(scale.colourAt(step / (kSteps - 1.0)));
        char digits[8];
        std::snprintf(digits, sizeof digits, "%02x%02x%02x", colour.red, colour.green, colour.blue);
        text += digits;
    }
    return text;
}

Json palettesJson(const CodedRun& run) {
    Json all = Json::array();
    for (const PalettePair& pair : palettes()) {
        all.push_back({{"name", pair.name}, {"colours", coloursOf(scaleOf(run, pair))}});
    }
    return all;
}

/// Nothing in it may end the element that it stands in.
std::string inScript(std::string json) {
    for (std::size_t at = json.find('<'); at != std::string::npos; at = json.find('<', at)) {
        json.replace(at, 1, "\\u003c");
    }
    return json;
}

}  // namespace

std::string pageTitle(const RunSeries& series) {
    return nameOf(pathOf(series.source()).filename());
}

std::string pageHeader(const RunSeries& series, const CodedRun& run, const std::vector<EpochRow>& rows) {
    const ChangeScale scale = scaleOf(run, palettes().front());
    Json header = {{"version", 1},
                   {"mesh", pageTitle(series)},
                   {"kind", nameOf(scale.kind())},
                   {"isClosed", run.isClosed()},
                   {"vertices", run.vertices},
                   {"faces", run.faces},
                   {"plannedEpochs", series.numEpochs()},
                   {"scale", {scale.range().from, scale.range().to}},
                   {"palettes", palettesJson(run)},
                   {"faceBlock", blockJson(run.faceBlock)}};
    header["mode"] = series.mode() != nullptr ? series.mode()->name : "";
    header["model"] = series.model() != nullptr ? series.model()->name : "";
    if (run.mineralBlock) {
        header["minerals"] = mineralsJson();
        header["mineralBlock"] = blockJson(*run.mineralBlock);
    }
    header["frames"] = Json::array();
    std::ranges::transform(run.frames, std::back_inserter(header["frames"]), frameJson);
    header["epochs"] = Json::array();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        header["epochs"].push_back(epochJson(rows[i], series.surfaces()[i].end));
    }
    // Names of files need not be UTF-8.
    return inScript(header.dump(-1, ' ', false, Json::error_handler_t::replace));
}

}  // namespace talvek::host
