// The surfaces of a run one after the other, each with all that can be told of its vertices.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "mesh/shape_index.h"
#include "talvek/results/run_series.h"

namespace talvek::host {

struct ExportFrame {
    SeriesSurface surface;
    /// Positions, vertex normals, mean and Gaussian curvature.
    const Object3D* mesh = nullptr;
    /// Along the first normal, in millimetres: since the beginning, and since the surface before.
    std::vector<float> displacements;
    std::vector<float> deltas;
    /// Empty where there are none.
    std::vector<std::int32_t> minerals;
};

class FrameReader {
  public:
    /// Throws Failure. The series has to outlive this object.
    explicit FrameReader(const RunSeries& series);

    /// The mesh that the run began with.
    const Object3D& first() const { return *first_; }

    /// Reads a surface; surfaces are read in the order of time. What was read before is replaced. Throws Failure.
    const ExportFrame& read(const SeriesSurface& surface);

  private:
    const RunSeries& series_;
    std::unique_ptr<Object3D> first_;
    /// The surface read last. It keeps its faces, so that its one-rings are collected only once.
    std::unique_ptr<Object3D> mesh_;
    std::optional<ShapeIndex> curvature_;
    ExportFrame frame_;
};

}  // namespace talvek::host
