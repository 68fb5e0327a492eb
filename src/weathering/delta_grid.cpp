#include "weathering/delta_grid.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "mesh/vector3.h"
#include "weathering/mineral_classes.h"

namespace talvek {

namespace {

/// Looks pixels of a map up; a pixel outside the map has the values of the last one looked up inside.
class PixelSlot {
  public:
    void lookUp(const MineralMap& map, std::int64_t x, std::int64_t y) {
        if (x >= 0 && x < map.width && y >= 0 && y < map.height) {
            std::copy_n(map.pixel(x, y), 3, pixel_);
        }
    }
    float delta(float homogeneousDelta) const {
        return mineralDelta(pixel_[0], pixel_[1], pixel_[2], homogeneousDelta);
    }

  private:
    float pixel_[3] = {};
};

/// The place of a column or row of the grid in the map: a pixel, and how far on the way to the next.
struct MapPlace {
    MapPlace(std::int32_t cell, std::int32_t mapSize) {
        const double place = static_cast<double>(cell) * mapSize / kGridSize;
        pixel = static_cast<std::int64_t>(std::floor(place));
        fraction = place - std::floor(place);
    }
    std::int64_t pixel;
    double fraction;
};

double interpolate(float from, float to, double fraction) {
    return static_cast<double>(to - from) * fraction + static_cast<double>(from);
}

/// The four pixels around a place, each with its slot.
class PixelSquare {
  public:
    double deltaAt(const MineralMap& map, const MapPlace& column, const MapPlace& row, float delta) {
        slot00_.lookUp(map, column.pixel, row.pixel);
        slot10_.lookUp(map, column.pixel + 1, row.pixel);
        slot01_.lookUp(map, column.pixel, row.pixel + 1);
        slot11_.lookUp(map, column.pixel + 1, row.pixel + 1);
        const double top = interpolate(slot00_.delta(delta), slot10_.delta(delta), column.fraction);
        const double bottom = interpolate(slot01_.delta(delta), slot11_.delta(delta), column.fraction);
        return (bottom - top) * row.fraction + top;
    }

  private:
    PixelSlot slot00_, slot10_, slot01_, slot11_;
};

std::unique_ptr<Grid> makeDeltaGrid() {
    return std::make_unique<Grid>(makeImage(kGridSize, kGridSize, 1));
}

}  // namespace

std::unique_ptr<Grid> constantDeltaGrid(double delta) {
    std::unique_ptr<Grid> deltas = makeDeltaGrid();
    std::fill_n(deltas->data.get(), kGridSize * kGridSize, static_cast<float>(delta));
    return deltas;
}

std::unique_ptr<Grid> mineralDeltaGrid(const MineralMap& map, double delta) {
    if (map.channels != 3) {
        return nullptr;
    }
    std::unique_ptr<Grid> deltas = makeDeltaGrid();
    PixelSquare square;
    for (std::int32_t c = 0; c < kGridSize; ++c) {
        const MapPlace column(c, map.width);
        for (std::int32_t r = 0; r < kGridSize; ++r) {
            const MapPlace row(r, map.height);
            *deltas->pixel(c, r) = static_cast<float>(square.deltaAt(map, column, row, static_cast<float>(delta)));
        }
    }
    return deltas;
}

void applyDeltaGrid(Grid* positions, const Grid* normals, const Grid* deltas) {
    if (positions == nullptr || normals == nullptr || deltas == nullptr || positions->channels != 3 ||
        normals->channels != 3 || deltas->channels != 1) {
        return;
    }
    const std::int32_t width = std::min({positions->width, normals->width, deltas->width});
    const std::int32_t height = std::min({positions->height, normals->height, deltas->height});
    for (std::int32_t x = 0; x < width; ++x) {
        for (std::int32_t y = 0; y < height; ++y) {
            float* cell = positions->pixel(x, y);
            if (!isEmptyCell(cell)) {
                const Vector3<float> normal = tripleAt<float>(normals->pixel(x, y), 0);
                storeTriple(cell, 0, normal * *deltas->pixel(x, y) + tripleAt<float>(cell, 0));
            }
        }
    }
}

}  // namespace talvek
