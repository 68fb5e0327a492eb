// How far a stone surface moves in an epoch.
#pragma once

#include <cstdint>

#include "api/session/parameters.h"

namespace talvek {

/// The signed thickness, in millimetres along the outward normal, by which the surface moves in an epoch: growth of a
/// crust under models 1 (SO2) and 2 (SO2+NO2), recession under model 3 (acid rain), 0 under any other. Divisors of 0
/// are not refused: the result may be infinite or not a number.
double weatheringDelta(const MaterialRecord& material, const EpochRecord& epoch, std::int32_t model);

}  // namespace talvek
