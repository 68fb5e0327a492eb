#include "talvek/export/obj_surface.h"

#include <charconv>
#include <cmath>

#include "base/number_text.h"
#include "base/output_file.h"
#include "mesh/texture.h"
#include "talvek/export/export_failure.h"
#include "talvek/export/scan_texture.h"
#include "talvek/support/paths.h"

namespace talvek::host {

namespace {

/// The frames have six decimals of a millimetre; in larger units as many more as keep them.
int decimalsFor(double unit) {
    constexpr int kFrameDecimals = 6;
    return std::min(9, kFrameDecimals + static_cast<int>(std::ceil(std::log10(unit) - 1e-9)));
}

void writeVertices(OutputFile& file, const Object3D& mesh, const RunSeries& series) {
    const double unit = series.unit();
    const int decimals = decimalsFor(unit);
    for (std::size_t i = 0; i < mesh.vertexSpan().size(); ++i) {
        char* out = file.reserve(kNumberTextSize + 2);
        *out++ = i % 3 == 0 ? 'v' : ' ';
        *out = ' ';
        out += i % 3 == 0 ? 1 : 0;
        out = formatFixed(out, static_cast<double>(mesh.vertices[i]) / unit + series.offset()[i % 3], decimals);
        if (i % 3 == 2) {
            *out++ = '\n';
        }
        file.commit(out);
    }
}

/// As few digits as give the same number when they are read.
void writeTexels(OutputFile& file, const Object3D& mesh) {
    for (std::size_t i = 0; i < 2 * static_cast<std::size_t>(mesh.numTexels); ++i) {
        char digits[64];
        const char* const end = std::to_chars(digits, digits + sizeof digits, mesh.texels[i]).ptr;
        file.write(i % 2 == 0 ? "vt " : " ");
        file.writeBytes(digits, static_cast<std::size_t>(end - digits));
        file.write(i % 2 == 1 ? "\n" : "");
    }
}

void writeFaces(OutputFile& file, const Object3D& mesh, const Object3D* textured) {
    for (std::size_t i = 0; i < mesh.faceSpan().size(); ++i) {
        std::string text = (i % 3 == 0 ? "f " : " ") + std::to_string(std::int64_t{mesh.vertexIndex[i]} + 1);
        const std::int32_t texel = textured != nullptr ? cornerTexels(*textured)[i] : -1;
        if (texel >= 0 && texel < textured->numTexels) {
            text += "/" + std::to_string(std::int64_t{texel} + 1);
        }
        file.write(text + (i % 3 == 2 ? "\n" : ""));
    }
}

void writeBytesTo(const std::string& path, const std::string& bytes) {
    OutputFile file(path.c_str());
    file.write(bytes);
    finishExport(file, path);
}

}  // namespace

std::vector<std::string> writeObjSurface(const RunSeries& series, const SeriesSurface& surface,
                                         const std::string& path) {
    const std::unique_ptr<Object3D> mesh = series.read(surface);
    const std::unique_ptr<Object3D> textured = readTexturedMesh(series, *mesh);
    const std::optional<ScanPicture> picture = textured != nullptr ? readScanPicture(series) : std::nullopt;
    std::vector<std::string> files;
    const std::filesystem::path target = pathOf(path);
    const std::string materials = nameOf(std::filesystem::path(target).replace_extension(".mtl"));
    if (picture) {
        const std::string copy = nameOf(target.parent_path() / pathOf(picture->name));
        writeBytesTo(copy, picture->bytes);
        writeBytesTo(materials, "newmtl stone\nKa 1 1 1\nKd 1 1 1\nmap_Kd " + picture->name + "\n");
        files = {copy, materials};
    }
    OutputFile file(path.c_str());
    file.write(picture ? "mtllib " + nameOf(pathOf(materials).filename()) + "\n" : "");
    writeVertices(file, *mesh, series);
    if (textured != nullptr) {
        writeTexels(file, *textured);
    }
    file.write(picture ? "usemtl stone\n" : "");
    writeFaces(file, *mesh, textured.get());
    finishExport(file, path);
    files.push_back(path);
    return files;
}

}  // namespace talvek::host
