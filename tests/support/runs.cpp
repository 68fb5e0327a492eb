#include "support/runs.h"

#include <algorithm>
#include <cstring>

#include "Vexo_Lib/load3d.h"
#include "support/meshes.h"

namespace talvek::test {

namespace {

/// FNV-1a in steps of eight bytes.
void addTo(std::uint64_t& checksum, std::string_view text) {
    while (!text.empty()) {
        std::uint64_t word = 0;
        const std::size_t size = std::min(sizeof word, text.size());
        std::memcpy(&word, text.data(), size);
        checksum = (checksum ^ word) * 1099511628211U;
        checksum ^= checksum >> 29;
        text.remove_prefix(size);
    }
}

}  // namespace

StoneRun::StoneRun(const Object3D& mesh) : StoneRun(objText(mesh), ".obj") {}

StoneRun::StoneRun(std::string_view meshBytes, std::string_view extension) : extension_(extension) {
    writeFile(meshName(), meshBytes);
}

std::int32_t StoneRun::start() {
    talvekFree();
    talvekSetFileName(meshName().c_str());
    talvekSetTimeSpan(epochs, days);
    talvekSetMode(mode);
    talvekSetModel(model);
    talvekSetResults(saveResults ? 1 : 0);
    talvekInit();
    for (std::size_t i = 0; i < environment.size(); ++i) {
        talvekSetEpochParams(static_cast<std::uint32_t>(i) + 1, environment[i].data());
    }
    return talvekStart();
}

std::string StoneRun::frameText(std::int32_t frame) const {
    return readText(meshName() + ".obj_w_" + std::to_string(frame) + ".obj");
}

std::unique_ptr<Object3D> StoneRun::frame(std::int32_t frame) const {
    return LoadMeshFile((meshName() + ".obj_w_" + std::to_string(frame) + ".obj").c_str());
}

std::string StoneRun::summaryText(char kind) const {
    return readText(meshName() + ".obj_" + kind + ".obj");
}

std::uint64_t StoneRun::framesChecksum() const {
    std::uint64_t checksum = 14695981039346656037U;
    addTo(checksum, summaryText('i'));
    for (std::int32_t n = 1; n <= epochs; ++n) {
        addTo(checksum, frameText(n));
    }
    addTo(checksum, summaryText('w'));
    return checksum;
}

}  // namespace talvek::test
