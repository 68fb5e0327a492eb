// Noise that is the same on every machine: integer hashes, and arithmetic whose every step the processor rounds
// exactly.
#pragma once

#include <cstdint>

#include "example_stone/box_sides.h"

namespace talvek::example {

/// A random-looking number for a cell of the lattice of unit cubes.
std::uint64_t hashOfCell(std::int64_t x, std::int64_t y, std::int64_t z, std::uint64_t seed);

/// Bits of a hash as a number in [0, 1); `shift` chooses which 21 bits, 0 to 43.
double unitFromHash(std::uint64_t hash, int shift);

/// Smooth noise in [0, 1] with features of about `scale` millimetres.
double valueNoise(const Vec3& point, double scale, std::uint64_t seed);

/// 0 up to `from`, 1 beyond `to`, a smooth step between them.
double smoothStep(double from, double to, double value);

}  // namespace talvek::example
