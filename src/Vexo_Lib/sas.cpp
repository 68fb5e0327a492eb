#include "Vexo_Lib/sas.h"

#include "Vexo_Lib/error_report.h"
#include "Vexo_Lib/sas_encoding.h"

namespace talvek {

namespace {

struct Loaded {
    std::unique_ptr<Object3D> mesh;
    /// Whether the file is complete and of the version that is no longer written.
    bool isToBeUpgraded = false;
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
        return {std::move(mesh), file.isRegular() && !file.isShort()};
    }
    if (header.version < SasHeader::kWithoutTexels || header.version > SasHeader::kTexelIndex) {
        return {};
    }
    return {readInterleavedSas(file, header, path)};
}

/// The mesh has been read: failing to replace its file is no reason to lose it.
void upgrade(const char* path, const Object3D& mesh) try { WriteSasFile(path, mesh); } catch (const std::bad_alloc&) {
    reportError(TALVEK_HERE, "Cannot create ", path);
}

}  // namespace

std::unique_ptr<Object3D> LoadSasFile(const char* path) try {
    Loaded loaded = load(path);
    if (loaded.isToBeUpgraded) {
        upgrade(path, *loaded.mesh);
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
    OutputFile file(path, Durability::kOnDisk);
    if (file.isOpen()) {
        writeInterleavedSas(file, mesh);
        if (file.finish()) {
            return true;
        }
    }
    reportError(TALVEK_HERE, "Cannot create ", path);
    return false;
}

}  // namespace talvek
