#include "talvek/preflight/mesh_intake.h"

#include "talvek/formats/mesh_file.h"
#include "talvek/inspect/native_mesh.h"
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

std::unique_ptr<Object3D> takeMesh(const std::string& path, bool acceptsLoss) {
    if (!isNativeName(path)) {
        return readMesh(path);
    }
    requireReadable(path);
    Findings findings;
    std::unique_ptr<Object3D> mesh = inspectNativeMesh(path, findings);
    if (mesh == nullptr) {
        throw Failure(kExitMesh, path + ": the mesh does not load: " + findings.first(Severity::kFatal)->text);
    }
    const std::string loss = lossText(findings);
    if (!loss.empty() && !acceptsLoss) {
        throw Failure(kExitRefused, path + ": " + loss + "; --accept-loss weathers what is left");
    }
    if (!loss.empty()) {
        printWarning(path + ": " + loss);
    }
    return mesh;
}

}  // namespace talvek::host
