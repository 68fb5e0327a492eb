#include "mesh/ring_terms.h"

#include <algorithm>
#include <numeric>

#include "math/double_pair.h"
#include "math/exact_math.h"

namespace talvek {

namespace {

using Lanes = DoubleLanes;

/// A single-precision value on purpose.
constexpr double kTiny = 1.0e-7F;

Lanes loadAt(const std::vector<double>& column, std::size_t i) {
    Lanes lanes;
    load(&column[i], lanes);
    return lanes;
}

Vector3<Lanes> loadAt(const std::array<std::vector<double>, 3>& vectors, std::size_t i) {
    return {loadAt(vectors[0], i), loadAt(vectors[1], i), loadAt(vectors[2], i)};
}

void storeAt(std::array<std::vector<double>, 3>& vectors, std::size_t i, const Vector3<double>& v) {
    vectors[0][i] = v.x;
    vectors[1][i] = v.y;
    vectors[2][i] = v.z;
}

}  // namespace

void RingTerms::clear() {
    count_ = 0;
}

void RingTerms::reserve(std::size_t triangles) {
    // The last triangles are calculated together with what lies behind them.
    const std::size_t size = triangles + kDoubleLanes;
    for (Vectors* vectors : {&fromFirst_, &fromSecond_, &between_}) {
        for (Column& column : *vectors) {
            column.resize(size);
        }
    }
    for (Column* column : {&doubleAreas_, &firstCotangents_, &secondCotangents_, &innerProducts_, &longestSquares_}) {
        column->resize(size);
    }
    capacity_ = triangles;
}

void RingTerms::add(const float* positions, std::int32_t vertex, std::span<const std::int32_t> ring) {
    if (count_ + ring.size() > capacity_) {
        reserve(std::max(kTriangles, count_ + ring.size()));
    }
    const Vector3<double> p = tripleAt<double>(positions, vertex);
    const Vector3<double> first = tripleAt<double>(positions, ring.front());
    Vector3<double> a = first;
    storeAt(fromFirst_, count_, p - a);
    const std::size_t last = count_ + ring.size() - 1;
    for (const std::int32_t neighbour : ring.subspan(1)) {
        const Vector3<double> b = tripleAt<double>(positions, neighbour);
        storeAt(between_, count_, a - b);
        storeAt(fromSecond_, count_, p - b);
        ++count_;
        storeAt(fromFirst_, count_, p - b);
        a = b;
    }
    storeAt(between_, last, a - first);
    storeAt(fromSecond_, last, p - first);
    count_ = last + 1;
}

void RingTerms::calculate() {
    for (std::size_t i = 0; i < count_; i += kDoubleLanes) {
        const Vector3<Lanes> fromFirst = loadAt(fromFirst_, i);
        const Vector3<Lanes> fromSecond = loadAt(fromSecond_, i);
        const Vector3<Lanes> between = loadAt(between_, i);
        const Vector3<Lanes> atFirst = cross(fromFirst, between);
        const Vector3<Lanes> atSecond = cross(fromSecond, between);
        const Lanes firstSquare = dot(atFirst, atFirst);
        const Lanes secondSquare = dot(atSecond, atSecond);
        const Lanes secondSize = atLeast(squareRoot(secondSquare), kTiny);
        // Mostly nothing is lost in these products, and both are the same to the last bit.
        const Lanes firstSize =
            areEqual(firstSquare, secondSquare) ? secondSize : atLeast(squareRoot(firstSquare), kTiny);
        const Lanes atVertex = dot(fromFirst, fromSecond);
        const Lanes inFirst = dot(fromFirst, between);
        const Lanes inSecond = dot(fromSecond, between);
        store(&doubleAreas_[i], secondSize);
        store(&firstCotangents_[i], inFirst / firstSize);
        store(&secondCotangents_[i], inSecond / secondSize);
        store(&innerProducts_[i], atVertex);
        store(&longestSquares_[i], larger(larger(atVertex - inFirst, atVertex + inSecond), inSecond - inFirst));
    }
}

RingSums RingTerms::sums(std::size_t first, std::size_t ringSize) const {
    RingSums sums;
    AngleDeficitFinder angles;
    std::size_t before = first + ringSize - 1;
    for (std::size_t i = first; i < first + ringSize; ++i) {
        // At the first neighbour the side between both runs the other way.
        const double weight = secondCotangents_[i] - firstCotangents_[before];
        const Vector3<double> fromFirst = {fromFirst_[0][i], fromFirst_[1][i], fromFirst_[2][i]};
        sums.doubleArea += doubleAreas_[i];
        sums.cotangentWeighted = sums.cotangentWeighted + fromFirst * weight;
        angles.add(innerProducts_[i], doubleAreas_[i], longestSquares_[i]);
        before = i;
    }
    sums.deficit = angles.find();
    return sums;
}

double RingTerms::deficit(std::size_t first, std::size_t ringSize) {
    angles_.resize(ringSize);
    for (std::size_t i = 0; i < ringSize; ++i) {
        const std::size_t at = first + i;
        const Vector3<double> fromFirst = {fromFirst_[0][at], fromFirst_[1][at], fromFirst_[2][at]};
        const Vector3<double> fromSecond = {fromSecond_[0][at], fromSecond_[1][at], fromSecond_[2][at]};
        angles_[i] = innerProducts_[at] / (length(fromFirst) * length(fromSecond));
    }
    exact::arcCosines(angles_);
    return kFullTurn - std::accumulate(angles_.begin(), angles_.end(), 0.0);
}

}  // namespace talvek
