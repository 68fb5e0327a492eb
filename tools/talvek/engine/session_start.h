// How a run's session begins: from defaults, or from a parameter file. Nothing but the library's exported functions is
// used.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "talvek.h"
#include "talvek/plan/run_options.h"

namespace talvek::host {

/// An epoch as the interface gives it.
struct Epoch {
    std::uint32_t days;
    std::array<float, TALVEK_EPOCH_PARAMS> environment;
};

/// Throws Failure with the message unless a function of the library has returned TALVEK_OK.
void require(std::int32_t resultCode, const std::string& message);

Epoch readEpoch(std::uint32_t number);

/// Sets mode, model and the number of epochs, and creates the parameters. Throws Failure.
void startSession(const RunOptions& options);

}  // namespace talvek::host
