#include "talvek/export/gltf_animation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

#include "mesh/texture.h"
#include "talvek/export/binary_rows.h"
#include "talvek/export/export_failure.h"
#include "talvek/export/scan_texture.h"
#include "talvek/export/split_vertices.h"
#include "talvek/export/vertex_fields.h"
#include "talvek/results/displacement.h"
#include "talvek/support/paths.h"

namespace talvek::host {

namespace {

using Json = nlohmann::ordered_json;

enum ComponentType : std::uint16_t { kUnsignedShort = 5123, kUnsignedInt = 5125, kFloat = 5126 };
enum BufferTarget : std::uint16_t { kVertexBuffer = 34962, kIndexBuffer = 34963 };

/// The surfaces between the first one and the last, evenly chosen where there are too many.
std::vector<SeriesSurface> keySurfaces(const RunSeries& series) {
    std::vector<SeriesSurface> all(series.surfaces().begin() + 1, series.surfaces().end());
    if (all.size() <= kMostKeyFrames) {
        return all;
    }
    std::vector<SeriesSurface> chosen;
    for (std::size_t k = 1; k <= kMostKeyFrames; ++k) {
        chosen.push_back(all[k * all.size() / kMostKeyFrames - 1]);
    }
    return chosen;
}

/// Nothing in a glTF file may be infinite or not a number.
float finiteOr(float value, float otherwise) {
    return std::isfinite(value) ? value : otherwise;
}

/// Three numbers for each vertex, and the smallest and the largest of each, which the format wants to know beforehand.
class Triples {
  public:
    explicit Triples(std::vector<float> values) : values_(std::move(values)) {
        smallest_.fill(values_.empty() ? 0 : std::numeric_limits<float>::max());
        largest_.fill(values_.empty() ? 0 : std::numeric_limits<float>::lowest());
        for (std::size_t i = 0; i < values_.size(); ++i) {
            smallest_[i % 3] = std::min(smallest_[i % 3], values_[i]);
            largest_[i % 3] = std::max(largest_[i % 3], values_[i]);
        }
    }
    std::span<const float> values() const { return values_; }
    void addBounds(Json& accessor) const {
        accessor["min"] = smallest_;
        accessor["max"] = largest_;
    }

