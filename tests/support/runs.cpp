#include "support/runs.h"

#include "Vexo_Lib/load3d.h"
#include "support/meshes.h"

namespace talvek::test {

StoneRun::StoneRun(const Object3D& mesh) {
    writeFile(meshName(), objText(mesh));
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

}  // namespace talvek::test
