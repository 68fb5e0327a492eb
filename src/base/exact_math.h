#pragma once

#include <cmath>

namespace talvek::exact {

/// As C's pow.
inline double power(double base, double exponent) {
    return std::pow(base, exponent);
}

/// As C's acos.
inline double arcCosine(double x) {
    return std::acos(x);
}

/// As C's atan2.
inline double arcTangent2(double y, double x) {
    return std::atan2(y, x);
}

/// As C's atan2f.
inline float arcTangent2f(float y, float x) {
    return std::atan2(y, x);
}

/// As C's logf.
inline float logarithmf(float x) {
    return std::log(x);
}

}  // namespace talvek::exact
