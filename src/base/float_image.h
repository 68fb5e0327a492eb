// A picture whose pixels are single-precision numbers: a mineral map, a grid over texture space, a geometry image.
#pragma once

#include <cstdint>

#include "base/heap_array.h"

namespace talvek {

struct FloatImage {
    std::int32_t width = 0;
    std::int32_t height = 0;
    /// Numbers per pixel.
    std::int32_t channels = 0;
    /// Row by row.
    HeapArray<float> data;

    float* pixel(std::int64_t x, std::int64_t y) { return data.get() + (width * y + x) * channels; }
    const float* pixel(std::int64_t x, std::int64_t y) const { return data.get() + (width * y + x) * channels; }
};

/// An image of zeros. Throws std::bad_alloc.
inline FloatImage makeImage(std::int32_t width, std::int32_t height, std::int32_t channels) {
    return {width, height, channels, makeZeroedArray<float>(std::int64_t{width} * height * channels)};
}

}  // namespace talvek
