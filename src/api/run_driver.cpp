#include "api/run_driver.h"

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <string_view>

#include "Vexo_Lib/load3d.h"
#include "api/engine_name.h"
#include "api/session/operating_modes.h"
#include "api/session/report.h"
#include "api/session/session.h"
#include "api/session/session_inputs.h"
#include "base/pending_file.h"
#include "mesh/object3d.h"
#include "talvek.h"
#include "weathering/run_mesh_data.h"
#include "weathering/run_mesh_offsetting.h"
#include "weathering/run_mineral_grid.h"
#include "weathering/run_mineral_mesh.h"

namespace talvek {

namespace {

using Runner = void (*)(const Object3D& mesh);

/// By the modes' numbers.
constexpr std::array<Runner, kOperatingModes.size()> kRunners = {runMeshOffsetting, runMeshData, runMineralGrid,
                                                                 runMineralMesh};

bool hasEpochRecords() {
    return session().epochTable && session().numEpochs <= session().epochTable.size;
}

std::int32_t abortRun(std::int32_t result, std::string_view message) {
    report("%s\nProcessing ABORTED!\n", {message});
    return result;
}

void announceSession() {
    const std::string_view fileName = session().fileName;
    report("\nInitializing Talvek Session for %s ...\n", {fileName});
    report("\t%s  %s\n", {kEngineName, std::string_view(engineVersion())});
    report("\nComputing Weathering on %s ...\n", {fileName});
}

void reportMesh(const Object3D& mesh) {
    report("\tMesh loaded!\n");
    report("\tFaces=%d\tVertices=%d\tTexels=%d\n", {mesh.numFaces, mesh.numVertices, mesh.numTexels});
    double centre[3];
    centreOfMass(mesh, centre);
    report("\tObj_CM=[%.2f,%.2f,%.2f]\n", {centre[0], centre[1], centre[2]});
    report("\tObj_mean_edge_length=%.2f (mm)\n", {static_cast<double>(mesh.meanEdgeLength)});
    const BoundingBox box = boundingBox(mesh);
    report("\tXmin=%.2f Xmax=%.2f Ymin=%.2f Ymax=%.2f Zmin=%.2f Zmax=%.2f\n",
           {static_cast<double>(box.xmin), static_cast<double>(box.xmax), static_cast<double>(box.ymin),
            static_cast<double>(box.ymax), static_cast<double>(box.zmin), static_cast<double>(box.zmax)});
}

void reportMaterial(const MaterialRecord& m) {
    report("\nMaterial parameters:\n");
    report("De: %.2f\tDen: %.2f\tHd: %.2f\tKs: %.2f\nKsn: %.2f\tKr: %.2f\tMb: %.2f\tDb: %.2f\n",
           {m.de(), m.den(), m.hd(), m.ks(), m.ksn(), m.kr(), m.mb(), m.db()});
}

/// The mesh of the session with no more than is read of it; null when it does not load.
std::unique_ptr<Object3D> loadMesh(bool readsTexture) {
    std::unique_ptr<Object3D> mesh = loadBareMesh(session().fileName);
    if (mesh != nullptr && !readsTexture) {
        mesh->texels.reset();
        mesh->texelIndex.reset();
    }
    return mesh;
}

std::int32_t runMode(const OperatingMode& mode) {
    const std::string_view fileName = session().fileName;
    report("\nLoading File %s ...\n", {fileName});
    const std::unique_ptr<Object3D> mesh = loadMesh(mode.needsMap);
    if (mesh == nullptr) {
        return abortRun(TALVEK_ERROR_MESH, "\tMesh NOT loaded!");
    }
    mesh->measureFaces();
    reportMesh(*mesh);
    if (!mode.isOffsetting) {
        reportMaterial(*session().materialParams);
    }
    session().status.store(TALVEK_STATUS_COMPUTING, std::memory_order_relaxed);
    kRunners[static_cast<std::size_t>(session().mode)](*mesh);
    return TALVEK_OK;
}

std::int32_t checkAndRun() {
    announceSession();
    const OperatingMode* mode = operatingMode(session().mode);
    if (mode == nullptr) {
        return abortRun(TALVEK_ERROR_UNDEFINED_MODE, "Operating mode: Undefined!");
    }
    report(mode->line);
    const WeatheringModel* model = weatheringModel(*mode, session().model);
    if (model == nullptr) {
        return abortRun(TALVEK_ERROR_UNDEFINED_MODEL, "Weathering model: Undefined!");
    }
    report(model->line);
    if (session().materialParams == nullptr) {
        return abortRun(TALVEK_ERROR_NULL, "Material params undefined!");
    }
    if (!hasEpochRecords()) {
        return abortRun(TALVEK_ERROR_NULL, "Envirinmetal params undefined!");
    }
    return runMode(*mode);
}

/// Runs, or returns why the run turned out to be impossible half-way.
std::string_view tryRun(std::int32_t& result) noexcept {
    try {
        result = checkAndRun();
        return {};
    } catch (const char* message) {
        return message;
    } catch (const std::bad_alloc&) {
        return "Out of memory!";
    }
}

std::int32_t runGuarded() noexcept {
    const std::int32_t statusBefore = session().status.load(std::memory_order_relaxed);
    std::int32_t result = TALVEK_OK;
    const std::string_view failure = tryRun(result);
    if (failure.empty()) {
        return result;
    }
    session().status.store(statusBefore, std::memory_order_relaxed);
    return abortRun(TALVEK_ERROR_MESH, failure);
}

/// What runs that were ended have left unfinished.
void removeLeftovers() noexcept {
    try {
        removeAbandonedFilesBeside(session().fileName);
    } catch (const std::bad_alloc&) {
        // It is there for the next run.
    }
}

}  // namespace

std::int32_t runSimulation() noexcept {
    TalvekSession& current = session();
    current.stopRequested.store(false, std::memory_order_relaxed);
    removeLeftovers();
    if (!isSessionInput(current.logFileName)) {
        current.logFile = system::File::openForWriting(current.logFileName);
    }
    const std::int32_t result = runGuarded();
    if (result == TALVEK_OK) {
        current.status.store(TALVEK_STATUS_FINISHED, std::memory_order_relaxed);
        report("\nFile %s processed.\n", {std::string_view(current.fileName)});
        report("\nClosing Talvek Session for %s ...\n", {std::string_view(current.fileName)});
    }
    current.logFile.close();
    return result;
}

}  // namespace talvek
