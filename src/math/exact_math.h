// Elementary functions whose results are the same, bit for bit, on every platform: the C libraries differ in the last
// bit of theirs. They use only + - * / and square roots of IEEE doubles, which leave no choice when rounded to nearest.
//
// Every function returns the exact value rounded to nearest, ties to even. An exact value that lies too close to the
// middle between two neighbours for the 95 to 100 bits computed at most is to be expected once in 10^13 arguments.
//
// Special values follow the C standard's Annex F. A NaN result is always the same quiet NaN, with the sign bit clear.
// Neither errno nor the floating-point exception flags mean anything after a call. The caller's floating-point
// environment has to be the default one: rounding to nearest, subnormal numbers not flushed to zero.
#pragma once

#include <span>

namespace talvek::exact {

/// base^exponent, for all doubles. Results too large for a double are infinite, and results too small are rounded to
/// the subnormal numbers or to zero.
///
/// Special values: 1 for an exponent of zero or a base of 1, whatever the other argument, and for a base of -1 with an
/// infinite exponent. Otherwise NaN if an argument is NaN, or for a finite negative base with a finite exponent that is
/// not an integer. Bases of zero and infinity give zero or infinity, negative only for a base with its sign bit set and
/// an odd integer as exponent.
double power(double base, double exponent);

/// The angle in [0, pi] whose cosine is `x`. Positive zero for 1; NaN beyond -1 and 1 and for NaN.
double arcCosine(double x);

/// Replaces every value by its arc cosine.
void arcCosines(std::span<double> values);

/// The angle in [-pi, pi] between the x axis and the point (x, y), with the sign of `y`.
///
/// Special values: a `y` of zero gives zero for an `x` with its sign bit clear (be it zero) and pi for one with its
/// sign bit set. Infinite coordinates stand for directions: one gives that of the axis, two that of the diagonal. NaN
/// if an argument is NaN.
double arcTangent2(double y, double x);

/// The same for floats, as a correctly rounded float.
float arcTangent2f(float y, float x);

/// The natural logarithm of `x`. Minus infinity for zero of either sign; NaN below zero and for NaN.
float logarithmf(float x);

}  // namespace talvek::exact
