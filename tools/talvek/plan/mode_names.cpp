#include "talvek/plan/mode_names.h"

#include <array>

#include "talvek.h"

namespace talvek::host {

namespace {

constexpr std::array<const char*, 4> kModes = {"offsetting", "mesh", "qemscan", "grain-weaver"};
using Models = std::array<const char*, 4>;
constexpr Models kOffsettingModels = {"constant", "random", "smoothing", nullptr};
constexpr Models kWeatheringModels = {nullptr, "so2", "so2-no2", "acid-rain"};

const char* nameOfModel(std::int32_t mode, std::int32_t model) {
    const Models& models = mode == TALVEK_MODE_OFFSETTING ? kOffsettingModels : kWeatheringModels;
    const auto index = static_cast<std::size_t>(model);
    return index < models.size() ? models[index] : nullptr;
}

std::string numberAndName(std::int32_t number, const char* name) {
    return std::to_string(number) + (name != nullptr ? " (" + std::string(name) + ")" : "");
}

}  // namespace

std::string modeName(std::int32_t mode) {
    const auto index = static_cast<std::size_t>(mode);
    return "mode " + numberAndName(mode, index < kModes.size() ? kModes[index] : nullptr);
}

std::string modelName(std::int32_t mode, std::int32_t model) {
    return "model " + numberAndName(model, nameOfModel(mode, model));
}

std::string modelsOf(std::int32_t mode) {
    std::string text;
    for (std::int32_t model = 0; model <= TALVEK_MODEL_ACID_RAIN; ++model) {
        if (isDefinedModel(mode, model)) {
            text += (text.empty() ? "models are " : ", ") + numberAndName(model, nameOfModel(mode, model));
        }
    }
    return text;
}

bool isDefinedModel(std::int32_t mode, std::int32_t model) {
    return nameOfModel(mode, model) != nullptr;
}

bool usesEpochValue(std::int32_t mode, std::int32_t model, std::size_t slot) {
    if (mode != TALVEK_MODE_OFFSETTING) {
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
