// What the triangles around vertices add up to, calculated for the rings of many vertices at a time: the cotangent
// weights, the area and the angle deficit of M. Meyer, M. Desbrun, P. Schroeder, A. H. Barr: Discrete
// Differential-Geometry Operators for Triangulated 2-Manifolds, Visualization and Mathematics III, 2003. Where they
// take a mixed area, a third of the ring's area stands here.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "mesh/angle_deficit.h"
#include "mesh/vector3.h"

namespace talvek {

struct RingSums {
    double doubleArea = 0;
    Vector3<double> cotangentWeighted = {0, 0, 0};
    /// What the angles lack of a full turn lies between these.
    AngleDeficit deficit;
};

/// Takes rings until it is full, then sums up each of them. Between two neighbours in a row and the vertex lies a
/// triangle; first the terms of all triangles are calculated, side by side, then they are added in the order of each
/// ring.
class RingTerms {
  public:
    void clear();
    bool hasRoomFor(std::size_t ringSize) const { return count_ == 0 || count_ + ringSize <= kTriangles; }
    /// Adds the ring of a vertex, which is not empty. Throws std::bad_alloc.
    void add(const float* positions, std::int32_t vertex, std::span<const std::int32_t> ring);
    /// Has to be called before anything is asked for.
    void calculate();

    /// The sums of the ring whose first triangle is `first`: counted from 0 through all rings since the last clear.
    RingSums sums(std::size_t first, std::size_t ringSize) const;

    /// What the angles of a ring lack of a full turn, as calculated from the arc cosine of each.
    double deficit(std::size_t first, std::size_t ringSize);

  private:
    static constexpr std::size_t kTriangles = 512;

    /// A component or term of every triangle.
    using Column = std::vector<double>;
    using Vectors = std::array<Column, 3>;

    void reserve(std::size_t triangles);

    std::size_t count_ = 0;
    std::size_t capacity_ = 0;
    /// From the neighbours to the vertex, and from the second neighbour to the first.
    Vectors fromFirst_, fromSecond_, between_;
    /// Twice the area, the cotangents at the neighbours, the inner product of the sides at the vertex, the square of
    /// the longest side.
    Column doubleAreas_, firstCotangents_, secondCotangents_, innerProducts_, longestSquares_;
    /// The angles of one ring.
    Column angles_;
};

}  // namespace talvek
