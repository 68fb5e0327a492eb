// The one way in which a file becomes a mesh.
#pragma once

#include <memory>

#include "mesh/object3d.h"

namespace talvek {

/// Reads a mesh in the format that the path's extension names (".obj", ".wrl", ".sas", ".bin", ".fim", all in lower or
/// all in upper case) and completes it: normals, name, largest coordinate. Every vertex index of the result lies in
/// [0, V). Returns null, possibly after a report on standard error, for any other extension, for a file that does not
/// load and for one whose faces name vertices it does not have.
std::unique_ptr<Object3D> LoadMeshFile(const char* path);

/// The same without what can be computed from the rest and without what no run reads: no normals, no mean edge length,
/// no colours, no name, no largest coordinate.
std::unique_ptr<Object3D> loadBareMesh(const char* path);

}  // namespace talvek
