#include "mesh/angle_deficit.h"

#include <cmath>

#include "math/exact_math.h"

namespace talvek {

namespace {

/// What one operation can be off, relative to its result.
constexpr double kRounding = 0x1p-53;

/// kFullTurn less the true one.
constexpr double kTurnExcess = 0x1.777a5cf72cecep-23;

/// The arc tangent, off by a few roundings.
double arcTangent(double y, double x) {
    const double t = y / x;
    if (!(std::fabs(t) < 1.0 / 32)) {
        return exact::arcTangent2(y, x);
    }
    const double s = t * t;
    return t - t * s * (1.0 / 3 - s * (1.0 / 5 - s * (1.0 / 7 - s * (1.0 / 9))));
}

}  // namespace

// How far the bounds have to be apart, in units of kRounding, for sides u and v, a third side w between their ends,
// twice the area A and the longest square M; r stands for M / A, which is at least 1, and 1 / r is at most the sine.
//
// The calculated cosine is off by 3 for the inner product over |u| |v|, by 2.5 for each length, by one each for their
// product and the quotient: less than 10.2, and the arc cosine by 10.2 r, where r is below 2^10. The arc cosine's own
// rounding adds 2, and that of the sum, which is below 8, adds 4.
// The complex number is off by 3 |u| |v| in its real part. In its imaginary part, w is off by |u| + |v| + |w| from v -
// u as they are, the outer product v x w by another 2.9 |v| |w|, its length by 2.6 of itself: 8.6 M in all. Together
// they turn the number by less than 9.2 r. Each multiplication turns it by less than 2.3. That makes 19.4 r + 8.3 for
// each angle. The arc tangent and the last difference add less than 16, once. The bounds have a quarter more than that.
AngleDeficit AngleDeficitFinder::find() const {
    constexpr double kLargestRatio = 1024;
    constexpr double kLargestSquare = 0x1p60;
    // Areas up to here are not what was calculated.
    constexpr double kSmallestArea = 1.0e-7F;
    constexpr int kMostAngles = 12;
    const bool isOrdinary = count_ <= kMostAngles && longestSquare_ < kLargestSquare && smallestArea_ > kSmallestArea &&
                            smallestArea_ * kLargestRatio > longestSquare_;
    // Each angle lies between 0 and a half turn, so none passes two multiples of one; between one and two and a half
    // multiples, on the right side, lies what is near a full turn.
    const bool isNearFullTurn = real_ > 0 && (halfTurns_ == 1 || halfTurns_ == 2);
    if (!isOrdinary || !isNearFullTurn || !std::isfinite(real_) || !std::isfinite(imaginary_)) {
        return {};
    }
    const double deficit = kTurnExcess - arcTangent(imaginary_, real_);
    const double ratio = longestSquare_ / smallestArea_;
    const double bound = kRounding * (count_ * (24.5 * ratio + 11) + 20);
    return {deficit - bound, deficit + bound};
}

}  // namespace talvek
