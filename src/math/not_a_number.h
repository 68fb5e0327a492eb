// Which of two not-a-numbers an operation hands on depends on how a compiler orders its operands, and with that the
// sign under which the result is printed. Results that are written to files have one sign on every platform instead.
#pragma once

#include <cmath>
#include <limits>

namespace talvek {

/// The value; for any not-a-number the one that arithmetic makes anew, which prints as "-nan".
inline float withOneNan(float value) {
    return std::isnan(value) ? -std::numeric_limits<float>::quiet_NaN() : value;
}

}  // namespace talvek
