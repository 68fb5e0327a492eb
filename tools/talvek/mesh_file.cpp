#include "talvek/mesh_file.h"

#include "Vexo_Lib/load3d.h"
#include "base/system.h"
#include "talvek/exit_status.h"
#include "talvek/ply.h"

namespace talvek::host {

namespace {

void requireReadable(const std::string& path) {
    switch (system::kindOf(path.c_str())) {
        case system::FileKind::kAbsent:
            throw Failure(kExitMesh, path + ": there is no such file");
        case system::FileKind::kOther:
            throw Failure(kExitMesh, path + ": this is no file but a folder or a device");
        case system::FileKind::kRegular:
            break;
    }
    if (!system::File::openForReading(path.c_str()).isOpen()) {
        throw Failure(kExitMesh, path + ": the file cannot be opened; look for its permissions");
    }
}

}  // namespace

std::string lowerCaseExtension(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    std::string extension = dot == std::string::npos ? "" : path.substr(dot);
    for (char& c : extension) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return extension;
}

std::unique_ptr<Object3D> readMesh(const std::string& path) {
    requireReadable(path);
    if (lowerCaseExtension(path) == ".ply") {
        return readPly(path);
    }
    std::unique_ptr<Object3D> mesh = LoadMeshFile(path.c_str());
    if (mesh == nullptr) {
        throw Failure(kExitMesh, path + ": the mesh does not load; talvek check says why");
    }
    return mesh;
}

}  // namespace talvek::host
