// Normally distributed offsets, drawn by the polar method of Marsaglia and Bray.
#pragma once

namespace talvek {

/// A third of the normally distributed value that a point (u, v) of the unit circle's inside gives, where `squares` is
/// u * u + v * v. Not a number when `squares` is 0.
float normalThird(float u, float squares);

/// Draws an offset from the process's generator. Its standard deviation is sigma / 3, so that nearly all offsets lie
/// within mean +- sigma.
double gaussianOffset(double mean, double sigma);

}  // namespace talvek
