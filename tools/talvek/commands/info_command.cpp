#include "talvek/commands/info_command.h"

#include <CLI/CLI.hpp>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "talvek/formats/mesh_file.h"
#include "talvek/inspect/mesh_survey.h"
#include "talvek/plan/import_arguments.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

std::string jsonString(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < ' ') {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
            result += escaped;
        } else {
            result += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
        }
    }
    return result + "\"";
}

/// A JSON number, as short as it can be read back in its precision; null for what is none in JSON.
template <typename Real>
requires std::is_floating_point_v<Real> std::string number(Real value) {
    char digits[64];
    return std::isfinite(value) ? std::string(digits, std::to_chars(digits, digits + sizeof digits, value).ptr)
                                : "null";
}

std::string number(std::int64_t value) {
    return std::to_string(value);
}

/// Raised when a member changes its meaning or goes.
constexpr std::int64_t kJsonVersion = 1;

/// One JSON object, built member by member.
class JsonObject {
  public:
    template <typename Value>
    JsonObject& add(std::string_view name, Value value) {
        return addText(name, number(value));
    }
    JsonObject& addText(std::string_view name, const std::string& json) {
        text_ += (text_.empty() ? "{" : ", ") + jsonString(name) + ": " + json;
        return *this;
    }
    std::string text() const { return text_ + "}"; }

  private:
    std::string text_;
};

std::string range(float from, float to) {
    return "[" + number(from) + ", " + number(to) + "]";
}

std::string json(const std::string& path, const Object3D& mesh, const MeshSurvey& survey) {
    JsonObject bounds;
    bounds.addText("x", range(survey.box.xmin, survey.box.xmax))
        .addText("y", range(survey.box.ymin, survey.box.ymax))
        .addText("z", range(survey.box.zmin, survey.box.zmax));
    JsonObject edges;
    edges.add("count", survey.edges.count)
        .add("shortest", survey.edges.shortest)
        .add("longest", survey.edges.longest)
        .add("mean", survey.edges.mean)
        .add("boundary", survey.edges.boundary)
        .add("nonManifold", survey.edges.nonManifold)
        .add("turned", survey.edges.inconsistent)
        .add("folded", survey.edges.folded);
    JsonObject texture;
    texture.add("faces", survey.texture.faces)
        .add("outside", survey.texture.outside)
        .add("clockwise", survey.texture.clockwise)
        .add("coverage", survey.texture.coverage);
    JsonObject all;
    all.addText("schema", jsonString("talvek-info"))
        .add("version", kJsonVersion)
        .addText("file", jsonString(path))
        .add("vertices", std::int64_t{mesh.numVertices})
        .add("faces", std::int64_t{mesh.numFaces})
        .add("texels", std::int64_t{mesh.numTexels})
        .addText("bounds", bounds.text())
        .add("area", survey.faces.area)
        .addText("edges", edges.text())
        .add("unreferencedVertices", survey.vertices.unreferenced)
        .add("duplicateVertices", survey.vertices.duplicate)
        .add("notFiniteVertices", survey.vertices.notFinite)
        .add("degenerateFaces", survey.faces.degenerate)
        .addText("texture", texture.text());
    return all.text();
}

void printRow(const char* name, const std::string& value) {
    std::printf("  %-10s %s\n", name, value.c_str());
}

std::string extent(float from, float to) {
    return briefNumber(static_cast<double>(from)) + " to " + briefNumber(static_cast<double>(to));
}

std::string textureText(const TextureSurvey& texture, std::int32_t numTexels) {
    if (texture.faces == 0) {
        return "none";
    }
    return std::to_string(numTexels) + " coordinates on " + countOf(static_cast<std::uint64_t>(texture.faces), "face") +
           ", " + briefNumber(100 * texture.coverage) + " % of texture space covered" +
           (texture.coverage > 1 ? " (faces overlap or lie outside it); " : "; ") + std::to_string(texture.outside) +
           " outside [0, 1), " + std::to_string(texture.clockwise) + " clockwise";
}

void printText(const std::string& path, const Object3D& mesh, const MeshSurvey& survey) {
    const EdgeSurvey& edges = survey.edges;
    std::printf("%s\n", path.c_str());
    printRow("vertices", std::to_string(mesh.numVertices) + "; " + std::to_string(survey.vertices.unreferenced) +
                             " unreferenced, " + std::to_string(survey.vertices.duplicate) + " duplicate, " +
                             std::to_string(survey.vertices.notFinite) + " not finite");
    printRow("faces", std::to_string(mesh.numFaces) + "; " + std::to_string(survey.faces.degenerate) + " degenerate");
    printRow("bounds", "x " + extent(survey.box.xmin, survey.box.xmax) + ", y " +
                           extent(survey.box.ymin, survey.box.ymax) + ", z " +
                           extent(survey.box.zmin, survey.box.zmax) + " mm");
    printRow("area", briefNumber(survey.faces.area) + " square mm");
    printRow("edges", std::to_string(edges.count) + ", " + briefNumber(edges.shortest) + " to " +
                          briefNumber(edges.longest) + " mm long, " + briefNumber(edges.mean) + " mm on average");
    printRow("", std::to_string(edges.boundary) + " boundary, " + std::to_string(edges.nonManifold) +
                     " non-manifold, " + std::to_string(edges.inconsistent) + " inconsistently oriented");
    printRow("texture", textureText(survey.texture, mesh.numTexels));
}

struct InfoOptions {
    std::string path;
    bool asJson = false;
    ImportOptions import;
};

int infoCommand(const InfoOptions& options) {
    const LoadedMesh loaded = loadMesh(options.path, options.import);
    const MeshSurvey survey = surveyMesh(*loaded.mesh);
    if (options.asJson) {
        std::printf("%s\n", json(options.path, *loaded.mesh, survey).c_str());
    } else {
        printImport(options.path, loaded);
        printText(options.path, *loaded.mesh, survey);
    }
    return kExitDone;
}

}  // namespace

void addInfoCommand(CommandSet& commands) {
    const auto options = std::make_shared<InfoOptions>();
    CLI::App& info = commands.add("info", "Tell what a mesh consists of", [options] { return infoCommand(*options); });
    addFileArgument(info, options->path, "MESH", meshArgumentText("Mesh to look at"));
    addImportArguments(info, options->import);
    info.add_flag("--json", options->asJson, "Print one JSON object");
}

}  // namespace talvek::host
