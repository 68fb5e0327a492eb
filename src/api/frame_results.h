// The surfaces of a finished run, read back from its frame files.
#pragma once

#include <cstdint>

namespace talvek {

/// The days from the beginning to the end of epoch `frame`, whole days of each epoch added; every epoch up to it has to
/// exist. Kept within what the result can hold.
std::uint32_t daysUntilFrame(std::int32_t frame);

/// The number of triangles of a frame, 0 if it does not load. Throws std::bad_alloc.
std::int32_t countFrameTriangles(std::uint32_t frame);

/// Fills `vertices` and `normals` with nine floats per triangle. Returns a result code. Throws std::bad_alloc.
std::int32_t readFrameGeometry(std::uint32_t frame, float* vertices, float* normals);

/// Writes triangles, nine floats each, as an OBJ file. Throws std::bad_alloc.
void saveTriangles(const char* path, std::int32_t numTriangles, const float* vertices);

}  // namespace talvek
