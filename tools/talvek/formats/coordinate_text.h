// Coordinates in text.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "base/number_text.h"

namespace talvek::host {

/// Whether a number is halfway between two floats, or so small that floats have fewer digits there.
inline bool isBetweenFloats(double value) {
    constexpr std::uint64_t kBelowFloat = (std::uint64_t{1} << 29) - 1;
    constexpr std::uint64_t kHalfway = std::uint64_t{1} << 28;
    return (std::bit_cast<std::uint64_t>(value) & kBelowFloat) == kHalfway ||
           (value != 0 && std::fabs(value) < static_cast<double>(std::numeric_limits<float>::min()));
}

/// Reads a number as parseDouble does, so that narrowing it gives what parseFloat reads. The two differ where the text
/// lies next to the middle between two floats, closer than a double can tell: then the value is the double beside the
/// middle.
inline std::size_t parseCoordinate(std::string_view text, double& value) {
    const std::size_t length = parseDouble(text, value);
    if (length > 0 && isBetweenFloats(value)) {
        float once = 0;
        parseFloat(text, once);
        if (static_cast<float>(value) != once) {
            value = std::nextafter(value, static_cast<double>(once));
        }
    }
    return length;
}

}  // namespace talvek::host
