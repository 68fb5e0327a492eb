#include <array>
#include <optional>
#include <stdexcept>
#include <vector>

#include "talvek/formats/gltf.h"
#include "talvek/formats/gltf_accessor.h"
#include "talvek/formats/gltf_file.h"
#include "talvek/formats/gltf_materials.h"
#include "talvek/formats/gltf_nodes.h"
#include "talvek/formats/mesh_builder.h"
#include "talvek/formats/vertex_joiner.h"

namespace talvek::host {

namespace {

enum PrimitiveMode : std::int64_t { kLineStrip = 3, kTriangles = 4, kTriangleStrip = 5, kTriangleFan = 6 };

class GltfReader {
  public:
    explicit GltfReader(MeshInput& input)
        : file_(input), builder_(file_.path()), joiner_(builder_.mesh().positions, 0) {}

    ImportedMesh read() {
        ImportedMesh& mesh = builder_.mesh();
        mesh.counts.parts = 0;
        mesh.materials = gltfMaterials(file_);
        for (const GltfInstance& instance : gltfInstances(file_)) {
            const Json& described = file_.element("meshes", instance.mesh);
            for (const Json& primitive : gltfList(file_, described, "primitives")) {
                addPrimitive(primitive, instance.transform);
            }
        }
        mesh.counts.joinedVertices = numSplitVertices_ - mesh.numVertices();
        return builder_.finish();
    }

  private:
    void addPrimitive(const Json& primitive, const GltfTransform& transform) {
        const std::int64_t mode = gltfNumber(file_, primitive, "mode", kTriangles);
        if (mode <= kLineStrip || mode > kTriangleFan) {
            ++builder_.mesh().counts.leftOut;
            return;
        }
        const Json attributes = primitive.is_object() ? primitive.value("attributes", Json()) : Json();
        if (!attributes.is_object() || !attributes.contains("POSITION")) {
            file_.fail("a primitive has no positions");
        }
        requireExtensions(primitive);
        addVertices(attributes, transform);
        addTexels(attributes);
        ++builder_.mesh().counts.parts;
        const std::int64_t material = gltfNumber(file_, primitive, "material", -1);
        const bool isThere = material < static_cast<std::int64_t>(builder_.mesh().materials.size());
        builder_.useMaterial(isThere ? static_cast<std::int32_t>(material) : -1);
        addTriangles(primitive, mode, transform.isMirror());
    }

    /// One that may be read without Draco has its numbers in the usual places, too.
    void requireExtensions(const Json& primitive) const {
        const Json extensions = primitive.value("extensions", Json());
        if (extensions.is_object() && extensions.contains("KHR_draco_mesh_compression")) {
            const Json& position = file_.element("accessors", primitive["attributes"], "POSITION");
            if (!position.contains("bufferView")) {
                file_.fail("the mesh is compressed with Draco, which is not read; export it without compression");
            }
        }
    }

    /// The numbers of the primitive's vertices in the mesh.
    void addVertices(const Json& attributes, const GltfTransform& transform) {
        const GltfAccessor positions(file_, gltfNumber(file_, attributes, "POSITION", -1), {"VEC3"});
        charge(positions.count());
        vertices_.clear();
        std::optional<GltfAccessor> colours;
        if (attributes.contains("COLOR_0")) {
            colours.emplace(file_, gltfNumber(file_, attributes, "COLOR_0", -1),
                            std::initializer_list<std::string_view>{"VEC3", "VEC4"});
        }
        for (std::int64_t i = 0; i < positions.count(); ++i) {
            const auto [x, y, z] =
                transform.apply({positions.value(i, 0), positions.value(i, 1), positions.value(i, 2)});
            const std::int32_t vertex = joiner_.vertexAt(x, y, z);
            const bool isNew = vertex + 1 == builder_.mesh().numVertices() && vertex > lastNew_;
            lastNew_ = std::max(lastNew_, vertex);
            if (colours && isNew && i < colours->count()) {
                setColour(*colours, i, vertex);
            }
            vertices_.push_back(vertex);
        }
        numSplitVertices_ += positions.count();
    }

