// How a surface is curved at each of its vertices, after M. Meyer, M. Desbrun, P. Schroeder, A. H. Barr: Discrete
// Differential-Geometry Operators for Triangulated 2-Manifolds, Visualization and Mathematics III, 2003: the mean
// curvature from cotangent weights, the Gaussian curvature from the angle deficit, both over a third of the ring's area
// in place of their mixed area.
#pragma once

#include <cstdint>
#include <vector>

#include "mesh/object3d.h"
#include "mesh/one_rings.h"
#include "mesh/ring_terms.h"

namespace talvek {

/// Throws the text of a message as const char* for a null mesh, one without faces and one without vertices, vertex
/// normals or vertex index.
void requireCurvableMesh(const Object3D* mesh);

/// Estimates the curvature of a triangle mesh at its vertices. Curvatures are in 1 / mm; on a convex surface with
/// outward normals the mean curvature is positive.
class ShapeIndex {
  public:
    enum class History : bool { kForgotten, kKept };

    /// Collects and orders the one-rings of a mesh, which has to outlive this object and to keep its faces: only its
    /// positions and normals may change. Vertex indices have to lie in [0, V). Throws as requireCurvableMesh does;
    /// throws std::bad_alloc.
    explicit ShapeIndex(Object3D* mesh, History history = History::kKept);

    /// Replaces the mesh's curvature arrays by those of its present positions and vertex normals. A vertex with fewer
    /// than three neighbours, with a Gaussian curvature near 0 or with H^2 < K gets the shape index 0.5 and curvatures
    /// of 0, even where it is curved in one direction. Throws std::bad_alloc.
    void compute();

    /// Replaces the mean and the Gaussian curvature alone, by what compute would put there. Throws std::bad_alloc.
    void computeMeanAndGaussian();

    /// The shape indices of all computations so far, V from each: empty when the history is forgotten. Vertices with
    /// fewer than three neighbours stand here with 1.
    const std::vector<float>& shapeIndexList() const { return shapeIndexList_; }

  private:
    template <typename Use>
    void forEachVertex(Use use) const;
    std::int32_t addRings(RingTerms& terms, std::int32_t first) const;

    std::vector<float> shapeIndexList_;
    OneRings rings_;
    Object3D* mesh_;
    History history_;
};

}  // namespace talvek
