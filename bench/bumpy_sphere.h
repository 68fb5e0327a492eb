// The surface that everything is measured on: closed, of any size, without symmetry, and numbered as a scan is, so that
// neighbours in space lie near each other in memory.
#pragma once

#include <cstdint>
#include <vector>

namespace talvek::bench {

struct Surface {
    /// Three floats per vertex, in millimetres.
    std::vector<float> positions;
    /// Two floats per vertex, in [0, 1].
    std::vector<float> texels;
    /// Three vertex numbers per face, from 0, counter-clockwise from outside.
    std::vector<std::int32_t> faces;
};

/// A sphere of 100 mm with bumps: an octahedron whose edges are cut into `cuts` parts, 4 cuts^2 + 2 vertices and
/// 8 cuts^2 faces, row by row from pole to pole. 500 cuts give 1,000,002 vertices and 2,000,000 faces.
Surface makeBumpySphere(std::int32_t cuts);

}  // namespace talvek::bench
