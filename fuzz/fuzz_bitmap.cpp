// Fuzzes the reading of mineral maps: the colours under a mesh and under a grid are looked up in what was read.
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "input_on_disk.h"
#include "weathering/delta_grid.h"
#include "weathering/mineral_map.h"

namespace {

volatile float sink;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) try {
    const auto map = talvek::readMineralMap(talvek::fuzz::writeInput("input.bmp", data, size));
    if (map == nullptr) {
        return 0;
    }
    const std::int64_t values = std::int64_t{map->width} * map->height * map->channels;
    if (std::any_of(map->data.get(), map->data.get() + values,
                    [](float value) { return !(value >= 0 && value <= 255); })) {
        std::abort();
    }
    talvek::fuzz::countUse();
    // A grid takes a thousand times as long as the rest.
    if (size % 256 == 57) {
        const auto deltas = talvek::mineralDeltaGrid(*map, -0.5);
        sink = deltas != nullptr ? *deltas->pixel(deltas->width - 1, deltas->height - 1) : 0;
    }
    return 0;
} catch (const std::bad_alloc&) {
    return 0;
}
