#include "talvek/preflight/preparation.h"

#include <memory>
#include <utility>

#include "talvek/formats/mesh_file.h"
#include "talvek/preflight/crust_warning.h"
#include "talvek/preflight/log_check.h"
#include "talvek/preflight/mesh_intake.h"
#include "talvek/preflight/movement_check.h"
#include "talvek/preflight/movement_warnings.h"
#include "talvek/preflight/option_check.h"
#include "talvek/preflight/placement.h"
#include "talvek/preflight/preflight.h"
#include "talvek/preflight/size_warning.h"
#include "talvek/preflight/texture_check.h"
#include "talvek/preflight/value_check.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

PreparedRun prepareRun(const RunOptions& options, const SessionPlan& plan) {
    PreparedRun run;
    run.files = filesOfRun(options);
    run.plan = plan;
    run.keepInputFrame = options.keepInputFrame;
    run.frames = options.frames;
    requireDefinedPair(plan, options);
    requirePossibleValues(plan);
    requireFreeLog(options, run.files, plan.numEpochs());
    requireReplaceableParameters(options, run.files);
    if (lowerCaseExtension(options.mesh) == ".ply") {
        throw Failure(kExitMesh,
                      options.mesh + ": the simulation does not read PLY files; talvek convert makes an OBJ of it");
    }
    std::shared_ptr<const Object3D> mesh = takeMesh(options.mesh, options.acceptsLoss);
    requireSuitableMesh(plan, *mesh, run.files);
    requireFiniteDeltas(plan);
    run.map = requireMineralMap(plan, options, run.files);
    requireFreePlace(run.files, options.force);
    run.mesh = std::move(mesh);
    requireRoom(run);
    requireBoundedOutput(run, options.mostOutput);
    printWarnings({textureWarning(plan.mode, *run.mesh), crustWarning(plan), sizeWarning(plan, *run.mesh)});
    printWarnings(movementWarnings(plan, *run.mesh));
    if (plan.keepsVertices()) {
        run.counts = ExpectedCounts{run.mesh->numVertices, run.mesh->numFaces};
    }
    return run;
}

}  // namespace talvek::host
