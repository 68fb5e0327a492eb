// The figures of a surface that a run's record holds.
#pragma once

#include "mesh/object3d.h"
#include "talvek/results/run_record.h"

namespace talvek::host {

/// `first` has vertex normals. Where the surfaces do not have the same vertices, displacements are not a number.
SurfaceFigures figuresOf(const Object3D& first, const Object3D& surface);

}  // namespace talvek::host
