#include "talvek/watch/frame_check.h"

#include <filesystem>

#include "Vexo_Lib/load3d.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/paths.h"

namespace talvek::host {

FrameCheck::FrameCheck(const std::vector<std::string>& names, std::optional<ExpectedCounts> expected)
    : expected_(expected) {
    for (const std::string& name : names) {
        if (const auto identity = system::identityOf(name.c_str())) {
            earlier_.emplace(name, *identity);
        }
    }
}

bool FrameCheck::isNew(const std::string& name) const {
    if (checked_.contains(name)) {
        return true;
    }
    const auto identity = system::identityOf(name.c_str());
    const auto earlier = earlier_.find(name);
    return identity && (earlier == earlier_.end() || earlier->second != *identity);
}

std::unique_ptr<Object3D> FrameCheck::check(const std::string& name) {
    if (!isNew(name)) {
        const bool isOld = std::filesystem::exists(pathOf(name));
        throw Failure(kExitFrame, name + ": the frame could not be written; " +
                                      (isOld ? "the file of that name is from an earlier run; " : "") +
                                      "look for room on the disk and for write permission");
    }
    std::unique_ptr<Object3D> mesh = LoadMeshFile(name.c_str());
    if (mesh == nullptr) {
        throw Failure(kExitFrame, name + ": the frame cannot be read back");
    }
    if (expected_ && (mesh->numVertices != expected_->vertices || mesh->numFaces != expected_->faces)) {
        throw Failure(kExitFrame, name + ": the frame is incomplete: " +
                                      countOf(static_cast<std::uint64_t>(mesh->numVertices), "vertex") + " and " +
                                      countOf(static_cast<std::uint64_t>(mesh->numFaces), "face") + " instead of " +
                                      std::to_string(expected_->vertices) + " and " + std::to_string(expected_->faces));
    }
    if (!expected_ && mesh->numVertices == 0) {
        throw Failure(kExitNoVertices, name + ": the frame holds no vertices; in mode 2 the faces have to lie in " +
                                           "[0, 1) of texture space and run counter-clockwise there");
    }
    checked_.insert(name);
    return mesh;
}

}  // namespace talvek::host
