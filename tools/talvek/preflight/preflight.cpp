#include "talvek/preflight/preflight.h"

#include <algorithm>
#include <system_error>

#include "base/system.h"
#include "talvek/inspect/mesh_survey.h"
#include "talvek/preflight/frame_size.h"
#include "talvek/preflight/texture_check.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/paths.h"

namespace talvek::host {

namespace fs = std::filesystem;

void requireSuitableMesh(const SessionPlan& plan, const Object3D& mesh, const RunFiles& files) {
    if (mesh.numVertices == 0 || mesh.numFaces == 0) {
        throw Failure(kExitMesh, files.mesh + ": the mesh has " +
                                     countOf(static_cast<std::uint64_t>(mesh.numFaces), "face") + " on " +
                                     countOf(static_cast<std::uint64_t>(mesh.numVertices), "vertex") +
                                     "; there is no surface to weather");
    }
    if (countNotFinite(mesh) == mesh.numVertices) {
        throw Failure(kExitMesh, files.mesh + ": no vertex has a finite position; talvek check says more");
    }
    if (plan.needsMap()) {
        requireUsableTexture(plan.mode, mesh, files.mesh);
    }
}

std::optional<MapToPlace> requireMineralMap(const SessionPlan& plan, const RunOptions& options, const RunFiles& files) {
    if (!plan.needsMap()) {
        return std::nullopt;
    }
    if (!options.mineralMap.empty()) {
        return usableMapFrom(options.mineralMap, files.mineralMap, options.replaceMap);
    }
    requireUsableMap(files.mineralMap);
    return std::nullopt;
}

namespace {

void requireWritableFolder(const RunFiles& files) {
    const fs::path probe = files.folder / (".talvek-" + std::to_string(system::processId()) + "-probe.tmp");
    const std::string name = nameOf(probe);
    if (!system::File::createNew(name.c_str()).isOpen()) {
        throw Failure(kExitOutput,
                      nameOf(files.folder) +
                          ": no file can be created in this folder, where the frames would go; look for its "
                          "permissions, or copy the mesh to a folder of your own");
    }
    system::removeFile(name.c_str());
}

}  // namespace

void requireRoom(const SessionPlan& plan, const Object3D& mesh, const RunFiles& files, bool withInputFrame,
                 std::uint64_t besides) {
    requireWritableFolder(files);
    const std::uint64_t each =
        !plan.keepsVertices() ? std::max(gridFrameBytes(mesh), frameBytes(mesh)) : frameBytes(mesh);
    const std::vector<std::string> names =
        outputFiles(files, static_cast<std::int32_t>(plan.epochs.size()), withInputFrame);
    const std::uint64_t needed = roomNeeded(names, each) + besides;
    std::error_code isUnknown;
    const fs::space_info space = fs::space(files.folder, isUnknown);
    if (!isUnknown && space.available < needed) {
        throw Failure(kExitOutput, nameOf(files.folder) + ": the disk has " +
                                       byteCount(static_cast<double>(space.available)) + " free, and the " +
                                       std::to_string(names.size()) + " surfaces of this run need about " +
                                       byteCount(static_cast<double>(needed)) + "; make room or run fewer epochs");
    }
}

}  // namespace talvek::host
