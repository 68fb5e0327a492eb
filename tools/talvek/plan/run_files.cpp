#include "talvek/plan/run_files.h"

#include <system_error>
#include <utility>

#include "base/run_file_names.h"
#include "talvek/formats/engine_mesh.h"
#include "talvek/plan/run_options.h"
#include "talvek/support/paths.h"

namespace talvek::host {

namespace fs = std::filesystem;

RunFiles::RunFiles(const std::string& meshName) : RunFiles(meshName, meshName, false) {}

RunFiles::RunFiles(std::string sourceName, std::string meshName, bool hasOwnFolder)
    : source(std::move(sourceName)), mesh(std::move(meshName)) {
    mineralMap = mineralMapName(mesh);
    parameters = parameterFileName(mesh);
    log = runLogName(mesh);
    firstSurface = firstSurfaceName(mesh);
    lastSurface = lastSurfaceName(mesh);
    folder = pathOf(mesh).parent_path();
    if (folder.empty()) {
        folder = ".";
    }
    record = hasOwnFolder ? nameOf(folder / kRunRecordFile) : runRecordName(mesh);
}

std::string RunFiles::frame(std::int32_t number) const {
    return frameFileName(mesh, static_cast<std::uint32_t>(number));
}

RunFiles filesOfRun(const RunOptions& options, bool isSourceRead) {
    const std::string name = isSourceRead ? options.mesh : engineMeshName(options.mesh);
    if (options.outFolder.empty()) {
        return {options.mesh, name, false};
    }
    return {options.mesh, fileIn(options.outFolder, nameOf(pathOf(name).filename())), true};
}

std::vector<std::string> outputFiles(const RunFiles& files, std::int32_t epochs, bool withInputFrame) {
    std::vector<std::string> names;
    for (std::int32_t n = withInputFrame ? 0 : 1; n <= epochs; ++n) {
        names.push_back(files.frame(n));
    }
    names.push_back(files.firstSurface);
    names.push_back(files.lastSurface);
    return names;
}

}  // namespace talvek::host
