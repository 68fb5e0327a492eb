#include "talvek/inspect/native_mesh.h"

#include "talvek/formats/mesh_file.h"
#include "talvek/inspect/binary_check.h"
#include "talvek/inspect/mesh_survey.h"
#include "talvek/inspect/obj_check.h"
#include "talvek/inspect/points.h"
#include "talvek/inspect/wrl_check.h"

namespace talvek::host {

namespace {

void checkBytes(const std::string& path, Findings& findings) {
    const std::string extension = lowerCaseExtension(path);
    if (extension == ".sas") {
        checkSasFile(path, findings);
    } else if (extension == ".bin") {
        checkBinFile(path, findings);
    } else if (extension == ".fim") {
        checkFimFile(path, findings);
    } else if (extension == ".wrl") {
        checkWrlFile(path, findings);
    }
}

void checkIndices(const Object3D& mesh, Findings& findings) {
    const std::int64_t corner = firstBadCorner(mesh);
    if (corner >= 0 && !findings.isFatal()) {
        findings.fail("indicesOutOfRange", 1,
                      "face " + std::to_string(corner / 3 + 1) + " names vertex " +
                          std::to_string(mesh.faceSpan()[static_cast<std::size_t>(corner)]) + " (counted from 0) of " +
                          std::to_string(mesh.numVertices));
    }
}

std::unique_ptr<Object3D> readInspected(const std::string& path, Findings& findings) {
    std::unique_ptr<Object3D> mesh = readUnchecked(path);
    if (mesh == nullptr) {
        if (!findings.isFatal()) {
            findings.fail("nothingRead", 1,
                          "the reader for " + formatName(path) +
                              " files found nothing it could use, or promises that cannot be true; its report stands "
                              "above");
        }
        return nullptr;
    }
    if (lowerCaseExtension(path) == ".obj") {
        checkObjFile(path, *mesh, findings);
    }
    checkIndices(*mesh, findings);
    return findings.isFatal() ? nullptr : std::move(mesh);
}

}  // namespace

std::unique_ptr<Object3D> inspectNativeMesh(const std::string& path, Findings& findings) {
    checkBytes(path, findings);
    if (lowerCaseExtension(path) == ".wrl" && findings.isFatal()) {
        return nullptr;
    }
    std::unique_ptr<Object3D> mesh = readInspected(path, findings);
    if (mesh != nullptr) {
        mesh->updateNormals(true);
        mesh->largestCoordinate = largestAbsoluteCoordinate(*mesh);
        checkPositions(*mesh, findings);
    }
    return mesh;
}

void checkPositions(const Object3D& mesh, Findings& findings) {
    const std::int64_t notFinite = countNotFinite(mesh);
    if (notFinite == 0) {
        return;
    }
    std::int64_t torn = 0;
    for (std::size_t i = 0; i + 2 < mesh.faceSpan().size(); i += 3) {
        bool isWhole = true;
        for (const std::int32_t vertex : mesh.faceSpan().subspan(i, 3)) {
            isWhole = isWhole && isFinite(pointOf(mesh, vertex));
        }
        torn += isWhole ? 0 : 1;
    }
    findings.lose("notFinite", notFinite,
                  partText(notFinite, mesh.numVertices, "vertex positions") +
                      " infinite or not a number; the surface tears there, at " +
                      partText(torn, mesh.numFaces, "faces"));
}

}  // namespace talvek::host
