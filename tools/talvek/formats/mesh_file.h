// Reading a mesh for inspection: the library's readers, none of which changes the file here.
#pragma once

#include <memory>
#include <string>

#include "mesh/object3d.h"

namespace talvek::host {

/// ".obj" of "Stone.OBJ"; empty where there is none.
std::string lowerCaseExtension(const std::string& path);

/// The extensions of the meshes that a run reads: ".obj, .wrl, .sas, .bin or .fim" with "or" for the last word.
std::string runExtensions(const char* lastWord);

/// The same with those of the meshes that are only looked at and converted: ".obj, .wrl, .sas, .bin, .fim or .ply".
std::string readExtensions();

/// What people call the format of a file that has a reader: "Wavefront OBJ".
std::string formatName(const std::string& path);

/// Throws Failure unless there is a file that can be opened.
void requireReadable(const std::string& path);

/// What the reader for the file's extension makes of it, before any index is looked at; null when it refuses the file.
/// Throws Failure for an extension that has no reader.
std::unique_ptr<Object3D> readUnchecked(const std::string& path);

/// Reads and completes a mesh: as a run would, or from a PLY file, which no run reads. Throws Failure with the reason
/// when there is none.
std::unique_ptr<Object3D> readMesh(const std::string& path);

/// "9 vertices, 8 faces, 4 texture coordinates"
std::string contentOf(const Object3D& mesh);

/// A face corner that names a vertex which is not there; -1 when there is none.
std::int64_t firstBadCorner(const Object3D& mesh);

}  // namespace talvek::host
