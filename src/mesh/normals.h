// Face normals and vertex normals of a mesh. All sums run in face order in single precision, so that a surface comes
// out the same to the last bit wherever it is computed.
#pragma once

#include "mesh/object3d.h"

namespace talvek {

/// The vertex normals of a mesh, 3V floats: plain averages of the unit normals of the incident faces. The vertex index
/// has to lie in [0, V). `former`, where there is one, are normals that are no longer needed: their block is used
/// again. Throws std::bad_alloc.
HeapArray<float> computeVertexNormals(const Object3D& mesh, HeapArray<float> former = nullptr);

/// The same with the same result, as machines without SSE2 do it.
HeapArray<float> computeVertexNormalsPortably(const Object3D& mesh);

}  // namespace talvek
