// What the run log says of the epochs, in all operating modes.
#pragma once

#include <cstdint>

#include "api/session/parameters.h"

namespace talvek {

void reportNumEpochs(std::int32_t numEpochs);

void reportEpochLength(std::int32_t number, const EpochRecord& epoch);

/// The environment of an epoch, its gases in units of 10^-13.
void reportEnvironment(const EpochRecord& epoch);

/// The constant offset of an epoch in the offsetting mode.
void reportOffsetPerDay(const EpochRecord& epoch);

void reportDelta(double delta);

/// Computes the thickness by which the session's model moves the surface in an epoch, and reports it.
double computeAndReportDelta(const EpochRecord& epoch);

}  // namespace talvek
