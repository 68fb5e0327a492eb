#include "talvek/results/run_record_json.h"

#include <cmath>
#include <limits>
#include <stdexcept>

#include "talvek/plan/run_options.h"

namespace talvek::host {

namespace {

using nlohmann::json;

constexpr const char* kSchema = "talvek-run";
constexpr const char* kOutcomes[] = {"unfinished", "whole", "cancelled", "failed"};
constexpr const char* kEnvironmentKeys[TALVEK_EPOCH_PARAMS] = {"so2", "no2", "rv", "rph"};
constexpr const char* kOffsetKeys[TALVEK_EPOCH_PARAMS] = {"offset", "mean", "sigma", "smooth"};

const char* const* valueKeys(bool isOffsetting) {
    return isOffsetting ? kOffsetKeys : kEnvironmentKeys;
}

/// Members that say nothing are left out.
void addUnlessEmpty(Json& object, const char* key, const std::string& text) {
    if (!text.empty()) {
        object[key] = text;
    }
}

void addFile(Json& object, const char* key, const RecordedFile& file) {
    if (!file.path.empty()) {
        object[key] = jsonOf(file);
    }
}

void addFigures(Json& object, const char* key, const std::optional<SurfaceFigures>& figures) {
    if (figures) {
        object[key] = jsonOf(*figures);
    }
}

void addInputs(Json& object, const RunRecord& record) {
    object["source"] = jsonOf(record.source);
    addFile(object, "engineMesh", record.engineMesh);
    addFile(object, "mineralMap", record.mineralMap);
    addFile(object, "parameterFile", record.parameterFile);
    addFile(object, "epochTable", record.epochTable);
    object["unit"] = record.unit;
    object["offset"] = {jsonOf(record.offset[0]), jsonOf(record.offset[1]), jsonOf(record.offset[2])};
}

void addOutputs(Json& object, const RunRecord& record) {
    addFile(object, "inputFrame", record.inputFrame);
    addFile(object, "firstSurface", record.firstSurface);
    addFile(object, "lastSurface", record.lastSurface);
    addFile(object, "log", record.log);
    addFigures(object, "figuresBefore", record.figuresBefore);
    addFigures(object, "figures", record.figures);
    object["warnings"] = record.warnings;
}

/// The number that null stands for cannot be told any more.
double numberIn(const json& value) {
    return value.is_null() ? std::numeric_limits<double>::quiet_NaN() : value.get<double>();
}

std::string textIn(const json& object, const char* key) {
    return object.value(key, std::string());
}

RecordedFile fileIn(const json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end()) {
        return {};
    }
    return {found->at("path").get<std::string>(), found->value("bytes", std::uint64_t{0}), textIn(*found, "sha256")};
}

std::optional<SurfaceFigures> figuresIn(const json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end()) {
        return std::nullopt;
    }
    SurfaceFigures figures;
    figures.mean = numberIn(found->at("mean"));
    figures.areaWeightedMean = numberIn(found->at("areaWeightedMean"));
    figures.smallest = numberIn(found->at("smallest"));
    figures.largest = numberIn(found->at("largest"));
    for (std::size_t i = 0; i < figures.percentiles.size(); ++i) {
        figures.percentiles[i] = numberIn(found->at("percentiles").at(i));
    }
    figures.area = numberIn(found->at("area"));
    if (found->contains("volume")) {
        figures.volume = numberIn(found->at("volume"));
    }
    return figures;
}

RecordedEpoch epochIn(const json& object, bool isOffsetting) {
    RecordedEpoch epoch;
    epoch.days = numberIn(object.at("days"));
    epoch.start = textIn(object, "start");
    epoch.end = textIn(object, "end");
    epoch.note = textIn(object, "note");
    for (std::size_t slot = 0; slot < epoch.values.size(); ++slot) {
        epoch.values[slot] = numberIn(object.at(valueKeys(isOffsetting)[slot]));
    }
    if (object.contains("delta")) {
        epoch.delta = numberIn(object.at("delta"));
    }
    epoch.frame = fileIn(object, "frame");
    epoch.figures = figuresIn(object, "figures");
    return epoch;
}

RunOutcome outcomeIn(const json& object) {
    const auto text = object.at("outcome").get<std::string>();
    for (std::size_t i = 0; i < std::size(kOutcomes); ++i) {
        if (text == kOutcomes[i]) {
            return static_cast<RunOutcome>(i);
        }
    }
    return RunOutcome::kUnfinished;
}

/// Whether the object is a record, and one that this program knows.
void requireSchema(const json& object) {
    if (textIn(object, "schema") != kSchema) {
        throw std::runtime_error(std::string("there is no \"schema\": \"") + kSchema + "\" in it");
    }
    const int version = object.at("version").get<int>();
    if (version > kRunRecordVersion) {
        throw std::runtime_error("it is of version " + std::to_string(version) +
                                 ", and this program knows versions up to " + std::to_string(kRunRecordVersion) +
                                 "; use a later one");
    }
}

