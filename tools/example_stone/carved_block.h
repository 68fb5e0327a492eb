// The example stone's surface as a closed triangle mesh, and its OBJ text.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "example_stone/box_sides.h"

namespace talvek::example {

struct Texel {
    double u = 0.0;
    double v = 0.0;
};

/// Indices count from 0.
struct Corner {
    std::uint32_t position = 0;
    std::uint32_t texel = 0;
};

struct StoneMesh {
    std::vector<Vec3> positions;
    std::vector<Texel> texels;
    std::vector<std::array<Corner, 3>> faces;
};

StoneMesh makeCarvedBlock();

/// The mesh as an OBJ file; the same bytes on every platform.
std::string objText(const StoneMesh& mesh);

}  // namespace talvek::example
