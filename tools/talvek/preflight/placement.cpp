#include "talvek/preflight/placement.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "base/output_file.h"
#include "base/system.h"
#include "talvek/formats/engine_mesh.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/paths.h"
#include "talvek/support/same_file.h"
#include "talvek/support/sha256.h"
#include "talvek/support/whole_file.h"

namespace talvek::host {

namespace {

// The second line of a parameter file that the library has written begins with this.
constexpr const char* kParametersMark = "//automatically created configuration file:";

bool isThere(const std::string& name) {
    return system::kindOf(name.c_str()) != system::FileKind::kAbsent;
}

void copyFile(const std::string& from, const std::string& to) {
    system::File source = system::File::openForReading(from.c_str());
    OutputFile file(to.c_str());
    std::vector<char> piece(std::size_t{1} << 20);
    std::int64_t got = source.isOpen() ? 1 : -1;
    while (got > 0) {
        got = source.read(piece.data(), piece.size());
        if (got > 0) {
            file.writeBytes(piece.data(), static_cast<std::size_t>(got));
        }
    }
    if (got < 0 || !file.finish()) {
        throw Failure(kExitOutput, to + ": the mesh cannot be copied here; look for permissions and for room");
    }
}

}  // namespace

void requireFreePlace(const PreparedRun& run, bool force) {
    const RunFiles& files = run.files;
    if (run.isMeshMade && !force) {
        requireReplaceableEngineMesh(files.mesh);
    }
    if (force || run.isMeshMade || files.mesh == files.source || !isThere(files.mesh) ||
        isSameFile(files.mesh, files.source)) {
        return;
    }
    if (sumOf(files.mesh).sha256 != sumOf(files.source).sha256) {
        throw Failure(kExitRefused, files.mesh + ": another file of the mesh's name stands in this folder; choose " +
                                        "another folder, or replace it with --force");
    }
}

void requireReplaceableParameters(const RunOptions& options, const RunFiles& files) {
    if (!options.saveConfig || options.force || !isThere(files.parameters)) {
        return;
    }
    constexpr std::size_t kBeginning = 1024;
    if (readBeginning(files.parameters, kBeginning, kExitParameters).find(kParametersMark) == std::string::npos) {
        throw Failure(kExitRefused, files.parameters +
                                        ": --save-config would replace a parameter file that it has not written; " +
                                        "rename it, or replace it with --force");
    }
}

void makeFolder(const RunFiles& files) {
    std::error_code problem;
    std::filesystem::create_directories(files.folder, problem);
    if (!std::filesystem::is_directory(files.folder, problem)) {
        throw Failure(kExitOutput, nameOf(files.folder) + ": the folder cannot be created");
    }
}

void placeInputs(const PreparedRun& run) {
    if (run.isMeshMade) {
        writeEngineMesh(*run.mesh, run.files.mesh);
        say("mesh for the simulation: " + run.files.mesh);
    } else if (run.files.mesh != run.files.source && !isSameFile(run.files.mesh, run.files.source)) {
        copyFile(run.files.source, run.files.mesh);
    }
    if (run.map) {
        placeMap(*run.map);
    }
}

}  // namespace talvek::host
