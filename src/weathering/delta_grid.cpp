#include "weathering/delta_grid.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "mesh/vector3.h"
#include "weathering/mineral_classes.h"

namespace talvek {

namespace {

/// Looks up how strongly the pixels of a map weather; a pixel outside the map is taken for the last one looked up
/// inside.
class PixelSlot {
  public:
    float factorAt(const MineralMap& map, std::int64_t x, std::int64_t y) {
        if (x >= 0 && x < map.width && y >= 0 && y < map.height && !std::equal(pixel_, pixel_ + 3, map.pixel(x, y))) {
            std::copy_n(map.pixel(x, y), 3, pixel_);
            factor_ = mineralFactor(mineralClassOf(pixel_[0], pixel_[1], pixel_[2]));
        }
        return factor_;
    }

  private:
    // Black, which stands for no mineral.
    float pixel_[3] = {};
    float factor_ = 0;
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

/// The delta under a pixel. What does not weather stays where it is even under a delta that is not finite.
float deltaOf(float factor, float delta) {
    return factor == 0 ? 0 : delta * factor;
}

std::unique_ptr<Grid> makeDeltaGrid() {
    return std::make_unique<Grid>(makeImage(kGridSize, kGridSize, 1));
}

}  // namespace

std::unique_ptr<Grid> constantDeltaGrid(double delta) {
    std::unique_ptr<Grid> deltas = makeDeltaGrid();
    std::fill_n(deltas->data.get(), kGridSize * kGridSize, static_cast<float>(delta));
    return deltas;
}

MineralFactorGrid::MineralFactorGrid(const MineralMap& map) : factors_(makeImage(kGridSize, kGridSize, 4)) {
    PixelSlot slots[4];
    for (std::int32_t c = 0; c < kGridSize; ++c) {
        const MapPlace column(c, map.width);
        columns_.push_back(column.fraction);
        for (std::int32_t r = 0; r < kGridSize; ++r) {
            const MapPlace row(r, map.height);
            float* factors = factors_.pixel(c, r);
            factors[0] = slots[0].factorAt(map, column.pixel, row.pixel);
            factors[1] = slots[1].factorAt(map, column.pixel + 1, row.pixel);
            factors[2] = slots[2].factorAt(map, column.pixel, row.pixel + 1);
            factors[3] = slots[3].factorAt(map, column.pixel + 1, row.pixel + 1);
        }
    }
    for (std::int32_t r = 0; r < kGridSize; ++r) {
        rows_.push_back(MapPlace(r, map.height).fraction);
    }
}

std::unique_ptr<Grid> MineralFactorGrid::deltas(double delta) const {
    const auto narrow = static_cast<float>(delta);
    std::unique_ptr<Grid> deltas = makeDeltaGrid();
    for (std::size_t cell = 0; cell < std::size_t{kGridSize} * kGridSize; ++cell) {
        const float* factors = factors_.data.get() + 4 * cell;
        const double alongColumns = columns_[cell % kGridSize];
        const double top = interpolate(deltaOf(factors[0], narrow), deltaOf(factors[1], narrow), alongColumns);
        const double bottom = interpolate(deltaOf(factors[2], narrow), deltaOf(factors[3], narrow), alongColumns);
        deltas->data[cell] = static_cast<float>((bottom - top) * rows_[cell / kGridSize] + top);
    }
    return deltas;
}

std::unique_ptr<Grid> mineralDeltaGrid(const MineralMap& map, double delta) {
    return map.channels == 3 ? MineralFactorGrid(map).deltas(delta) : nullptr;
}

void applyDeltaGrid(Grid* positions, const Grid* normals, const Grid* deltas) {
    if (positions == nullptr || normals == nullptr || deltas == nullptr || positions->channels != 3 ||
        normals->channels != 3 || deltas->channels != 1) {
        return;
    }
    const std::int32_t width = std::min({positions->width, normals->width, deltas->width});
    const std::int32_t height = std::min({positions->height, normals->height, deltas->height});
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            float* cell = positions->pixel(x, y);
            if (!isEmptyCell(cell)) {
                const Vector3<float> normal = tripleAt<float>(normals->pixel(x, y), 0);
                storeTriple(cell, 0, normal * *deltas->pixel(x, y) + tripleAt<float>(cell, 0));
            }
        }
    }
}

}  // namespace talvek
