#include "Vexo_Lib/sas.h"

#include <optional>

#include "Vexo_Lib/error_report.h"
#include "Vexo_Lib/sas_encoding.h"

namespace talvek {

namespace {

struct Loaded {
    std::unique_ptr<Object3D> mesh;
    /// The file, where it is of the version that is no longer written, and sound.
    std::optional<system::FileStamp> upgradable;
};

/// The file is closed again when this returns: on Windows an open file cannot be replaced.
Loaded load(const char* path) {
    BinaryFile file(path);
    if (!file.isOpen()) {
        reportError(TALVEK_HERE, "cannot open ", path);
        return {};
    }
    const SasHeader header = readSasHeader(file);
    if (header.version == SasHeader::kPlanar) {
        std::unique_ptr<Object3D> mesh = readPlanarSas(file, header, path);
        // A damaged header in front of a whole scan shows in the file's length or in its indices.
        const bool isSound = file.isExactlyRead() && hasOnlyExistingVertices(*mesh);
        return {std::move(mesh), isSound ? file.stamp() : std::nullopt};
    }
    if (header.version < SasHeader::kWithoutTexels || header.version > SasHeader::kTexelIndex) {
        return {};
    }
    return {readInterleavedSas(file, header, path), std::nullopt};
}

bool writeSas(const char* path, const Object3D& mesh, const std::optional<system::FileStamp>& replaced) {
    OutputFile file(path, Durability::kOnDisk, replaced);
    if (file.isOpen()) {
        writeInterleavedSas(file, mesh);
        if (file.finish()) {
            return true;
        }
    }
    reportError(TALVEK_HERE, "Cannot create ", path);
    return false;
}

/// The mesh has been read: failing to replace its file is no reason to lose it.
void upgrade(const char* path, const Loaded& loaded) try {
    writeSas(path, *loaded.mesh, loaded.upgradable);
} catch (const std::bad_alloc&) {
    reportError(TALVEK_HERE, "Cannot create ", path);
}

}  // namespace

std::unique_ptr<Object3D> LoadSasFile(const char* path) try {
    Loaded loaded = load(path);
    if (loaded.upgradable) {
        upgrade(path, loaded);
    }
    return std::move(loaded.mesh);
} catch (const std::bad_alloc&) {
    reportError(TALVEK_HERE, "damaged file ", path);
    return nullptr;
}

std::unique_ptr<Object3D> readSasFile(const char* path) try { return load(path).mesh; } catch (const std::bad_alloc&) {
    reportError(TALVEK_HERE, "damaged file ", path);
    return nullptr;
}

std::unique_ptr<Object3D> ReadLegacySasFile(const char* path) try {
    BinaryFile file(path);
    if (!file.isOpen()) {
        reportError(TALVEK_HERE, "Cannot open ", path);
        return nullptr;
    }
    const SasHeader header = readSasHeader(file);
    return header.version == SasHeader::kPlanar ? readPlanarSas(file, header, path) : nullptr;
} catch (const std::bad_alloc&) {
    reportError(TALVEK_HERE, "damaged file ", path);
    return nullptr;
}

bool WriteSasFile(const char* path, const Object3D& mesh) {
    return writeSas(path, mesh, std::nullopt);
}

}  // namespace talvek
