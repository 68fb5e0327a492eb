#include "weathering/run_mesh_offsetting.h"

#include <memory>
#include <new>

#include "api/session/report.h"
#include "api/session/session.h"
#include "mesh/shape_index.h"
#include "talvek.h"
#include "weathering/epoch_log.h"
#include "weathering/epoch_loop.h"
#include "weathering/frames.h"
#include "weathering/gaussian_offset.h"
#include "weathering/surface.h"

namespace talvek {

namespace {

void reportShapeIndex(bool isThere) {
    report(isThere ? "\tShape Index created!\n" : "\tShape Index NOT created!\n");
}

/// Null for the models that do without curvature.
std::unique_ptr<ShapeIndex> createAndReportShapeIndex(Object3D& surface) {
    requireCurvableMesh(&surface);
    std::unique_ptr<ShapeIndex> shapeIndex;
    try {
        if (session().model == TALVEK_MODEL_SMOOTHING) {
            shapeIndex = std::make_unique<ShapeIndex>(&surface, ShapeIndex::History::kForgotten);
        }
    } catch (const std::bad_alloc&) {
        reportShapeIndex(false);
        throw;
    }
    reportShapeIndex(true);
    return shapeIndex;
}

/// How far an epoch moves the surface under each model.
struct EpochOffsets {
    double constant;
    double mean;
    double sigma;
    double smooth;
};

EpochOffsets findAndReportOffsets(const EpochRecord& epoch) {
    const double days = epoch.days();
    const EpochOffsets offsets = {.constant = epoch.constantOffset() * days,
                                  .mean = epoch.meanOffset() * days,
                                  .sigma = epoch.offsetSpread() * days,
                                  .smooth = epoch.smoothing() * days};
    reportOffsetPerDay(epoch);
    report("delta const= %.6f\n", {offsets.constant});
    report("delta mean= %.6f\n", {offsets.mean});
    report("delta sigma = %.6f\n", {offsets.sigma});
    report("delta smooth = %.6f\n", {offsets.smooth});
    return offsets;
}

void moveRandomly(Object3D& surface, float mean, float sigma) {
    for (std::int32_t vertex = 0; vertex < surface.numVertices; ++vertex) {
        moveVertex(surface, vertex, static_cast<float>(gaussianOffset(mean, sigma)));
    }
}

void moveByCurvature(Object3D& surface, ShapeIndex& shapeIndex, float smooth) {
    shapeIndex.computeMeanAndGaussian();
    for (std::int32_t vertex = 0; vertex < surface.numVertices; ++vertex) {
        moveVertex(surface, vertex, surface.meanCurvature[static_cast<std::size_t>(vertex)] * smooth);
    }
}

void moveByModel(Object3D& surface, ShapeIndex* shapeIndex, const EpochOffsets& offsets) {
    switch (session().model) {
        case TALVEK_MODEL_CONSTANT_OFFSET:
            moveAlongNormals(surface, static_cast<float>(offsets.constant));
            break;
        case TALVEK_MODEL_RANDOM_OFFSET:
            moveRandomly(surface, static_cast<float>(offsets.mean), static_cast<float>(offsets.sigma));
            break;
        case TALVEK_MODEL_SMOOTHING:
            moveByCurvature(surface, *shapeIndex, static_cast<float>(offsets.smooth));
            break;
        default:
            break;
    }
}

void weather(Object3D& surface) {
    const std::unique_ptr<ShapeIndex> shapeIndex = createAndReportShapeIndex(surface);
    weatherThroughEpochs(surface, [&shapeIndex](Object3D& moved, const EpochRecord& epoch) {
        moveByModel(moved, shapeIndex.get(), findAndReportOffsets(epoch));
    });
}

}  // namespace

void runMeshOffsetting(const Object3D& mesh) {
    weather(*workingCopy(mesh));
    writeFirstSurface(mesh);
}

}  // namespace talvek
