// One complete weathering run.
#pragma once

#include <cstdint>

namespace talvek {

/// Runs the session's simulation, see talvekStart. Throws nothing.
std::int32_t runSimulation() noexcept;

}  // namespace talvek