    void setColour(const GltfAccessor& colours, std::int64_t element, std::int32_t vertex) {
        const auto part = [&](std::size_t k) { return static_cast<float>(colours.value(element, k)); };
        builder_.setColour(vertex, part(0), part(1), part(2), colours.numComponents() > 3 ? part(3) : 1.0F);
    }

    /// Their second number is counted from the picture's upper edge.
    void addTexels(const Json& attributes) {
        firstTexel_ = -1;
        if (!attributes.contains("TEXCOORD_0")) {
            return;
        }
        const GltfAccessor texels(file_, gltfNumber(file_, attributes, "TEXCOORD_0", -1), {"VEC2"});
        std::vector<float>& all = builder_.mesh().texels;
        firstTexel_ = static_cast<std::int64_t>(all.size() / 2);
        numTexels_ = texels.count();
        charge(numTexels_);
        for (std::int64_t i = 0; i < numTexels_; ++i) {
            all.push_back(static_cast<float>(texels.value(i, 0)));
            all.push_back(static_cast<float>(1 - texels.value(i, 1)));
        }
    }

    void addTriangles(const Json& primitive, std::int64_t mode, bool isMirrored) {
        std::optional<GltfAccessor> indices;
        if (primitive.contains("indices")) {
            indices.emplace(file_, gltfNumber(file_, primitive, "indices", -1),
                            std::initializer_list<std::string_view>{"SCALAR"});
            if (!indices->isIndex()) {
                file_.fail("the indices of a primitive are no whole numbers");
            }
        }
        const std::int64_t count = indices ? indices->count() : static_cast<std::int64_t>(vertices_.size());
        charge(count);
        const auto corner = [&](std::int64_t i) { return indices ? std::int64_t{indices->index(i)} : i; };
        const std::int64_t step = mode == kTriangles ? 3 : 1;
        for (std::int64_t i = 0; i + 2 < count; i += step) {
            const bool isOdd = mode == kTriangleStrip && i % 2 == 1;
            const std::int64_t first = corner(mode == kTriangleFan ? 0 : i);
            const std::int64_t second = corner(i + 1);
            const std::int64_t third = corner(i + 2);
            // Strips turn corners by triangles without an area.
            if (mode == kTriangleStrip && (first == second || second == third || first == third)) {
                continue;
            }
            isOdd != isMirrored ? addTriangle({first, third, second}) : addTriangle({first, second, third});
        }
    }

    void addTriangle(const std::array<std::int64_t, 3>& corners) {
        std::array<std::int64_t, 3> vertices{};
        std::array<std::int64_t, 3> texels{};
        for (std::size_t k = 0; k < 3; ++k) {
            const std::int64_t corner = corners[k];
            vertices[k] =
                corner < static_cast<std::int64_t>(vertices_.size()) ? vertices_[static_cast<std::size_t>(corner)] : -1;
            texels[k] = corner < numTexels_ ? firstTexel_ + corner : -1;
        }
        builder_.addFace(vertices, firstTexel_ >= 0 ? texels : std::span<const std::int64_t>());
    }

    /// A few bytes of nodes may put the same numbers into the scene any number of times.
    void charge(std::int64_t numbers) {
        constexpr std::uint64_t kFree = 1 << 20;
        charged_ += static_cast<std::uint64_t>(numbers);
        if (charged_ > 4 * file_.size() + kFree) {
            file_.fail(
                "the scene repeats its meshes so often that it is larger than any memory should be; export the "
                "stone alone");
        }
    }

    GltfFile file_;
    MeshBuilder builder_;
    VertexJoiner joiner_;
    std::vector<std::int64_t> vertices_;
    std::int64_t numSplitVertices_ = 0;
    std::int64_t firstTexel_ = -1;
    std::int64_t numTexels_ = 0;
    std::int32_t lastNew_ = -1;
    std::uint64_t charged_ = 0;
};

}  // namespace

ImportedMesh readGltf(MeshInput& input) try { return GltfReader(input).read(); } catch (const std::length_error&) {
    input.failAtByte("the mesh has more vertices than the simulation can number; divide it");
}

}  // namespace talvek::host
