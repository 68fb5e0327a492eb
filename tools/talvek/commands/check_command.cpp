#include "talvek/commands/check_command.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "talvek/formats/mesh_file.h"
#include "talvek/inspect/mesh_intake.h"
#include "talvek/inspect/surface_check.h"
#include "talvek/plan/import_arguments.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

struct CheckOptions {
    std::string path;
    ImportOptions import;
    bool asJson = false;
};

/// A mesh that has been looked through; without a mesh it does not load.
struct CheckedMesh {
    LoadedMesh loaded;
    Findings findings;

    const Object3D* mesh() const { return loaded.mesh.get(); }
    bool hasLoss() const { return findings.first(Severity::kLoss) != nullptr; }
};

CheckedMesh checkMesh(const CheckOptions& options) {
    InspectedMesh inspected = inspectMesh(options.path, options.import);
    CheckedMesh checked{.loaded = std::move(inspected.engine.loaded), .findings = std::move(inspected.findings)};
    if (checked.mesh() != nullptr) {
        checkSurface(*checked.mesh(), checked.findings);
    }
    return checked;
}

void printText(const std::string& path, const CheckedMesh& checked) {
    printImport(path, checked.loaded);
    for (const Finding& finding : checked.findings.all) {
        std::printf("%s: %s\n", path.c_str(), finding.text.c_str());
    }
    if (checked.mesh() == nullptr) {
        std::printf("%s: the mesh does not load\n", path.c_str());
        return;
    }
    const std::size_t count = checked.findings.all.size();
    std::printf("%s: the mesh loads: %s; %s%s\n", path.c_str(), contentOf(*checked.mesh()).c_str(),
                count == 0 ? "nothing found" : countOf(count, "finding").c_str(),
                checked.hasLoss() ? "; talvek run refuses it without --accept-loss" : "");
}

using Json = nlohmann::ordered_json;

Json jsonOf(const Finding& finding) {
    constexpr const char* kSeverities[] = {"notice", "loss", "fatal"};
    return {{"kind", finding.kind},
            {"severity", kSeverities[static_cast<std::size_t>(finding.severity)]},
            {"count", finding.count},
            {"text", finding.text}};
}

void printJson(const std::string& path, const CheckedMesh& checked) {
    constexpr int kVersion = 1;
    Json all = {{"schema", "talvek-check"}, {"version", kVersion}, {"file", path}};
    all["loads"] = checked.mesh() != nullptr;
    if (checked.mesh() != nullptr) {
        all["vertices"] = checked.mesh()->numVertices;
        all["faces"] = checked.mesh()->numFaces;
        all["texels"] = checked.mesh()->numTexels;
    }
    all["notes"] = checked.loaded.notes;
    all["findings"] = Json::array();
    for (const Finding& finding : checked.findings.all) {
        all["findings"].push_back(jsonOf(finding));
    }
    std::printf("%s\n", all.dump(-1, ' ', false, Json::error_handler_t::replace).c_str());
}

int checkCommand(const CheckOptions& options) {
    const CheckedMesh checked = checkMesh(options);
    (options.asJson ? printJson : printText)(options.path, checked);
    if (checked.mesh() == nullptr) {
        return kExitMesh;
    }
    return checked.findings.all.empty() ? kExitDone : kExitFindings;
}

}  // namespace

void addCheckCommand(CommandSet& commands) {
    const auto options = std::make_shared<CheckOptions>();
    CLI::App& check = commands.add("check", "Tell why a mesh does not load or will not weather well",
                                   [options] { return checkCommand(*options); });
    addFileArgument(check, options->path, "MESH", meshArgumentText("Mesh to look through"));
    addImportArguments(check, options->import);
    check.add_flag("--json", options->asJson, "Print one JSON object");
}

}  // namespace talvek::host
