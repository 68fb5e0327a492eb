// By how much the angles around a vertex fall short of a full turn (its angle deficit, which the theorem of Gauss and
// Bonnet makes the Gaussian curvature of the area around it), between bounds that are quick to find.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>

namespace talvek {

/// A single-precision value on purpose, in double-precision arithmetic.
inline constexpr double kFullTurn = 6.2831855F;

struct AngleDeficit {
    double low = std::numeric_limits<double>::quiet_NaN();
    double high = std::numeric_limits<double>::quiet_NaN();
};

/// Adds angles as complex numbers, so that one arc tangent does for all arc cosines of a ring. What it bounds is not
/// the deficit of the exact angles but the one calculated from them: for each angle a cosine in double precision,
/// rounded at every step, and its arc cosine rounded to double precision; these added in order; the sum taken from
/// kFullTurn.
class AngleDeficitFinder {
  public:
    /// An angle between two sides of a triangle: their inner product, twice the triangle's area, at least as calculated
    /// from one of them and the third side, and the square of the longest of the three sides.
    void add(double innerProduct, double doubleArea, double longestSquare) {
        const double newReal = real_ * innerProduct - imaginary_ * doubleArea;
        const double newImaginary = imaginary_ * innerProduct + real_ * doubleArea;
        halfTurns_ += (newImaginary < 0) != (imaginary_ < 0) ? 1 : 0;
        real_ = newReal;
        imaginary_ = newImaginary;
        longestSquare_ = std::max(longestSquare_, longestSquare);
        smallestArea_ = std::min(smallestArea_, doubleArea);
        ++count_;
    }

    /// Not-a-numbers when the angles are too many, too large, too small or far from a full turn.
    AngleDeficit find() const;

  private:
    double real_ = 1;
    double imaginary_ = 0;
    double longestSquare_ = 0;
    double smallestArea_ = std::numeric_limits<double>::infinity();
    int halfTurns_ = 0;
    int count_ = 0;
};

}  // namespace talvek
