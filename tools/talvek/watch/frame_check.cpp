#include "talvek/watch/frame_check.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <thread>

#include "Vexo_Lib/load3d.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/paths.h"

namespace talvek::host {

namespace fs = std::filesystem;

namespace {

// How far apart two writes have to be for their times to differ.
#ifdef _WIN32
constexpr std::chrono::milliseconds kTimeResolution{2000};
#else
constexpr std::chrono::milliseconds kTimeResolution{20};
#endif

void waitUntilTimesDifferFrom(fs::file_time_type written) {
    const auto age = fs::file_time_type::clock::now() - written;
    if (age < kTimeResolution) {
        std::this_thread::sleep_for(kTimeResolution);
    }
}

}  // namespace

FrameCheck::FrameCheck(const std::vector<std::string>& names, std::optional<ExpectedCounts> expected)
    : expected_(expected) {
    Time newest = Time::min();
    for (const std::string& name : names) {
        std::error_code isAbsent;
        const Time written = fs::last_write_time(pathOf(name), isAbsent);
        if (!isAbsent) {
            earlier_.emplace(name, written);
            newest = std::max(newest, written);
        }
    }
    if (!earlier_.empty()) {
        waitUntilTimesDifferFrom(newest);
    }
}

bool FrameCheck::isNew(const std::string& name) const {
    std::error_code isAbsent;
    const Time written = fs::last_write_time(pathOf(name), isAbsent);
    const auto earlier = earlier_.find(name);
    return !isAbsent && (earlier == earlier_.end() || earlier->second != written);
}

void FrameCheck::check(const std::string& name) {
    if (!isNew(name)) {
        const bool isOld = fs::exists(pathOf(name));
        throw Failure(kExitFrame, name + ": the frame could not be written; " +
                                      (isOld ? "the file of that name is from an earlier run; " : "") +
                                      "look for room on the disk and for write permission");
    }
    const std::unique_ptr<Object3D> mesh = LoadMeshFile(name.c_str());
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
}

}  // namespace talvek::host