  private:
    std::vector<float> values_;
    std::array<float, 3> smallest_{};
    std::array<float, 3> largest_{};
};

Triples positionsOf(const Object3D& mesh, const SplitVertices& split) {
    std::vector<float> values;
    values.reserve(3 * split.vertices.size());
    for (const std::int32_t vertex : split.vertices) {
        for (std::size_t k = 3 * static_cast<std::size_t>(vertex), end = k + 3; k < end; ++k) {
            values.push_back(finiteOr(mesh.vertices[k], 0));
        }
    }
    return Triples(std::move(values));
}

/// How far the vertices have moved; those without a finite position stay.
Triples movementOf(const Object3D& first, const Object3D& mesh, const SplitVertices& split) {
    std::vector<float> values;
    values.reserve(3 * split.vertices.size());
    for (const std::int32_t vertex : split.vertices) {
        for (std::size_t k = 3 * static_cast<std::size_t>(vertex), end = k + 3; k < end; ++k) {
            values.push_back(finiteOr(mesh.vertices[k] - first.vertices[k], 0));
        }
    }
    return Triples(std::move(values));
}

std::vector<float> normalsOf(const Object3D& mesh, const SplitVertices& split) {
    std::vector<float> values;
    for (const std::int32_t vertex : split.vertices) {
        const auto normal = tripleAt<double>(mesh.vertexNormals.get(), vertex);
        const double size = length(normal);
        const bool isNormal = std::isfinite(size) && size > 0;
        values.push_back(isNormal ? static_cast<float>(normal.x / size) : 0);
        values.push_back(isNormal ? static_cast<float>(normal.y / size) : 0);
        values.push_back(isNormal ? static_cast<float>(normal.z / size) : 1);
    }
    return values;
}

/// Amounts of light in 16 bits, red, green, blue and full opacity, as two numbers of 32 bits.
std::vector<std::uint32_t> coloursOfLast(const RunSeries& series, const Object3D& first, const std::string& palette,
                                         const SplitVertices& split) {
    const SeriesSurface& last = series.surfaces().back();
    const std::vector<double> moved = series.displacements(first, *series.read(last), last);
    const ChangeScale scale(moved, paletteNamed(palette), std::nullopt);
    const auto steps = [](float channel) { return static_cast<std::uint32_t>(std::lround(65535 * lightOf(channel))); };
    std::vector<std::uint32_t> colours;
    for (const std::int32_t vertex : split.vertices) {
        const double place = scale.place(moved[static_cast<std::size_t>(vertex)]);
        const Colour colour = std::isfinite(place) ? scale.colourAt(place) : colourOf(0x808080);
        colours.push_back(steps(colour.red) | steps(colour.green) << 16);
        colours.push_back(steps(colour.blue) | 0xFFFF0000U);
    }
    return colours;
}

/// The picture's origin is its upper left corner.
std::vector<float> texelsOf(const Object3D& textured, const SplitVertices& split) {
    std::vector<float> values;
    for (const std::int32_t texel : split.texels) {
        const std::size_t at = 2 * static_cast<std::size_t>(std::max(texel, 0));
        values.push_back(texel < 0 ? 0 : finiteOr(textured.texels[at], 0));
        values.push_back(texel < 0 ? 0 : 1 - finiteOr(textured.texels[at + 1], 0));
    }
    return values;
}

/// Describes the buffer's parts; their bytes are written in the same order.
class Parts {
  public:
    /// The number of the new part.
    std::size_t addView(std::uint64_t size, std::optional<BufferTarget> target = std::nullopt) {
        Json view = {{"buffer", 0}, {"byteOffset", size_}, {"byteLength", size}};
        if (target) {
            view["target"] = *target;
        }
        views_.push_back(view);
        size_ += (size + 3) / 4 * 4;
        return views_.size() - 1;
    }
    std::size_t addAccessor(ComponentType component, const char* type, std::size_t count, std::size_t elementSize,
                            std::optional<BufferTarget> target = std::nullopt) {
        const std::size_t view = addView(count * elementSize, target);
        accessors_.push_back({{"bufferView", view}, {"componentType", component}, {"count", count}, {"type", type}});
        return accessors_.size() - 1;
    }
    Json& accessor(std::size_t number) { return accessors_[number]; }
    std::uint64_t size() const { return size_; }
    const Json& views() const { return views_; }
    const Json& accessors() const { return accessors_; }

  private:
    std::uint64_t size_ = 0;
    Json views_ = Json::array();
    Json accessors_ = Json::array();
};

/// All that is written but the movements, which are read when their turn comes.
class Animation {
  public:
    Animation(const RunSeries& series, const GltfOptions& options)
        : series_(series),
          options_(options),
          keys_(keySurfaces(series)),
          first_(series.read(series.at(0))),
          textured_(options.wantsColours ? nullptr : readTexturedMesh(series, *first_)),
          picture_(textured_ != nullptr ? usablePicture(series) : std::nullopt),
          split_(splitVertices(*first_, picture_ ? textured_.get() : nullptr)),
          positions_(positionsOf(*first_, split_)) {
        // One second for each surface, so that a few of them are not over in a blink.
        const double seconds = std::clamp(static_cast<double>(keys_.size()), 2.0, 20.0);
        const double days = keys_.empty() ? 0 : keys_.back().days;
        times_.push_back(0);
        for (std::size_t k = 0; k < keys_.size(); ++k) {
            const double share = days > 0 ? keys_[k].days / days : static_cast<double>(k + 1);
            times_.push_back(static_cast<float>(share * seconds));
        }
    }

