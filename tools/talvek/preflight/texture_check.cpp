#include "talvek/preflight/texture_check.h"

#include <cstddef>
#include <memory>
#include <string>

#include "mesh/texture.h"
#include "talvek.h"
#include "talvek/inspect/texture_survey.h"
#include "talvek/plan/mode_names.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "weathering/grid_mesh.h"
#include "weathering/grid_surface.h"
#include "weathering/mineral_offsets.h"
#include "weathering/rasterise.h"

namespace talvek::host {

namespace {

/// "2 faces": what stands in mode 2's messages before the reasons why faces are not drawn.
std::string facesOf(const Object3D& mesh) {
    return countOf(static_cast<std::uint64_t>(mesh.numFaces), "face");
}

/// A list of clauses, those that count nothing left out.
class Clauses {
  public:
    Clauses& add(std::int64_t count, const char* one, const char* many) {
        if (count > 0) {
            text_ += (text_.empty() ? "" : ", ") + std::to_string(count) + (count == 1 ? one : many);
        }
        return *this;
    }
    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

Clauses undrawnFaces(const GridFaces& faces) {
    return Clauses()
        .add(faces.untextured, " has no usable texture coordinates", " have no usable texture coordinates")
        .add(faces.clockwise, " runs clockwise in texture space", " run clockwise in texture space")
        .add(faces.flat, " has no area in texture space", " have no area in texture space")
        .add(faces.outside, " lies outside [0, 1) of texture space", " lie outside [0, 1) of texture space");
}

/// Draws the mesh as the first epoch finds it.
bool isDrawn(const Object3D& mesh) {
    const std::unique_ptr<Grid> positions = rasteriseToGrid(mesh, mesh.vertices.get());
    GridSurface surface;
    surface.resample(*gridToMesh(positions.get(), true));
    for (std::int64_t x = 0; x < kGridSize; ++x) {
        for (std::int64_t y = 0; y < kGridSize; ++y) {
            if (!isEmptyCell(surface.positions().pixel(x, y))) {
                return true;
            }
        }
    }
    return false;
}

void requireDrawnFaces(const Object3D& mesh, const std::string& meshName) {
    if (isDrawn(mesh)) {
        return;
    }
    const GridFaces faces = surveyGridFaces(mesh);
    const std::string cells = std::to_string(kGridSize);
    const std::string tooSmall = " too small for the " + cells + " x " + cells + " grid";
    const std::string reasons =
        undrawnFaces(faces)
            .add(mesh.numFaces - faces.undrawn(), (" is" + tooSmall).c_str(), (" are" + tooSmall).c_str())
            .text();
    throw Failure(kExitRefused, meshName + ": " + modeName(TALVEK_MODE_QEMSCAN) + " would draw nothing: of " +
                                    facesOf(mesh) + ", " + reasons +
                                    "; lay the mesh out anew so that its faces lie in [0, 1) and run "
                                    "counter-clockwise, or use mode 1 (mesh)");
}

std::string gridWarning(const Object3D& mesh) {
    const GridFaces faces = surveyGridFaces(mesh);
    const std::string name = modeName(TALVEK_MODE_QEMSCAN);
    if (faces.undrawn() == 0) {
        return faces.partly == 0 ? ""
                                 : name + " draws only the part inside [0, 1) of texture space of " +
                                       std::to_string(faces.partly) + " of " + facesOf(mesh);
    }
    return name + " does not draw " + std::to_string(faces.undrawn()) + " of " + facesOf(mesh) + ": " +
           undrawnFaces(faces).text() +
           (faces.partly > 0 ? "; of " + std::to_string(faces.partly) + " more it draws only the part inside" : "");
}

/// The vertices under which mode 3 finds no pixel of the map.
struct VerticesOffMap {
    std::int64_t count = 0;
    /// Those of them before the first vertex with a pixel, which do not move.
    std::int64_t still = 0;
    bool areAll = true;
};

VerticesOffMap findVerticesOffMap(const Object3D& mesh) {
    VerticesOffMap off;
    const HeapArray<std::int32_t> texelOf = texelOfVertices(mesh);
    for (std::size_t vertex = 0; vertex < static_cast<std::size_t>(mesh.numVertices); ++vertex) {
        if (isOnMap(mesh, texelOf[vertex])) {
            off.areAll = false;
        } else {
            ++off.count;
            off.still += off.areAll ? 1 : 0;
        }
    }
    return off;
}

void requireVertexOnMap(const Object3D& mesh, const std::string& meshName) {
    if (findVerticesOffMap(mesh).areAll) {
        throw Failure(kExitRefused, meshName + ": " + modeName(TALVEK_MODE_GRAIN_WEAVER) +
                                        " would move nothing: no vertex has a texture coordinate in [0, 1); lay the "
                                        "mesh out anew, or use mode 1 (mesh)");
    }
}

std::string mapWarning(const Object3D& mesh) {
    const VerticesOffMap off = findVerticesOffMap(mesh);
    if (off.count == 0) {
        return {};
    }
    const std::string still = off.still == 1 ? ", and the first does not move"
                                             : ", and the first " + std::to_string(off.still) + " do not move";
    return std::to_string(off.count) + " of " + std::to_string(mesh.numVertices) + " vertices" +
           (off.count == 1 ? " has" : " have") + " no texture coordinate in [0, 1); in " +
           modeName(TALVEK_MODE_GRAIN_WEAVER) + (off.count == 1 ? " it" : " each") +
           " takes the mineral of the vertex before it in the file" + (off.still > 0 ? still : "");
}

/// Mode 2 takes the vertices' own numbers where faces name no texels.
bool canNameTexels(std::int32_t mode, const Object3D& mesh) {
    return mode == TALVEK_MODE_QEMSCAN ? hasTexels(mesh) : hasNamedTexels(mesh);
}

void requireNamedTexels(std::int32_t mode, const Object3D& mesh, const std::string& meshName) {
    const std::string needs = meshName + ": " + modeName(mode) + " needs texture coordinates, and ";
    const TextureSurvey survey = surveyTexture(mesh);
    if (!hasTexels(mesh)) {
        throw Failure(kExitRefused, needs +
                                        "this mesh has none; export it with texture coordinates, or use mode 1 "
                                        "(mesh)");
    }
    if (!canNameTexels(mode, mesh) || survey.unused == mesh.numTexels) {
        throw Failure(kExitRefused, needs +
                                        "no face of this mesh names one that is there; export it with faces such as "
                                        "\"f 1/1 2/2 3/3\", or use mode 1 (mesh)");
    }
}

}  // namespace

void requireUsableTexture(std::int32_t mode, const Object3D& mesh, const std::string& meshName) {
    requireNamedTexels(mode, mesh, meshName);
    if (mode == TALVEK_MODE_QEMSCAN) {
        requireDrawnFaces(mesh, meshName);
    } else {
        requireVertexOnMap(mesh, meshName);
    }
}

std::string textureWarning(std::int32_t mode, const Object3D& mesh) {
    switch (mode) {
        case TALVEK_MODE_QEMSCAN:
            return gridWarning(mesh);
        case TALVEK_MODE_GRAIN_WEAVER:
            return mapWarning(mesh);
        default:
            return {};
    }
}

}  // namespace talvek::host
