#include "talvek/commands/check_command.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "talvek/formats/mesh_file.h"
#include "talvek/inspect/binary_check.h"
#include "talvek/inspect/mesh_size.h"
#include "talvek/inspect/mesh_survey.h"
#include "talvek/inspect/obj_check.h"
#include "talvek/plan/import_arguments.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/whole_file.h"

namespace talvek::host {

namespace {

void checkFormat(const std::string& path, Findings& findings) {
    const std::string extension = lowerCaseExtension(path);
    if (extension == ".obj") {
        checkObjText(readWholeFile(path, kExitMesh), findings);
    } else if (extension == ".sas") {
        checkSasFile(path, findings);
    } else if (extension == ".bin") {
        checkBinFile(path, findings);
    } else if (extension == ".fim") {
        checkFimFile(path, findings);
    }
}

void checkIndices(const Object3D& mesh, Findings& findings) {
    const std::int64_t corner = firstBadCorner(mesh);
    if (corner >= 0 && !findings.isFatal) {
        findings.addFatal("face " + std::to_string(corner / 3 + 1) + " names vertex " +
                          std::to_string(mesh.faceSpan()[static_cast<std::size_t>(corner)]) + " (counted from 0) of " +
                          std::to_string(mesh.numVertices));
    }
}

void addIf(Findings& findings, std::int64_t count, const char* thing, const std::string& consequence) {
    if (count > 0) {
        findings.add(countOf(static_cast<std::uint64_t>(count), thing) + " " + consequence);
    }
}

void checkTexture(const TextureSurvey& survey, Findings& findings) {
    addIf(findings, survey.absent, "face", "naming texture coordinates that are not there");
    if (survey.faces > 0) {
        addIf(findings, survey.without, "face", "without texture coordinates, which others have");
    }
    addIf(findings, survey.unused, "texture coordinate", "that no face uses");
    addIf(findings, survey.outside, "face", "with texture coordinates outside [0, 1), where no mineral map lies");
    addIf(findings, survey.clockwise, "face", "clockwise in texture space, which mode 2 passes over");
}

/// Single-precision numbers this far apart lose some of what a year does to a stone.
constexpr double kCoarseSpacing = 0.001;

void checkPlace(const Object3D& mesh, Findings& findings) {
    const double farthest = std::ranges::max(largestCoordinates(mesh));
    const double spacing = spacingAt(farthest);
    if (spacing < kCoarseSpacing) {
        return;
    }
    const MeshSize size = sizeOf(mesh);
    const bool isFar = farthest > size.largest();
    findings.add("coordinates reach " + briefNumber(farthest) + " mm, where single-precision numbers are " +
                 briefNumber(spacing) + " mm apart and smaller movements are lost; the mesh itself is " + size.text() +
                 " large" + (isFar ? ": move it to the origin" : ""));
}

void checkSurface(const Object3D& mesh, Findings& findings) {
    const MeshSurvey survey = surveyMesh(mesh);
    if (mesh.numFaces == 0 || mesh.numVertices == 0) {
        findings.add("there is no surface: " + countOf(static_cast<std::uint64_t>(mesh.numVertices), "vertex") + ", " +
                     countOf(static_cast<std::uint64_t>(mesh.numFaces), "face"));
        return;
    }
    addIf(findings, survey.vertices.notFinite, "vertex position", "infinite or not a number; the surface tears there");
    addIf(findings, survey.vertices.withoutNormal, "vertex position",
          "without a normal: the faces around cancel out or have no area; nothing moves such a vertex, and smoothing "
          "loses it");
    addIf(findings, survey.faces.degenerate, "face",
          "without an area, the first of them face " + std::to_string(survey.faces.firstDegenerate + 1) +
              "; such faces have no direction and hold their vertices' normals back");
    addIf(findings, survey.edges.nonManifold, "edge",
          "with more than two faces; curvature, and with it smoothing, is not defined there");
    addIf(
        findings, survey.edges.inconsistent, "edge",
        "inconsistently oriented: its faces are turned against each other, and the surface moves to both sides there");
    addIf(findings, survey.vertices.unreferenced, "vertex position", "that no face uses and that stays in place");
    addIf(findings, survey.vertices.duplicate, "vertex position",
          "shared with another vertex; where surfaces only seem joined they come apart as they move");
    checkPlace(mesh, findings);
    checkTexture(survey.texture, findings);
}

int print(const std::string& path, const Findings& findings, const Object3D* mesh) {
    for (const std::string& sentence : findings.sentences) {
        std::printf("%s: %s\n", path.c_str(), sentence.c_str());
    }
    if (findings.isFatal || mesh == nullptr) {
        std::printf("%s: the mesh does not load\n", path.c_str());
        return kExitMesh;
    }
    std::printf("%s: the mesh loads: %s; %s\n", path.c_str(), contentOf(*mesh).c_str(),
                findings.sentences.empty() ? "nothing found" : countOf(findings.sentences.size(), "finding").c_str());
    return findings.sentences.empty() ? kExitDone : kExitFindings;
}

/// A format of the library's, as its reader sees it.
int checkNative(const std::string& path) {
    Findings findings;
    checkFormat(path, findings);
    const std::unique_ptr<Object3D> mesh = readUnchecked(path);
    if (mesh == nullptr && !findings.isFatal) {
        findings.addFatal(
            "the reader for " + formatName(path) +
            " files found nothing it could use, or promises that cannot be true; its report stands above");
    }
    if (mesh != nullptr) {
        checkIndices(*mesh, findings);
    }
    if (mesh != nullptr && !findings.isFatal) {
        mesh->updateNormals(true);
        checkSurface(*mesh, findings);
    }
    return print(path, findings, mesh.get());
}

int checkCommand(const std::string& path, const ImportOptions& options) {
    requireReadable(path);
    if (isNativeName(path) && options.isPlain()) {
        return checkNative(path);
    }
    const LoadedMesh loaded = loadMesh(path, options);
    printImport(path, loaded);
    Findings findings;
    checkSurface(*loaded.mesh, findings);
    return print(path, findings, loaded.mesh.get());
}

}  // namespace

void addCheckCommand(CommandSet& commands) {
    struct CheckOptions {
        std::string path;
        ImportOptions import;
    };
    const auto options = std::make_shared<CheckOptions>();
    CLI::App& check = commands.add("check", "Tell why a mesh does not load or will not weather well",
                                   [options] { return checkCommand(options->path, options->import); });
    addFileArgument(check, options->path, "MESH", meshArgumentText("Mesh to look through"));
    addImportArguments(check, options->import);
}

}  // namespace talvek::host
