#include "talvek/commands/clean_command.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

#include "talvek/formats/mesh_cleaning.h"
#include "talvek/formats/mesh_export.h"
#include "talvek/formats/mesh_file.h"
#include "talvek/plan/import_arguments.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

struct CleanOptions {
    std::string from;
    std::string to;
    ImportOptions import;
    CleaningChoice choice;
    bool mayReplace = false;

    bool removesNothing() const {
        return !choice.degenerate && !choice.doubled && !choice.nonManifold && !choice.isolated;
    }
};

void print(const std::string& path, std::int64_t count, const char* thing, const char* kind, bool isRemoved) {
    if (count > 0) {
        std::printf("%s: %s %s %s\n", path.c_str(), countOf(static_cast<std::uint64_t>(count), thing).c_str(), kind,
                    isRemoved ? "removed" : "kept");
    }
}

int cleanCommand(const CleanOptions& options) {
    requireWritableName(options.from, options.to, options.mayReplace);
    if (options.removesNothing()) {
        throw Failure(kExitUsage, "nothing to remove was named; talvek help clean tells what there is");
    }
    ImportedMesh mesh = importMesh(options.from, options.import);
    const CleaningCounts counts = cleanMesh(mesh, options.choice);
    const LoadedMesh loaded = completeMesh(std::move(mesh));
    exportMesh(*loaded.mesh, options.to);
    printImport(options.from, loaded);
    print(options.from, counts.degenerate, "triangle", "without an area", options.choice.degenerate);
    print(options.from, counts.doubled, "triangle", "on the vertices of another one", options.choice.doubled);
    print(options.from, counts.nonManifold, "triangle", "at an edge that has two already", options.choice.nonManifold);
    print(options.from, counts.isolated, "vertex", "that no triangle uses", options.choice.isolated);
    std::printf("%s: %s\n", options.to.c_str(), contentOf(*loaded.mesh).c_str());
    return kExitDone;
}

}  // namespace

void addCleanCommand(CommandSet& commands) {
    const auto options = std::make_shared<CleanOptions>();
    CLI::App& clean = commands.add("clean", "Remove from a mesh what stands in the way of weathering",
                                   [options] { return cleanCommand(*options); });
    addFileArgument(clean, options->from, "A", meshArgumentText("Mesh to read"));
    addFileArgument(clean, options->to, "B", "Mesh to write: " + writtenExtensions());
    clean.add_flag("--degenerate", options->choice.degenerate, "Remove triangles without an area");
    clean.add_flag("--doubled", options->choice.doubled, "Remove triangles on the vertices of an earlier one");
    clean.add_flag("--non-manifold", options->choice.nonManifold, "Remove triangles at edges that have two already");
    clean.add_flag("--isolated", options->choice.isolated, "Remove vertices that no triangle uses");
    addImportArguments(clean, options->import);
    clean.add_flag("--force", options->mayReplace, "Replace a file that has the name of B");
}

}  // namespace talvek::host
