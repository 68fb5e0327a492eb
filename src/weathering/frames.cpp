#include "weathering/frames.h"

#include <string>
#include <utility>
#include <vector>

#include "Vexo_Lib/obj.h"
#include "api/session/session.h"
#include "api/session/session_inputs.h"
#include "base/run_file_names.h"
#include "weathering/surface.h"

namespace talvek {

namespace {

using Paths = std::vector<std::string>;

void writeSurface(const Object3D& surface, Paths paths) {
    std::erase_if(paths, [](const std::string& path) { return isSessionInput(path.c_str()); });
    // A frame that could not be written is absent, and that is how a host learns of it.
    static_cast<void>(writeObjFilesWithNormals(surface, paths));
}

/// The frame of an epoch, twice under the results flag.
Paths framePaths(std::int32_t epoch) {
    return Paths(session().saveResults ? 2 : 1, frameFileName(session().fileName, static_cast<std::uint32_t>(epoch)));
}

}  // namespace

void writeFrame(const Object3D& surface, std::int32_t epoch) {
    writeSurface(surface, framePaths(epoch));
}

void writeLastFrame(const Object3D& surface, std::int32_t epoch) {
    Paths paths = framePaths(epoch);
    paths.push_back(lastSurfaceName(session().fileName));
    writeSurface(surface, std::move(paths));
}

void writeFirstSurface(const Object3D& mesh) {
    Paths paths = {firstSurfaceName(session().fileName)};
    if (session().saveResults) {
        paths.push_back(frameFileName(session().fileName, 0));
    }
    writeSurface(*withNormals(mesh), std::move(paths));
}

void writeLastSurface(const Object3D& surface) {
    writeSurface(surface, {lastSurfaceName(session().fileName)});
}

}  // namespace talvek