void readInputs(RunRecord& record, const json& object) {
    record.source = fileIn(object, "source");
    record.engineMesh = fileIn(object, "engineMesh");
    record.mineralMap = fileIn(object, "mineralMap");
    record.parameterFile = fileIn(object, "parameterFile");
    record.epochTable = fileIn(object, "epochTable");
    record.unit = textIn(object, "unit");
    for (std::size_t axis = 0; axis < record.offset.size(); ++axis) {
        record.offset[axis] = numberIn(object.at("offset").at(axis));
    }
}

void readOutputs(RunRecord& record, const json& object) {
    record.inputFrame = fileIn(object, "inputFrame");
    record.firstSurface = fileIn(object, "firstSurface");
    record.lastSurface = fileIn(object, "lastSurface");
    record.log = fileIn(object, "log");
    record.figuresBefore = figuresIn(object, "figuresBefore");
    record.figures = figuresIn(object, "figures");
    record.warnings = object.value("warnings", std::vector<std::string>());
}

}  // namespace

Json jsonOf(double value) {
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}

Json jsonOf(const RecordedFile& file) {
    Json object = {{"path", file.path}, {"bytes", file.bytes}};
    addUnlessEmpty(object, "sha256", file.sha256);
    return object;
}

Json jsonOf(const SurfaceFigures& figures) {
    Json object = {{"mean", jsonOf(figures.mean)},         {"areaWeightedMean", jsonOf(figures.areaWeightedMean)},
                   {"smallest", jsonOf(figures.smallest)}, {"largest", jsonOf(figures.largest)},
                   {"percentiles", Json::array()},         {"area", jsonOf(figures.area)}};
    for (const double percentile : figures.percentiles) {
        object["percentiles"].push_back(jsonOf(percentile));
    }
    if (figures.volume) {
        object["volume"] = jsonOf(*figures.volume);
    }
    return object;
}

Json jsonOf(const RecordedEpoch& epoch, std::size_t number, bool isOffsetting) {
    Json object = {{"number", number}, {"days", jsonOf(epoch.days)}};
    addUnlessEmpty(object, "start", epoch.start);
    addUnlessEmpty(object, "end", epoch.end);
    addUnlessEmpty(object, "note", epoch.note);
    for (std::size_t slot = 0; slot < epoch.values.size(); ++slot) {
        object[valueKeys(isOffsetting)[slot]] = jsonOf(epoch.values[slot]);
    }
    if (epoch.delta) {
        object["delta"] = jsonOf(*epoch.delta);
    }
    addFile(object, "frame", epoch.frame);
    addFigures(object, "figures", epoch.figures);
    return object;
}

Json materialJson(const std::array<double, TALVEK_MATERIAL_PARAMS>& material) {
    Json object;
    for (std::size_t i = 0; i < material.size(); ++i) {
        object[kMaterialNames[i]] = jsonOf(material[i]);
    }
    return object;
}

Json jsonOf(const RunRecord& record) {
    Json object = {{"schema", kSchema}, {"version", record.version}, {"program", record.program}};
    addUnlessEmpty(object, "begun", record.begun);
    addUnlessEmpty(object, "ended", record.ended);
    object["outcome"] = kOutcomes[static_cast<std::size_t>(record.outcome)];
    addInputs(object, record);
    object["mode"] = record.mode;
    object["model"] = record.model;
    object["material"] = materialJson(record.material);
    object["epochs"] = Json::array();
    for (std::size_t i = 0; i < record.epochs.size(); ++i) {
        object["epochs"].push_back(jsonOf(record.epochs[i], i + 1, record.mode == TALVEK_MODE_OFFSETTING));
    }
    addOutputs(object, record);
    return object;
}

RunRecord runRecordOf(const json& object) {
    requireSchema(object);
    RunRecord record;
    record.version = object.at("version").get<int>();
    record.program = textIn(object, "program");
    record.begun = textIn(object, "begun");
    record.ended = textIn(object, "ended");
    record.outcome = outcomeIn(object);
    readInputs(record, object);
    record.mode = object.at("mode").get<std::int32_t>();
    record.model = object.at("model").get<std::int32_t>();
    for (std::size_t i = 0; i < record.material.size(); ++i) {
        record.material[i] = numberIn(object.at("material").at(kMaterialNames[i]));
    }
    for (const json& epoch : object.at("epochs")) {
        record.epochs.push_back(epochIn(epoch, record.mode == TALVEK_MODE_OFFSETTING));
    }
    readOutputs(record, object);
    return record;
}

}  // namespace talvek::host
