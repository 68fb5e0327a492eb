#include "talvek/preflight/preflight.h"

#include <algorithm>
#include <system_error>

#include "base/run_file_names.h"
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
    const std::string besideSource = mineralMapName(files.source);
    if (besideSource != files.mineralMap && system::kindOf(besideSource.c_str()) != system::FileKind::kAbsent) {
        return usableMapFrom(besideSource, files.mineralMap, options.replaceMap);
    }
    requireUsableMap(files.mineralMap);
    return std::nullopt;
}

namespace {

/// The folder, or where it is absent the one in which it is to be created.
fs::path presentFolder(fs::path folder) {
    std::error_code isUnknown;
    while (!fs::exists(folder, isUnknown) && folder.has_parent_path() && folder.parent_path() != folder) {
        folder = folder.parent_path();
    }
    return fs::exists(folder, isUnknown) ? folder : fs::path(".");
}

void requireWritableFolder(const fs::path& folder) {
    const fs::path probe = folder / (".talvek-" + std::to_string(system::processId()) + "-probe.tmp");
    const std::string name = nameOf(probe);
    if (!system::File::createNew(name.c_str()).isOpen()) {
        throw Failure(kExitOutput,
                      nameOf(folder) +
                          ": no file can be created in this folder, where the frames would go; look for its "
                          "permissions, or name a folder of your own with --out");
    }
    system::removeFile(name.c_str());
}

/// The surfaces that stay. Of those that do not, two are there at a time: one that is being written, and the one before
/// it, which is being checked.
std::uint64_t roomFor(const PreparedRun& run, std::uint64_t bytesEach) {
    std::vector<std::string> names = {run.files.firstSurface, run.files.lastSurface};
    for (std::int32_t n = run.keepInputFrame ? 0 : 1; n <= run.plan.numEpochs(); ++n) {
        if (n == 0 || run.keepsFrame(n)) {
            names.push_back(run.files.frame(n));
        }
    }
    return roomNeeded(names, bytesEach) + (run.frames.keepsAll() ? 0 : bytesEach);
}

/// What is copied into the run's folder.
std::uint64_t roomForInputs(const PreparedRun& run) {
    std::error_code isUnknown;
    const std::uintmax_t mesh =
        run.files.mesh == run.files.source ? 0 : fs::file_size(pathOf(run.files.source), isUnknown);
    return (run.map ? run.map->bytes.size() : 0) + (isUnknown ? 0 : mesh);
}

}  // namespace

void requireRoom(PreparedRun& run) {
    const fs::path folder = presentFolder(run.files.folder);
    requireWritableFolder(folder);
    const std::uint64_t each =
        run.plan.keepsVertices() ? frameBytes(*run.mesh) : std::max(gridFrameBytes(*run.mesh), frameBytes(*run.mesh));
    run.bytesNeeded = roomFor(run, each) + roomForInputs(run);
    std::error_code isUnknown;
    const fs::space_info space = fs::space(folder, isUnknown);
    if (!isUnknown && space.available < run.bytesNeeded) {
        throw Failure(kExitOutput, nameOf(folder) + ": the disk has " +
                                       byteCount(static_cast<double>(space.available)) +
                                       " free, and the surfaces of this run need about " +
                                       byteCount(static_cast<double>(run.bytesNeeded)) +
                                       "; make room, run fewer epochs, or keep fewer frames with --frames");
    }
}

void requireBoundedOutput(const PreparedRun& run, std::uint64_t most) {
    if (run.bytesNeeded > most) {
        throw Failure(kExitOutput, run.files.source + ": the surfaces of this run need about " +
                                       byteCount(static_cast<double>(run.bytesNeeded)) + ", more than the " +
                                       byteCount(static_cast<double>(most)) +
                                       " that a run may write; allow more with --max-output, run fewer epochs, or keep "
                                       "fewer frames with --frames");
    }
}

}  // namespace talvek::host
