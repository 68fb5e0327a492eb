#include <algorithm>

#include "talvek/formats/mesh_builder.h"
#include "talvek/formats/ply.h"
#include "talvek/formats/ply_header.h"
#include "talvek/formats/ply_rows.h"

namespace talvek::host {

namespace {

constexpr const char* kNoVertex = "the vertices have no x, y and z";

/// The places of what is read of a vertex.
struct VertexProperties {
    explicit VertexProperties(const PlyElement& element)
        : x(element.find({"x"}, false)),
          y(element.find({"y"}, false)),
          z(element.find({"z"}, false)),
          s(element.find({"s", "u", "texture_u"}, false)),
          t(element.find({"t", "v", "texture_v"}, false)),
          red(element.find({"red", "diffuse_red"}, false)),
          green(element.find({"green", "diffuse_green"}, false)),
          blue(element.find({"blue", "diffuse_blue"}, false)),
          alpha(element.find({"alpha"}, false)) {
        if (red >= 0) {
            largestColour = largestOf(element.properties[static_cast<std::size_t>(red)].type);
        }
    }

    static float largestOf(PlyType type) {
        constexpr float kBytes = 255;
        constexpr float kWords = 65535;
        return type == PlyType::kFloat32 || type == PlyType::kFloat64 ? 1 : sizeOf(type) == 1 ? kBytes : kWords;
    }

    bool hasTexel() const { return s >= 0 && t >= 0; }
    bool hasColour() const { return red >= 0 && green >= 0 && blue >= 0; }

    int x, y, z, s, t, red, green, blue, alpha;
    float largestColour = 1;
};

/// Collects the elements of a file.
class PlyMesh {
  public:
    explicit PlyMesh(MeshInput& input)
        : header_(readPlyHeader(input)), rows_(input, header_.encoding), builder_(input.path()) {}

    ImportedMesh read() {
        for (const PlyElement& element : header_.elements) {
            readElement(element);
        }
        if (!hasCornerTexels_ && !builder_.mesh().texels.empty()) {
            builder_.mesh().cornerTexels = builder_.mesh().corners;
        }
        for (const std::string& file : header_.textureFiles) {
            builder_.mesh().materials.push_back(
                {.name = {}, .textureFile = file, .textureBytes = {}, .textureKind = {}});
        }
        return builder_.finish();
    }

  private:
    void readElement(const PlyElement& element) {
        if (element.name == "vertex") {
            readVertices(element);
        } else if (element.name == "face") {
            readFaces(element);
        } else if (element.name == "tristrips" && element.count > 0) {
            rows_.fail("strips of triangles are not read; export the mesh with single faces");
        } else if (!element.properties.empty()) {
            rows_.begin(element, {});
            for (std::int64_t i = 0; i < element.count; ++i) {
                rows_.next(element);
            }
        }
    }

    void readVertices(const PlyElement& element) {
        const VertexProperties places(element);
        rows_.begin(element, {places.x, places.y, places.z, places.s, places.t, places.red, places.green, places.blue,
                              places.alpha});
        if (element.count > 0 && (places.x < 0 || places.y < 0 || places.z < 0)) {
            rows_.fail(kNoVertex);
        }
        ImportedMesh& mesh = builder_.mesh();
        mesh.positions.reserve(mesh.positions.size() + 3 * static_cast<std::size_t>(element.count));
        for (std::int64_t i = 0; i < element.count; ++i) {
            rows_.next(element);
            builder_.addVertex(rows_.value(places.x), rows_.value(places.y), rows_.value(places.z));
            if (places.hasTexel()) {
                mesh.texels.push_back(static_cast<float>(rows_.value(places.s)));
                mesh.texels.push_back(static_cast<float>(rows_.value(places.t)));
            }
            if (places.hasColour()) {
                readColour(places, i);
            }
        }
    }

    void readColour(const VertexProperties& places, std::int64_t vertex) {
        const auto colour = [&](int property) {
            return static_cast<float>(rows_.value(property)) / places.largestColour;
        };
        builder_.setColour(vertex, colour(places.red), colour(places.green), colour(places.blue),
                           places.alpha >= 0 ? colour(places.alpha) : 1.0F);
    }

    void readFaces(const PlyElement& element) {
        const int indices = element.find({"vertex_indices", "vertex_index"}, true);
        const int texcoord = element.find({"texcoord"}, true);
        const int texnumber = element.find({"texnumber"}, false);
        rows_.begin(element, {indices, texcoord, texnumber});
        if (element.count > 0 && indices < 0) {
            rows_.fail("the faces have no vertex_indices");
        }
        if (texcoord >= 0 && !hasCornerTexels_) {
            // Coordinates by corner say more than those by vertex, where a file has both.
            builder_.mesh().texels.clear();
            hasCornerTexels_ = true;
        }
        ImportedMesh& mesh = builder_.mesh();
        mesh.corners.reserve(mesh.corners.size() + 3 * static_cast<std::size_t>(element.count));
        for (std::int64_t i = 0; i < element.count; ++i) {
            rows_.next(element);
            if (texnumber >= 0) {
                useTexture(rows_.value(texnumber));
            }
            addFace(rows_.list(indices), texcoord >= 0 ? rows_.list(texcoord) : std::span<const double>());
        }
    }

    void useTexture(double number) {
        const bool isThere = number >= 0 && number < static_cast<double>(header_.textureFiles.size());
        builder_.useMaterial(isThere ? static_cast<std::int32_t>(number) : -1);
    }

    void addFace(std::span<const double> corners, std::span<const double> texcoord) {
        corners_.clear();
        for (const double corner : corners) {
            constexpr double kMost = 1e15;
            corners_.push_back(corner >= 0 && corner < kMost ? static_cast<std::int64_t>(corner) : -1);
        }
        texels_.clear();
        if (corners.size() >= 3 && texcoord.size() == 2 * corners.size()) {
            std::vector<float>& texels = builder_.mesh().texels;
            for (std::size_t i = 0; i < corners.size(); ++i) {
                texels_.push_back(static_cast<std::int64_t>(texels.size() / 2));
                texels.push_back(static_cast<float>(texcoord[2 * i]));
                texels.push_back(static_cast<float>(texcoord[2 * i + 1]));
            }
        }
        builder_.addFace(corners_, texels_);
    }

    PlyHeader header_;
    PlyRows rows_;
    MeshBuilder builder_;
    bool hasCornerTexels_ = false;
    std::vector<std::int64_t> corners_;
    std::vector<std::int64_t> texels_;
};

}  // namespace

ImportedMesh readPly(MeshInput& input) {
    return PlyMesh(input).read();
}

}  // namespace talvek::host