    GltfReport report() const { return {keys_.size(), picture_.has_value()}; }

    void write(const std::string& path) {
        std::string json = describe().dump();
        json.resize((json.size() + 3) / 4 * 4, ' ');
        constexpr std::uint64_t kHeads = 12 + 8 + 8;
        const std::uint64_t whole = kHeads + json.size() + parts_.size();
        if (whole > std::numeric_limits<std::uint32_t>::max()) {
            throw Failure(kExitRefused, path +
                                            ": this would be more than the 4 GB that a .glb file can hold; export PC2 "
                                            "or VTP, or make the run with fewer frames");
        }
        OutputFile file(path.c_str());
        file.write("glTF");
        writeNumber(file, std::uint32_t{2});
        writeNumber(file, static_cast<std::uint32_t>(whole));
        writeNumber(file, static_cast<std::uint32_t>(json.size()));
        file.write("JSON");
        file.write(json);
        writeNumber(file, static_cast<std::uint32_t>(parts_.size()));
        file.write(std::string_view("BIN\0", 4));
        writeBuffer(file);
        finishExport(file, path);
    }

  private:
    static std::optional<ScanPicture> usablePicture(const RunSeries& series) {
        std::optional<ScanPicture> picture = readScanPicture(series);
        return picture && !picture->kind.empty() ? std::move(picture) : std::nullopt;
    }

    Json describe() {
        Json gltf = {{"asset", {{"version", "2.0"}, {"generator", "talvek"}}}, {"scene", 0}};
        gltf["scenes"] = {{{"nodes", {0}}}};
        gltf["nodes"] = {node()};
        Json primitive = {{"attributes", attributes()}};
        primitive["indices"] =
            parts_.addAccessor(kUnsignedInt, "SCALAR", split_.corners.size(), sizeof(std::uint32_t), kIndexBuffer);
        primitive["material"] = 0;
        gltf["materials"] = {material(gltf)};
        gltf["animations"] = keys_.empty() ? Json() : Json({animation()});
        Json names = Json::array();
        Json targets = Json::array();
        for (const SeriesSurface& key : keys_) {
            targets.push_back({{"POSITION", movementAccessor(key)}});
            names.push_back("epoch " + std::to_string(key.epoch));
        }
        Json mesh = {{"name", nameOf(pathOf(series_.source()).stem())}};
        if (keys_.empty()) {
            gltf.erase("animations");
        } else {
            primitive["targets"] = targets;
            mesh["weights"] = std::vector<int>(keys_.size(), 0);
            mesh["extras"] = {{"targetNames", names}};
        }
        mesh["primitives"] = {primitive};
        gltf["meshes"] = {mesh};
        gltf["accessors"] = parts_.accessors();
        gltf["bufferViews"] = parts_.views();
        gltf["buffers"] = {{{"byteLength", parts_.size()}}};
        return gltf;
    }

    /// Metres, with the y axis upwards.
    Json node() const {
        constexpr double kMetre = 0.001;
        constexpr double kHalf = 0.70710678118654752;
        Json node = {{"mesh", 0}, {"scale", {kMetre, kMetre, kMetre}}};
        if (options_.upAxis == 'z') {
            node["rotation"] = {-kHalf, 0.0, 0.0, kHalf};
        } else if (options_.upAxis == 'x') {
            node["rotation"] = {0.0, 0.0, kHalf, kHalf};
        }
        return node;
    }

    Json attributes() {
        constexpr std::size_t kTriple = 3 * sizeof(float);
        const std::size_t count = split_.vertices.size();
        Json attributes;
        const std::size_t positions = parts_.addAccessor(kFloat, "VEC3", count, kTriple, kVertexBuffer);
        positions_.addBounds(parts_.accessor(positions));
        attributes["POSITION"] = positions;
        attributes["NORMAL"] = parts_.addAccessor(kFloat, "VEC3", count, kTriple, kVertexBuffer);
        if (picture_) {
            attributes["TEXCOORD_0"] = parts_.addAccessor(kFloat, "VEC2", count, 2 * sizeof(float), kVertexBuffer);
        } else {
            const std::size_t colours =
                parts_.addAccessor(kUnsignedShort, "VEC4", count, 4 * sizeof(std::uint16_t), kVertexBuffer);
            parts_.accessor(colours)["normalized"] = true;
            attributes["COLOR_0"] = colours;
        }
        return attributes;
    }

