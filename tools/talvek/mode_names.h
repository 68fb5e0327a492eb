// How messages call operating modes and weathering models.
#pragma once

#include <cstdint>
#include <string>

namespace talvek::host {

/// "mode 2 (qemscan)"
std::string modeName(std::int32_t mode);

/// "model 3 (acid-rain)"; without the name where the mode does not have the model.
std::string modelName(std::int32_t mode, std::int32_t model);

/// The models of a mode: "models are 1 (so2), 2 (so2-no2), 3 (acid-rain)".
std::string modelsOf(std::int32_t mode);

bool isDefinedModel(std::int32_t mode, std::int32_t model);

}  // namespace talvek::host
