// How a run has changed the surface.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "talvek/results/displacement.h"

namespace talvek::host {

struct SurfaceChange {
    /// Vertices of the last surface.
    std::int64_t vertices = 0;
    /// Those of them without a finite position, and those of the first surface.
    std::int64_t notFinite = 0;
    std::int64_t notFiniteBefore = 0;
    /// Whether both surfaces have the same vertices and faces. There are no displacements otherwise.
    bool isByVertex = false;
    /// How far vertices lie from where they began, and how far along the normal they had there.
    ValueStatistics distance;
    ValueStatistics displacement;
    double areaBefore = 0;
    double areaAfter = 0;
    /// Of closed surfaces.
    std::optional<double> volumeBefore;
    std::optional<double> volumeAfter;
    /// Sentences about places where the surface has moved too far.
    std::vector<std::string> flaws;
};

/// Compares the first surface with the last one; nothing when one does not load.
std::optional<SurfaceChange> compareSurfaces(const std::string& first, const std::string& last);

/// A sentence about the vertices that have no finite position; empty when there are none.
std::string notFiniteText(const SurfaceChange& change, bool isSmoothed);

/// What the change is, in sentences: how far, in which direction, and what became of the area and the volume.
std::vector<std::string> changeTexts(const SurfaceChange& change);

}  // namespace talvek::host
