#include "talvek/preflight/preparation.h"

#include <memory>
#include <utility>

#include "talvek/plan/import_arguments.h"
#include "talvek/preflight/crust_warning.h"
#include "talvek/preflight/log_check.h"
#include "talvek/preflight/mesh_loss.h"
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
    requireDefinedPair(plan, options);
    requirePossibleValues(plan);
    EngineMesh engine = takeMesh(options.mesh, options.import, options.acceptsLoss);
    PreparedRun run;
    run.files = filesOfRun(options, engine.isSource);
    run.isMeshMade = !engine.isSource;
    run.place = engine.loaded.place;
    printImport(options.mesh, engine.loaded);
    run.plan = plan;
    run.keepInputFrame = options.keepInputFrame;
    run.frames = options.frames;
    requireFreeLog(options, run.files, plan.numEpochs());
    requireReplaceableParameters(options, run.files);
    std::shared_ptr<const Object3D> mesh = std::move(engine.loaded.mesh);
    requireSuitableMesh(plan, *mesh, run.files);
    requireFiniteDeltas(plan);
    run.map = requireMineralMap(plan, options, run.files);
    requireFreePlace(run, options.force);
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
