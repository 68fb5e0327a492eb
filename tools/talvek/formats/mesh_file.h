// Reading a mesh for inspection: the library's readers, none of which changes the file here, and those of other
// formats.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "mesh/object3d.h"
#include "talvek/formats/import_mesh.h"

namespace talvek::host {

/// ".obj" of "Stone.OBJ"; empty where there is none.
std::string lowerCaseExtension(const std::string& path);

/// The extensions of the meshes that a run reads: ".obj, .wrl, .sas, .bin or .fim" with "or" for the last word.
std::string runExtensions(const char* lastWord);

/// Throws Failure unless there is a file that can be opened.
void requireReadable(const std::string& path);

/// Whether the library has a reader for the name's extension.
bool isNativeName(const std::string& path);

/// What the library's reader makes of a file, before any index is looked at; null when it refuses the file.
std::unique_ptr<Object3D> readUnchecked(const std::string& path);

/// The same without normals, once its indices have been looked at. Throws Failure with the reason when there is no
/// mesh.
std::unique_ptr<Object3D> readNativeMesh(const std::string& path);

/// A mesh that is ready to be looked at, with its normals.
struct LoadedMesh {
    std::unique_ptr<Object3D> mesh;
    /// What was done to the source, a sentence for each.
    std::vector<std::string> notes;
    MeshPlace place;
};

/// Narrows a mesh and computes its normals.
LoadedMesh completeMesh(ImportedMesh&& imported);

/// Reads and completes a mesh of any format. Throws Failure with the reason when there is none.
LoadedMesh loadMesh(const std::string& path, const ImportOptions& options);

/// Reads and completes a mesh as a run of the library would, or as loadMesh does where the library has no reader.
std::unique_ptr<Object3D> readMesh(const std::string& path);

/// "9 vertices, 8 faces, 4 texture coordinates"
std::string contentOf(const Object3D& mesh);

/// A face corner that names a vertex which is not there; -1 when there is none.
std::int64_t firstBadCorner(const Object3D& mesh);

}  // namespace talvek::host
