// What SAS files look like inside. Version 7777 holds one array for each component, versions 7778 to 7780 hold triples
// and differ in their texels: none, one for each vertex, or with an index of their own.
#pragma once

#include <cstdint>
#include <memory>

#include "base/binary_file.h"
#include "base/output_file.h"
#include "mesh/object3d.h"

namespace talvek {

/// Version, face count, vertex count, a reserved word and the size of all five, which nothing depends on.
struct SasHeader {
    static constexpr std::int32_t kSize = 20;
    static constexpr std::int32_t kPlanar = 7777;
    static constexpr std::int32_t kWithoutTexels = 7778;
    static constexpr std::int32_t kTexelPerVertex = 7779;
    static constexpr std::int32_t kTexelIndex = 7780;

    std::int32_t version = 0;
    std::int32_t numFaces = 0;
    std::int32_t numVertices = 0;
};

SasHeader readSasHeader(BinaryFile& file);

/// Reads what follows the header of a file of version 7777. Throws std::bad_alloc.
std::unique_ptr<Object3D> readPlanarSas(BinaryFile& file, const SasHeader& header, const char* path);

/// Reads what follows the header of a file of version 7778 to 7780. Throws std::bad_alloc.
std::unique_ptr<Object3D> readInterleavedSas(BinaryFile& file, const SasHeader& header, const char* path);

/// Writes header and body in the version that fits the mesh.
void writeInterleavedSas(OutputFile& file, const Object3D& mesh);

}  // namespace talvek
