#include "weathering/frames.h"

#include <vector>

#include "Vexo_Lib/obj.h"
#include "api/session/report.h"
#include "api/session/session.h"
#include "weathering/surface.h"

namespace talvek {

namespace {

using Paths = std::vector<std::string>;

void writeSurface(const Object3D& surface, const Paths& paths) {
    // A frame that could not be written is absent, and that is how a host learns of it.
    static_cast<void>(writeObjFilesWithNormals(surface, paths));
}

/// The frame of an epoch, twice under the results flag.
Paths framePaths(std::int32_t epoch) {
    return Paths(session().saveResults ? 2 : 1, frameFileName(session().fileName, static_cast<std::uint32_t>(epoch)));
}

Paths firstPaths() {
    Paths paths = {std::string(session().fileName) + ".obj_i.obj"};
    if (session().saveResults) {
        paths.push_back(frameFileName(session().fileName, 0));
    }
    return paths;
}

std::string lastPath() {
    return std::string(session().fileName) + ".obj_w.obj";
}

void writeFirst(const Object3D& mesh, const Paths& paths) {
    writeSurface(*withNormals(mesh), paths);
}

}  // namespace

std::string frameFileName(std::string_view meshFileName, std::uint32_t frame) {
    return std::string(meshFileName) + ".obj_w_" + std::to_string(frame) + ".obj";
}

void saveFrame(const Object3D& surface, std::int32_t epoch) {
    report("\nSaving output object files...\n");
    Paths paths = framePaths(epoch);
    if (epoch == session().numEpochs) {
        paths.push_back(lastPath());
    }
    writeSurface(surface, paths);
}

void writeFrame(const Object3D& surface, std::int32_t epoch) {
    writeSurface(surface, framePaths(epoch));
}

void writeFirstSurface(const Object3D& mesh) {
    Paths paths = firstPaths();
    if (session().numEpochs <= 0) {
        paths.push_back(lastPath());
    }
    writeFirst(mesh, paths);
}

void writeSummary(const Object3D& first, const Object3D& last) {
    writeFirst(first, firstPaths());
    writeSurface(last, {lastPath()});
}

}  // namespace talvek
