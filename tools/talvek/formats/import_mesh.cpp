#include "talvek/formats/import_mesh.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "Vexo_Lib/mesh_formats.h"
#include "talvek/formats/gltf.h"
#include "talvek/formats/mesh_file.h"
#include "talvek/formats/mesh_input.h"
#include "talvek/formats/off.h"
#include "talvek/formats/ply.h"
#include "talvek/formats/stl.h"
#include "talvek/formats/vertex_joiner.h"
#include "talvek/formats/wavefront.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

/// A format of other programs. Where the library reads such files as well, it reads the plainest of them.
struct ImportFormat {
    std::string_view extension;
    std::string_view name;
    ImportedMesh (*read)(MeshInput& input);
    /// Millimetres for each unit, where the format says so; 0 where it does not.
    double unit = 0;
};

constexpr double kMillimetresPerMetre = 1000;

constexpr ImportFormat kFormats[] = {
    {".obj", "Wavefront OBJ", readWavefront},
    {".ply", "PLY", readPly},
    {".stl", "STL", readStl},
    {".off", "OFF", readOff},
    {".glb", "GLB", readGltf, kMillimetresPerMetre},
    {".gltf", "glTF", readGltf, kMillimetresPerMetre},
};

const ImportFormat* formatOf(const std::string& path) {
    const auto* const found = std::ranges::find(kFormats, meshExtension(path), &ImportFormat::extension);
    return found == std::end(kFormats) ? nullptr : found;
}

ImportedMesh readForeign(const ImportFormat& format, const std::string& path, const ImportOptions& options) {
    if (format.unit != 0 && options.unit) {
        throw Failure(kExitUsage, path + ": the format states its unit; --unit is for those that state none");
    }
    MeshInput input(path);
    ImportedMesh mesh = format.read(input);
    mesh.place.unit = format.unit != 0 ? format.unit : options.unit.value_or(1);
    return mesh;
}

[[noreturn]] void refuse(const std::string& path) {
    const std::string extension = meshExtension(path);
    if (isNativeName("x" + extension)) {
        throw Failure(kExitMesh, path + ": compressed " + extension + " files are not read; uncompress it");
    }
    throw Failure(kExitMesh, path + ": there is no reader for " +
                                 (extension.empty() ? "a name without extension" : extension) + "; " +
                                 readExtensions("and") + " are read");
}

/// The middle of the mesh in whole numbers of its units; nothing without vertices.
std::array<double, 3> wholeMiddle(const ImportedMesh& mesh) {
    std::array<double, 3> offset{};
    for (std::size_t k = 0; k < 3; ++k) {
        double smallest = INFINITY;
        double largest = -INFINITY;
        for (std::size_t i = k; i < mesh.positions.size(); i += 3) {
            if (std::isfinite(mesh.positions[i])) {
                smallest = std::min(smallest, mesh.positions[i]);
                largest = std::max(largest, mesh.positions[i]);
            }
        }
        offset[k] = smallest <= largest ? std::round(smallest / 2 + largest / 2) : 0;
    }
    return offset;
}

double largestCoordinate(const ImportedMesh& mesh, const std::array<double, 3>& offset) {
    double largest = 0;
    for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
        const double distance = std::fabs(mesh.positions[i] - offset[i % 3]);
        largest = std::isfinite(distance) ? std::max(largest, distance) : largest;
    }
    return largest * mesh.place.unit;
}

/// Taking an offset off helps only where the mesh is much smaller than its distance from the origin.
bool isFarAway(const ImportedMesh& mesh, const std::array<double, 3>& offset) {
    constexpr double kMuchSmaller = 8;
    const double largest = largestCoordinate(mesh, {});
    return largest >= kLargestFineCoordinate && largestCoordinate(mesh, offset) * kMuchSmaller <= largest;
}

void place(ImportedMesh& mesh, const ImportOptions& options) {
    if (options.weld > 0) {
        mesh.counts.weldedVertices = weldVertices(mesh, options.weld / mesh.place.unit);
    }
    if (options.recentre.value_or(true)) {
        const std::array<double, 3> offset = wholeMiddle(mesh);
        if (options.recentre.has_value() || isFarAway(mesh, offset)) {
            mesh.place.offset = offset;
        }
    }
}

}  // namespace

std::string meshExtension(const std::string& path) {
    const std::string extension = lowerCaseExtension(path);
    return extension == ".gz" ? lowerCaseExtension(path.substr(0, path.size() - extension.size())) : extension;
}

bool isForeignName(const std::string& path) {
    return formatOf(path) != nullptr;
}

std::string readExtensions(const std::string& lastWord) {
    std::vector<std::string> all;
    for (const MeshFormat& format : meshFormats()) {
        all.emplace_back(format.extension);
    }
    for (const ImportFormat& format : kFormats) {
        if (std::ranges::find(all, format.extension) == all.end()) {
            all.emplace_back(format.extension);
        }
    }
    std::string list = all.front();
    for (std::size_t i = 1; i < all.size(); ++i) {
        list.append(i + 1 == all.size() ? " " + lastWord + " " : ", ").append(all[i]);
    }
    return list;
}

std::string formatName(const std::string& path) {
    if (const MeshFormat* native = meshFormatOf(path)) {
        return std::string(native->name);
    }
    const ImportFormat* format = formatOf(path);
    return format != nullptr ? std::string(format->name) : meshExtension(path);
}

ImportedMesh importMesh(const std::string& path, const ImportOptions& options) {
    requireReadable(path);
    ImportedMesh mesh;
    if (const ImportFormat* format = formatOf(path)) {
        mesh = readForeign(*format, path, options);
    } else if (isNativeName(path)) {
        mesh = widenMesh(*readNativeMesh(path));
        mesh.place.unit = options.unit.value_or(1);
    } else {
        refuse(path);
    }
    place(mesh, options);
    return mesh;
}

}  // namespace talvek::host