    Json material(Json& gltf) {
        Json surface = {{"metallicFactor", 0.0}, {"roughnessFactor", 0.9}};
        if (picture_) {
            surface["baseColorTexture"] = {{"index", 0}};
            gltf["textures"] = {{{"source", 0}}};
            gltf["images"] = {{{"bufferView", parts_.addView(picture_->bytes.size())}, {"mimeType", picture_->kind}}};
        }
        return {{"name", "stone"}, {"pbrMetallicRoughness", surface}, {"doubleSided", true}};
    }

    Json animation() {
        const std::size_t times = parts_.addAccessor(kFloat, "SCALAR", times_.size(), sizeof(float));
        parts_.accessor(times)["min"] = {times_.front()};
        parts_.accessor(times)["max"] = {times_.back()};
        const std::size_t weights = parts_.addAccessor(kFloat, "SCALAR", times_.size() * keys_.size(), sizeof(float));
        return {{"name", "weathering"},
                {"samplers", {{{"input", times}, {"output", weights}, {"interpolation", "LINEAR"}}}},
                {"channels", {{{"sampler", 0}, {"target", {{"node", 0}, {"path", "weights"}}}}}}};
    }

    /// The extremes stand before the numbers, so each surface is read twice.
    std::size_t movementAccessor(const SeriesSurface& key) {
        const std::size_t accessor =
            parts_.addAccessor(kFloat, "VEC3", split_.vertices.size(), 3 * sizeof(float), kVertexBuffer);
        readMovement(key).addBounds(parts_.accessor(accessor));
        return accessor;
    }

    Triples readMovement(const SeriesSurface& key) const {
        const std::unique_ptr<Object3D> mesh = series_.read(key);
        series_.requireSameFaces(*first_, *mesh, key);
        return movementOf(*first_, *mesh, split_);
    }

    void writeBuffer(OutputFile& file) const {
        writeNumbers(file, positions_.values());
        writeNumbers<float>(file, normalsOf(*first_, split_));
        if (picture_) {
            writeNumbers<float>(file, texelsOf(*textured_, split_));
        } else {
            writeNumbers<std::uint32_t>(file, coloursOfLast(series_, *first_, options_.palette, split_));
        }
        writeNumbers<std::uint32_t>(file, split_.corners);
        if (picture_) {
            file.write(picture_->bytes);
            file.write(std::string((4 - picture_->bytes.size() % 4) % 4, '\0'));
        }
        if (keys_.empty()) {
            return;
        }
        writeNumbers<float>(file, times_);
        for (std::size_t time = 0; time < times_.size(); ++time) {
            for (std::size_t key = 0; key < keys_.size(); ++key) {
                writeNumber(file, time == key + 1 ? 1.0F : 0.0F);
            }
        }
        for (const SeriesSurface& key : keys_) {
            writeNumbers(file, readMovement(key).values());
        }
    }

    const RunSeries& series_;
    const GltfOptions& options_;
    std::vector<SeriesSurface> keys_;
    std::unique_ptr<Object3D> first_;
    std::unique_ptr<Object3D> textured_;
    std::optional<ScanPicture> picture_;
    SplitVertices split_;
    Triples positions_;
    std::vector<float> times_;
    Parts parts_;
};

}  // namespace

GltfReport writeGltfAnimation(const RunSeries& series, const GltfOptions& options, const std::string& path) {
    Animation animation(series, options);
    animation.write(path);
    return animation.report();
}

}  // namespace talvek::host
