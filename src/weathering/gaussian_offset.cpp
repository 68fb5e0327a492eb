#include "weathering/gaussian_offset.h"

#include <cmath>

#include "math/exact_math.h"
#include "weathering/random.h"

namespace talvek {

namespace {

/// A number in [-1, 1].
float drawCoordinate() {
    constexpr double kLargest = RandomGenerator::kLargest;
    return static_cast<float>(randomGenerator().next() / kLargest * 2.0 - 1.0);
}

}  // namespace

float normalThird(float u, float squares) {
    return std::sqrt(exact::logarithmf(squares) * -2.0F / squares) * u / 3.0F;
}

double gaussianOffset(double mean, double sigma) {
    for (;;) {
        const float u = drawCoordinate();
        const float v = drawCoordinate();
        const float squares = u * u + v * v;
        if (squares < 1.0F) {
            return static_cast<double>(normalThird(u, squares)) * sigma + mean;
        }
    }
}

}  // namespace talvek
