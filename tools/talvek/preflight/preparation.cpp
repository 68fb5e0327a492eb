#include "talvek/preflight/preparation.h"

#include <memory>

#include "talvek/formats/mesh_file.h"
#include "talvek/preflight/crust_warning.h"
#include "talvek/preflight/log_check.h"
#include "talvek/preflight/mesh_intake.h"
#include "talvek/preflight/movement_check.h"
#include "talvek/preflight/movement_warnings.h"
#include "talvek/preflight/option_check.h"
#include "talvek/preflight/preflight.h"
#include "talvek/preflight/size_warning.h"
#include "talvek/preflight/texture_check.h"
#include "talvek/preflight/value_check.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

PreparedRun prepareRun(const RunOptions& options, const SessionPlan& plan) {
    PreparedRun run{
        .files = RunFiles(options.mesh), .plan = plan, .keepInputFrame = options.keepInputFrame, .counts = {}};
    requireDefinedPair(plan, options);
    requirePossibleValues(plan);
    requireFreeLog(options, run.files, plan.numEpochs());
    if (lowerCaseExtension(options.mesh) == ".ply") {
        throw Failure(kExitMesh,
                      options.mesh + ": the simulation does not read PLY files; talvek convert makes an OBJ of it");
    }
    const std::unique_ptr<Object3D> mesh = takeMesh(options.mesh, options.acceptsLoss);
    requireSuitableMesh(plan, *mesh, run.files);
    requireFiniteDeltas(plan);
    const std::optional<MapToPlace> map = requireMineralMap(plan, options, run.files);
    requireRoom(plan, *mesh, run.files, run.keepInputFrame, map ? map->bytes.size() : 0);
    printWarnings({textureWarning(plan.mode, *mesh), crustWarning(plan), sizeWarning(plan, *mesh)});
    printWarnings(movementWarnings(plan, *mesh));
    if (plan.keepsVertices()) {
        run.counts = ExpectedCounts{mesh->numVertices, mesh->numFaces};
    }
    if (map) {
        placeMap(*map);
    }
    return run;
}

}  // namespace talvek::host
