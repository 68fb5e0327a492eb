#include "talvek/export/scan_texture.h"

#include <algorithm>
#include <string_view>

#include "mesh/texture.h"
#include "talvek/formats/import_mesh.h"
#include "talvek/formats/mesh_file.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/paths.h"
#include "talvek/support/whole_file.h"

namespace talvek::host {

namespace {

std::string kindOfPicture(std::string_view bytes) {
    if (bytes.starts_with("\x89PNG")) {
        return "image/png";
    }
    return bytes.starts_with("\xFF\xD8\xFF") ? "image/jpeg" : "";
}

ScanPicture pictureOf(const MeshMaterial& material, const std::string& source) {
    if (!material.textureBytes.empty()) {
        const std::string kind = kindOfPicture(material.textureBytes);
        return {kind == "image/jpeg" ? "texture.jpg" : "texture.png", kind, material.textureBytes};
    }
    const std::filesystem::path file = pathOf(source).parent_path() / pathOf(material.textureFile);
    std::string bytes = readWholeFile(nameOf(file), kExitMesh);
    return {nameOf(file.filename()), kindOfPicture(bytes), std::move(bytes)};
}

}  // namespace

std::optional<ScanPicture> readScanPicture(const RunSeries& series) {
    try {
        for (const MeshMaterial& material : importMesh(series.source()).materials) {
            if (!material.textureFile.empty() || !material.textureBytes.empty()) {
                return pictureOf(material, series.source());
            }
        }
    } catch (const Failure&) {
        // The stone is exported without its photograph, and that is said.
        return std::nullopt;
    }
    return std::nullopt;
}

std::unique_ptr<Object3D> readTexturedMesh(const RunSeries& series, const Object3D& first) {
    try {
        std::unique_ptr<Object3D> mesh = readMesh(series.mesh());
        return hasTexels(*mesh) && std::ranges::equal(mesh->faceSpan(), first.faceSpan()) ? std::move(mesh) : nullptr;
    } catch (const Failure&) {
        return nullptr;
    }
}

}  // namespace talvek::host
