// Taking out of a mesh what no surface needs.
#pragma once

#include <cstdint>

#include "talvek/formats/imported_mesh.h"

namespace talvek::host {

struct CleaningChoice {
    /// Triangles that have two corners in one place, or all three in a line.
    bool degenerate = false;
    /// Triangles on the same three vertices as an earlier one, whichever way round.
    bool doubled = false;
    /// Triangles at edges that have two already, in the order of the file.
    bool nonManifold = false;
    /// Vertices that no triangle names.
    bool isolated = false;
};

struct CleaningCounts {
    std::int64_t degenerate = 0;
    std::int64_t doubled = 0;
    std::int64_t nonManifold = 0;
    std::int64_t isolated = 0;
};

/// Counts all four kinds, each after the ones before it have gone where they were chosen, and removes those.
CleaningCounts cleanMesh(ImportedMesh& mesh, const CleaningChoice& choice);

}  // namespace talvek::host
