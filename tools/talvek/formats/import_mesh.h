// Meshes of every format that is read, by one front.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "talvek/formats/imported_mesh.h"

namespace talvek::host {

struct ImportOptions {
    /// Millimetres for each of the source's units, for formats that state none.
    std::optional<double> unit;
    /// Vertices within this many millimetres of each other are made one; 0 joins none.
    double weld = 0;
    /// Whether a whole-number offset is taken off; without a word, where the coordinates are so large that single
    /// precision would lose what an epoch does to them.
    std::optional<bool> recentre;

    bool isPlain() const { return !unit && weld == 0 && !recentre.value_or(false); }
};

/// An epoch moves a surface by hundredths of a millimetre. From here on, in millimetres, single precision rounds
/// coordinates to steps of a hundredth and more.
inline constexpr double kLargestFineCoordinate = 131072;

/// Reads a mesh by its extension, behind which there may be ".gz". Throws Failure with the reason.
ImportedMesh importMesh(const std::string& path, const ImportOptions& options = {});

/// Whether importMesh has a reader of its own for the name's extension, rather than the library's.
bool isForeignName(const std::string& path);

/// ".obj, .wrl, ... or .off": what importMesh reads; `lastWord` is "or" or "and".
std::string readExtensions(const std::string& lastWord);

/// What people call the format of a file that has a reader: "Wavefront OBJ".
std::string formatName(const std::string& path);

/// ".ply" of "Stone.PLY" and of "Stone.PLY.gz"; empty where there is none.
std::string meshExtension(const std::string& path);

}  // namespace talvek::host
