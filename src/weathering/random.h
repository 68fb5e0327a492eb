// The library's own random numbers: the same sequence in every process and on every platform.
#pragma once

#include <cstdint>

namespace talvek {

/// A linear congruential generator of numbers from 0 to kLargest.
class RandomGenerator {
  public:
    static constexpr std::int32_t kLargest = 32767;

    std::int32_t next() {
        constexpr std::uint32_t kMultiplier = 214013;
        constexpr std::uint32_t kIncrement = 2531011;
        state_ = state_ * kMultiplier + kIncrement;
        return static_cast<std::int32_t>((state_ >> 16) & kLargest);
    }

  private:
    std::uint32_t state_ = 1;
};

/// The process's one generator. It is never seeded: a second run goes on where the first one stopped.
RandomGenerator& randomGenerator();

}  // namespace talvek
