#include "talvek/preflight/mesh_loss.h"

#include <utility>

#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

std::string lossText(const Findings& findings) {
    std::string text;
    for (const Finding& finding : findings.all) {
        if (finding.severity == Severity::kLoss) {
            text += (text.empty() ? "" : "; ") + finding.text;
        }
    }
    return text;
}

}  // namespace

EngineMesh takeMesh(const std::string& path, const ImportOptions& options, bool acceptsLoss) {
    InspectedMesh inspected = inspectMesh(path, options);
    if (inspected.engine.loaded.mesh == nullptr) {
        throw Failure(kExitMesh,
                      path + ": the mesh does not load: " + inspected.findings.first(Severity::kFatal)->text);
    }
    const std::string loss = lossText(inspected.findings);
    if (!loss.empty() && !acceptsLoss) {
        throw Failure(kExitRefused, path + ": " + loss + "; --accept-loss weathers what is left");
    }
    if (!loss.empty()) {
        printWarning(path + ": " + loss);
    }
    return std::move(inspected.engine);
}

}  // namespace talvek::host
