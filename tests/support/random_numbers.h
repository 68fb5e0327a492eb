// Numbers that cover a type's whole range, the same in every run.
#pragma once

#include <bit>
#include <cstdint>
#include <random>

namespace talvek::test {

class RandomNumbers {
  public:
    /// Any float, every bit pattern as likely: not-finite values and denormals among them.
    float anyFloat() { return std::bit_cast<float>(static_cast<std::uint32_t>(engine_())); }
    double anyDouble() { return std::bit_cast<double>(engine_()); }
    /// A float of the size that coordinates have.
    float coordinate(float largest) {
        const auto whole = static_cast<std::int32_t>(static_cast<std::uint32_t>(engine_()));
        return static_cast<float>(whole) / 2147483648.0F * largest;
    }
    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(engine_() % limit); }

  private:
    std::mt19937_64 engine_{20240229};
};

}  // namespace talvek::test
