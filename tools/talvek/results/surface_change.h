// How a run has changed the surface.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace talvek::host {

struct SurfaceChange {
    /// Vertices of the last surface.
    std::int64_t vertices = 0;
    /// Those of them without a finite position, and those of the first surface.
    std::int64_t notFinite = 0;
    std::int64_t notFiniteBefore = 0;
    /// How far vertices with a finite position lie from where they began, in millimetres.
    double mean = 0;
    double largest = 0;
    /// Whether both surfaces have the same vertices. There are no displacements otherwise.
    bool isByVertex = false;
};

/// Compares the first surface with the last one; nothing when one does not load.
std::optional<SurfaceChange> compareSurfaces(const std::string& first, const std::string& last);

/// A sentence about the vertices that have no finite position; empty when there are none.
std::string notFiniteText(const SurfaceChange& change, bool isSmoothed);

}  // namespace talvek::host
