#include "weathering/frames.h"

#include "Vexo_Lib/obj.h"
#include "api/report.h"
#include "api/session.h"

namespace talvek {

namespace {

void writeSurface(const Object3D& surface, const std::string& path) {
    // A frame that could not be written is absent, and that is how a host learns of it.
    static_cast<void>(WriteObjFileWithNormals(surface, path.c_str()));
}

}  // namespace

std::string frameFileName(std::string_view meshFileName, std::uint32_t frame) {
    return std::string(meshFileName) + ".obj_w_" + std::to_string(frame) + ".obj";
}

void saveFrame(const Object3D& surface, std::int32_t epoch) {
    report("\nSaving output object files...\n");
    writeFrame(surface, epoch);
}

void writeFrame(const Object3D& surface, std::int32_t epoch) {
    const std::string path = frameFileName(session().fileName, static_cast<std::uint32_t>(epoch));
    writeSurface(surface, path);
    if (session().saveResults) {
        writeSurface(surface, path);
    }
}

void writeSummary(const Object3D& first, const Object3D& last) {
    const std::string stem = session().fileName;
    writeSurface(first, stem + ".obj_i.obj");
    if (session().saveResults) {
        writeSurface(first, frameFileName(stem, 0));
    }
    writeSurface(last, stem + ".obj_w.obj");
}

}  // namespace talvek
