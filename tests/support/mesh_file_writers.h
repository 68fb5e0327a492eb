// The bytes of small mesh files, sound and unsound, in the binary formats.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace talvek::test {

using Ints = std::vector<std::int32_t>;
using Floats = std::vector<float>;

/// Little-endian values of 32 bits, one after the other.
std::string bytesOf(const Ints& values);
std::string bytesOf(const Floats& values);

/// A tetrahedron with a texel for each vertex; all four outward faces.
struct Tetrahedron {
    static const Floats kVertices;
    static const Ints kFaces;
    static const Floats kTexels;
    /// 3 values for each face, none of them what a loaded mesh gets by itself.
    static const Floats kColours;
    static const Floats kNormals;
};

/// A BIN file up to and including the faces.
std::string binBytes(const Floats& vertices, const Ints& faces);
/// A label block: the text, padded with NUL, and the marker.
std::string binLabel(const std::string& text, unsigned char marker);

/// The 20 bytes that every SAS file begins with.
std::string sasHeader(std::int32_t version, std::int32_t numFaces, std::int32_t numVertices);
/// A tetrahedron in the interleaved layout; `texels` is what follows the normals.
std::string sasTetrahedron(std::int32_t version, const std::string& texels = "");
/// The tetrahedron in version 7777.
std::string legacySasTetrahedron();

std::string fimBytes(std::int32_t width, std::int32_t height, std::int32_t channels, const Floats& pixels);
/// Three channels: every pixel (10 + column, row, 5).
Floats fimPlane(std::int32_t width, std::int32_t height);

/// A tetrahedron as VRML text with coordinates and faces.
std::string wrlTetrahedron();

/// A small sound file of every format, with every section that the format has in at least one of them.
struct SmallFile {
    std::string name;
    std::string bytes;
};
/// For the test's name in the runner's output, which otherwise shows every byte of the record, unset ones too.
inline std::ostream& operator<<(std::ostream& out, const SmallFile& file) {
    return out << file.name;
}
std::vector<SmallFile> smallMeshFiles();

}  // namespace talvek::test
