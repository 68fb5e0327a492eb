#pragma once

#include <cmath>

namespace talvek::exact {

/// As C's pow.
inline double power(double base, double exponent) {
    return std::pow(base, exponent);
}

}  // namespace talvek::exact
