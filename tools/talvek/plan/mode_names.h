// Operating modes and weathering models: how messages call them, and what belongs together.
#pragma once

#include <cstddef>
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

/// Whether a model reads the value in a slot of an epoch's parameters. All weathering models are taken to read all.
bool usesEpochValue(std::int32_t mode, std::int32_t model, std::size_t slot);

}  // namespace talvek::host
