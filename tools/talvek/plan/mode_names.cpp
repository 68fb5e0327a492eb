#include "talvek/plan/mode_names.h"

#include <string_view>

#include "api/session/operating_modes.h"

namespace talvek::host {

namespace {

std::string numberAndName(std::int32_t number, std::string_view name) {
    return std::to_string(number) + (name.empty() ? "" : " (" + std::string(name) + ")");
}

}  // namespace

std::string modeName(std::int32_t mode) {
    const OperatingMode* row = operatingMode(mode);
    return "mode " + numberAndName(mode, row != nullptr ? row->name : "");
}

std::string modelName(std::int32_t mode, std::int32_t model) {
    const OperatingMode* row = operatingMode(mode);
    const WeatheringModel* named = row != nullptr ? weatheringModel(*row, model) : nullptr;
    return "model " + numberAndName(model, named != nullptr ? named->name : "");
}

std::string modelsOf(std::int32_t mode) {
    std::string text;
    std::int32_t number = 0;
    for (const WeatheringModel& model : *operatingMode(mode)->models) {
        if (!model.name.empty()) {
            text += (text.empty() ? "models are " : ", ") + numberAndName(number, model.name);
        }
        ++number;
    }
    return text;
}

bool isDefinedModel(std::int32_t mode, std::int32_t model) {
    const OperatingMode* row = operatingMode(mode);
    return row != nullptr && weatheringModel(*row, model) != nullptr;
}

bool usesEpochValue(std::int32_t mode, std::int32_t model, std::size_t slot) {
    if (!operatingMode(mode)->isOffsetting) {
        return true;
    }
    switch (model) {
        case TALVEK_MODEL_CONSTANT_OFFSET:
            return slot == 0;
        case TALVEK_MODEL_RANDOM_OFFSET:
            return slot == 1 || slot == 2;
        case TALVEK_MODEL_SMOOTHING:
            return slot == 3;
        default:
            return false;
    }
}

}  // namespace talvek::host
