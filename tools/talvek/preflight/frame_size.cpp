#include "talvek/preflight/frame_size.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "base/number_text.h"
#include "base/system.h"
#include "talvek/inspect/texture_survey.h"
#include "talvek/support/paths.h"
#include "weathering/grid.h"

namespace talvek::host {

namespace {

constexpr std::uint64_t kHeaderBytes = 100;
constexpr double kGridCells = double{kGridSize} * kGridSize;
/// A regular grid has two triangles per vertex, apart from its rim.
constexpr double kFacesPerCell = 2;

std::uint64_t valueBytes(float value) {
    char text[kNumberTextSize];
    return static_cast<std::uint64_t>(formatFixed6(text, value) - text);
}

std::uint64_t indexBytes(std::int64_t index) {
    char text[kNumberTextSize];
    return static_cast<std::uint64_t>(formatInteger(text, index) - text);
}

/// What a line has besides its three values: its keyword, a blank before each value, its end.
std::uint64_t lineBytes(std::string_view keyword) {
    return keyword.size() + 3 + system::kLineEnd.size();
}

std::uint64_t vertexBytes(const Object3D& mesh) {
    const auto count = static_cast<std::uint64_t>(mesh.numVertices);
    std::uint64_t bytes = count * (lineBytes("v") + lineBytes("vn"));
    for (const float value : mesh.vertexSpan()) {
        bytes += valueBytes(value);
    }
    for (std::size_t i = 0; mesh.vertexNormals != nullptr && i < mesh.normalSpan().size(); ++i) {
        bytes += valueBytes(mesh.normalSpan()[i]);
    }
    return bytes;
}

}  // namespace

std::uint64_t frameBytes(const Object3D& mesh) {
    std::uint64_t bytes = kHeaderBytes + vertexBytes(mesh);
    for (const std::int32_t index : mesh.faceSpan()) {
        bytes += indexBytes(std::int64_t{index} + 1);
    }
    return bytes + static_cast<std::uint64_t>(mesh.numFaces) * lineBytes("f");
}

std::uint64_t gridFrameBytes(const Object3D& mesh) {
    const double covered = surveyTexture(mesh).coverage;
    const double cells = kGridCells * (covered < 1 ? covered : 1);
    const double perVertex =
        mesh.numVertices > 0 ? static_cast<double>(vertexBytes(mesh)) / static_cast<double>(mesh.numVertices) : 0;
    const auto perFace = static_cast<double>(lineBytes("f") + 3 * indexBytes(static_cast<std::int64_t>(cells)));
    return kHeaderBytes + static_cast<std::uint64_t>(cells * (perVertex + kFacesPerCell * perFace));
}

std::uint64_t roomNeeded(const std::vector<std::string>& names, std::uint64_t bytesEach) {
    std::uint64_t needed = bytesEach;
    for (const std::string& name : names) {
        std::error_code isAbsent;
        const std::uintmax_t replaced = std::filesystem::file_size(pathOf(name), isAbsent);
        needed += isAbsent || replaced >= bytesEach ? (isAbsent ? bytesEach : 0) : bytesEach - replaced;
    }
    return needed;
}

}  // namespace talvek::host
