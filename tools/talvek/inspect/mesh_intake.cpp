#include "talvek/inspect/mesh_intake.h"

#include <optional>
#include <utility>

#include "Vexo_Lib/mesh_formats.h"
#include "talvek/inspect/native_mesh.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

InspectedMesh inspectByLibrary(const std::string& path) {
    InspectedMesh inspected;
    inspected.engine.loaded.mesh = inspectNativeMesh(path, inspected.findings);
    return inspected;
}

bool isWhole(const InspectedMesh& inspected) {
    return !inspected.findings.isFatal() && inspected.findings.first(Severity::kLoss) == nullptr;
}

/// Whether importing may make another mesh of the one that the library reads.
bool mayDiffer(const InspectedMesh& inspected, const std::string& path, const ImportOptions& options) {
    if (!isWhole(inspected)) {
        return isForeignName(path) || (inspected.engine.loaded.mesh != nullptr && !options.isPlain());
    }
    const bool mayBeRecentred =
        !options.recentre && inspected.engine.loaded.mesh->largestCoordinate >= kLargestFineCoordinate;
    return mayBeRecentred || !options.isPlain();
}

}  // namespace

InspectedMesh inspectMesh(const std::string& path, const ImportOptions& options) {
    requireReadable(path);
    std::optional<InspectedMesh> native;
    if (isNativeName(path) && (meshFormatOf(path) != nullptr || !isForeignName(path))) {
        native = inspectByLibrary(path);
        if (!mayDiffer(*native, path, options)) {
            return std::move(*native);
        }
    }
    try {
        InspectedMesh imported{.engine = readEngineMesh(path, options), .findings = {}};
        checkPositions(*imported.engine.loaded.mesh, imported.findings);
        return imported;
    } catch (const Failure&) {
        // What the library's reader stumbles over is told more exactly.
        if (!native || isWhole(*native)) {
            throw;
        }
        return std::move(*native);
    }
}

}  // namespace talvek::host
