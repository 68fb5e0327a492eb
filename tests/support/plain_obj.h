// Reads and writes OBJ text the way it is defined, token by token and number by number, with nothing done for speed:
// what the reader and the writer are compared with.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "mesh/object3d.h"

namespace talvek::test {

struct PlainObj {
    std::vector<float> coordinates;
    std::vector<float> texels;
    std::vector<std::int32_t> vertexIndices;
    std::vector<std::int32_t> texelIndices;
};

/// Whether two arrays are the same in memory: 0 and -0 differ, not-a-number equals itself.
template <typename T>
bool hasSameBits(const T* a, const T* b, std::int64_t count) {
    return std::memcmp(static_cast<const void*>(a), static_cast<const void*>(b),
                       static_cast<std::size_t>(count) * sizeof(T)) == 0;
}

PlainObj readObjPlainly(const std::string& text);

/// The text of the writer with normals, every line of it ended by "\n".
std::string writeObjPlainly(const Object3D& mesh);

/// Fails the test unless the mesh holds what the plain reader found, bit for bit.
void expectSame(const Object3D& mesh, const PlainObj& plain);

}  // namespace talvek::test
