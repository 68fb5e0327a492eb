// The options that tell how a mesh is to be read.
#pragma once

#include <string>

#include "talvek/formats/import_mesh.h"
#include "talvek/formats/mesh_file.h"

namespace CLI {  // NOLINT(readability-identifier-naming): the name that the library gave it
class App;
}

namespace talvek::host {

/// Adds --unit, --weld and --recentre to a command.
void addImportArguments(CLI::App& command, ImportOptions& options);

/// The help's words for an argument: "Mesh to look at: .obj, .ply, ..."
std::string meshArgumentText(const std::string& purpose);

/// A line for each thing that was done to the source, beginning with its name.
void printImport(const std::string& path, const LoadedMesh& loaded);

}  // namespace talvek::host
