// How the files of a run are called: all of them after its mesh file, so that they stand beside it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace talvek {

inline constexpr std::string_view kMapExtension = ".bmp";
inline constexpr std::string_view kParametersExtension = ".cfg";
inline constexpr std::string_view kRunLogExtension = ".inf";

/// The record of a run: so called in a folder of the run's own, and behind the mesh's name beside a mesh, where several
/// meshes can stand.
inline constexpr std::string_view kRunRecordFile = "run.json";

/// What a file is called as long as it is not complete: the prefix, letters and digits of its own, the suffix.
inline constexpr std::string_view kUnfinishedPrefix = ".talvek-";
inline constexpr std::string_view kUnfinishedSuffix = ".tmp";

/// Ends the name of the file that a run holds so that no other writes to the same names.
inline constexpr std::string_view kLockSuffix = ".lck";

/// The mesh file's name without its last extension; of a name without '.' the whole.
inline std::string_view baseName(std::string_view meshFile) {
    return meshFile.substr(0, meshFile.rfind('.'));
}

inline std::string mineralMapName(std::string_view meshFile) {
    return std::string(baseName(meshFile)).append(kMapExtension);
}

inline std::string parameterFileName(std::string_view meshFile) {
    return std::string(baseName(meshFile)).append(kParametersExtension);
}

inline std::string runLogName(std::string_view meshFile) {
    return std::string(baseName(meshFile)).append(kRunLogExtension);
}

/// The surface after epoch `frame`; frame 0 is the input surface.
inline std::string frameFileName(std::string_view meshFile, std::uint32_t frame) {
    return std::string(meshFile) + ".obj_w_" + std::to_string(frame) + ".obj";
}

inline std::string firstSurfaceName(std::string_view meshFile) {
    return std::string(meshFile) + ".obj_i.obj";
}

inline std::string lastSurfaceName(std::string_view meshFile) {
    return std::string(meshFile) + ".obj_w.obj";
}

inline std::string runRecordName(std::string_view meshFile) {
    return std::string(meshFile).append(".").append(kRunRecordFile);
}

}  // namespace talvek
