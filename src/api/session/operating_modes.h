// The operating modes and their weathering models: what sets them apart, and what they are called.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "talvek.h"

namespace talvek {

struct WeatheringModel {
    /// Empty where the mode does not have the model.
    std::string_view name;
    /// What the run log says.
    std::string_view line;
};

/// By number.
using WeatheringModels = std::array<WeatheringModel, TALVEK_MODEL_ACID_RAIN + 1>;

struct OperatingMode {
    std::string_view name;
    /// What the run log says.
    std::string_view line;
    /// Whether the mode looks up a mineral map, and so reads the mesh's texture coordinates.
    bool needsMap;
    /// Whether the frames have the mesh's own vertices and faces.
    bool keepsVertices;
    /// Whether offsets are prescribed, rather than found from the material and the environment.
    bool isOffsetting;
    const WeatheringModels* models;
};

// The missing full stop has always been missing.
inline constexpr WeatheringModels kOffsettingModels = {{
    {"constant", "Weathering model: Constant offsetting\n"},
    {"random", "Weathering model: Random offsetting.\n"},
    {"smoothing", "Weathering model: Smoothing/Roughening.\n"},
    {},
}};

inline constexpr WeatheringModels kRateModels = {{
    {},
    {"so2", "Weathering model: Dry deposition of crust due to SO2.\n"},
    {"so2-no2", "Weathering model: Dry deposition of crust due to SO2+NO2.\n"},
    {"acid-rain", "Weathering model: Recession by acid rain due to SO2+NO2+CO2.\n"},
}};

/// By number.
inline constexpr std::array<OperatingMode, TALVEK_MODE_GRAIN_WEAVER + 1> kOperatingModes = {{
    {.name = "offsetting",
     .line = "Operating mode: Mesh Offsetting.\n",
     .needsMap = false,
     .keepsVertices = true,
     .isOffsetting = true,
     .models = &kOffsettingModels},
    {.name = "mesh",
     .line = "Operating mode: Mesh Data only.\n",
     .needsMap = false,
     .keepsVertices = true,
     .isOffsetting = false,
     .models = &kRateModels},
    {.name = "qemscan",
     .line = "Operating mode: Mesh & QEMSCAN Mineral Data.\n",
     .needsMap = true,
     .keepsVertices = false,
     .isOffsetting = false,
     .models = &kRateModels},
    {.name = "grain-weaver",
     .line = "Operating mode: Mesh & Grain-Weaver Mineral Data.\n",
     .needsMap = true,
     .keepsVertices = true,
     .isOffsetting = false,
     .models = &kRateModels},
}};

/// Null for a number that no mode has.
constexpr const OperatingMode* operatingMode(std::int32_t number) {
    const auto index = static_cast<std::size_t>(number);
    return index < kOperatingModes.size() ? &kOperatingModes[index] : nullptr;
}

/// Null for a number that no model of the mode has.
constexpr const WeatheringModel* weatheringModel(const OperatingMode& mode, std::int32_t number) {
    const auto index = static_cast<std::size_t>(number);
    return index < mode.models->size() && !(*mode.models)[index].name.empty() ? &(*mode.models)[index] : nullptr;
}

}  // namespace talvek
