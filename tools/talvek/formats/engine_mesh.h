// The mesh that a run of the library reads: the source itself, or what is made of it.
#pragma once

#include <string>

#include "talvek/formats/mesh_file.h"

namespace talvek::host {

struct EngineMesh {
    LoadedMesh loaded;
    /// Whether the library reads this very mesh from the source.
    bool isSource = true;
};

/// Reads a source as it is asked for, and finds out whether the library would read the same of it, to the last bit.
/// Throws Failure.
EngineMesh readEngineMesh(const std::string& source, const ImportOptions& options);

/// "stone.ply.bin" of "stone.ply": where the engine's mesh stands when it is not the source.
std::string engineMeshName(const std::string& source);

/// Throws Failure when a file stands under the name that is no engine mesh.
void requireReplaceableEngineMesh(const std::string& path);

/// Writes a mesh so that the library reads it to the last bit, with its texture coordinates. Throws Failure, a file of
/// that name being as it was.
void writeEngineMesh(const Object3D& mesh, const std::string& path);

}  // namespace talvek::host
