#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "base/number_text.h"
#include "talvek/formats/ply.h"
#include "talvek/formats/ply_header.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/whole_file.h"

namespace talvek::host {

namespace {

/// The values of the elements, one after the other, from text or bytes.
class PlyValues {
  public:
    PlyValues(std::string_view rest, bool isBinary, const std::string& path)
        : rest_(rest), size_(rest.size()), isBinary_(isBinary), path_(path) {}

    double next(PlyType type) { return isBinary_ ? nextBinary(type) : nextText(); }

    [[noreturn]] void fail(const std::string& reason) const {
        throw Failure(kExitMesh,
                      path_ + ": " + std::to_string(size_ - rest_.size()) + " bytes behind the head: " + reason);
    }

    /// An element takes at least a byte, so a count beyond this cannot be true.
    std::size_t bytesLeft() const { return rest_.size(); }

  private:
    double nextText() {
        while (!rest_.empty() && isBlank(rest_.front())) {
            rest_.remove_prefix(1);
        }
        double value = 0;
        const std::size_t length = parseDouble(rest_, value);
        if (length == 0) {
            fail(rest_.empty() ? "the file ends too early" : "a number is missing");
        }
        rest_.remove_prefix(length);
        return value;
    }

    template <typename T>
    double take() {
        if (rest_.size() < sizeof(T)) {
            fail("the file ends too early");
        }
        std::uint64_t bits = 0;
        for (std::size_t i = 0; i < sizeof(T); ++i) {
            bits |= std::uint64_t{static_cast<unsigned char>(rest_[i])} << (8 * i);
        }
        rest_.remove_prefix(sizeof(T));
        if constexpr (std::is_same_v<T, float>) {
            return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
        } else if constexpr (std::is_same_v<T, double>) {
            return std::bit_cast<double>(bits);
        } else {
            return static_cast<double>(static_cast<T>(bits));
        }
    }

    double nextBinary(PlyType type) {
        switch (type) {
            case PlyType::kInt8:
                return take<std::int8_t>();
            case PlyType::kUint8:
                return take<std::uint8_t>();
            case PlyType::kInt16:
                return take<std::int16_t>();
            case PlyType::kUint16:
                return take<std::uint16_t>();
            case PlyType::kInt32:
                return take<std::int32_t>();
            case PlyType::kUint32:
                return take<std::uint32_t>();
            case PlyType::kFloat32:
                return take<float>();
            default:
                return take<double>();
        }
    }

    std::string_view rest_;
    std::size_t size_;
    bool isBinary_;
    const std::string& path_;
};

/// Collects the elements of a file.
class PlyMesh {
  public:
    explicit PlyMesh(PlyValues& values) : values_(values) {}

    void readElement(const PlyElement& element) {
        if (static_cast<std::uint64_t>(element.count) > values_.bytesLeft()) {
            values_.fail("the file is too short for " + std::to_string(element.count) + " of element " + element.name);
        }
        for (std::int64_t i = 0; i < element.count; ++i) {
            const std::vector<std::vector<double>> lists = readProperties(element);
            if (element.name == "vertex") {
                addVertex(element, lists);
            } else if (element.name == "face") {
                addFace(element, lists);
            }
        }
    }

    std::unique_ptr<Object3D> build() const {
        auto mesh = std::make_unique<Object3D>();
        mesh->numVertices = static_cast<std::int32_t>(positions_.size() / 3);
        mesh->numFaces = static_cast<std::int32_t>(faces_.size() / 3);
        mesh->vertices = copyArray(positions_.data(), static_cast<std::int64_t>(positions_.size()));
        mesh->vertexIndex = copyArray(faces_.data(), static_cast<std::int64_t>(faces_.size()));
        const bool byCorner = !cornerTexels_.empty();
        const std::vector<float>& texels = byCorner ? cornerTexels_ : vertexTexels_;
        if (!texels.empty()) {
            mesh->numTexels = static_cast<std::int32_t>(texels.size() / 2);
            mesh->texels = copyArray(texels.data(), static_cast<std::int64_t>(texels.size()));
            mesh->texelIndex =
                copyArray((byCorner ? cornerIndex_ : faces_).data(), static_cast<std::int64_t>(faces_.size()));
        }
        return mesh;
    }

  private:
    /// A single value counts as a list of one.
    std::vector<std::vector<double>> readProperties(const PlyElement& element) {
        std::vector<std::vector<double>> lists;
        for (const PlyProperty& property : element.properties) {
            const double count = property.isList ? values_.next(property.countType) : 1;
            if (!(count >= 0 && count <= static_cast<double>(values_.bytesLeft()))) {
                values_.fail("the file is too short for a list");
            }
            std::vector<double>& list = lists.emplace_back();
            for (auto left = static_cast<std::int64_t>(count); left > 0; --left) {
                list.push_back(values_.next(property.type));
            }
        }
        return lists;
    }

    void addVertex(const PlyElement& element, const std::vector<std::vector<double>>& lists) {
        for (const char* name : {"x", "y", "z"}) {
            const int at = element.find({name});
            if (at < 0 || element.properties[static_cast<std::size_t>(at)].isList) {
                values_.fail(std::string("the vertices have no ") + name);
            }
            positions_.push_back(static_cast<float>(lists[static_cast<std::size_t>(at)][0]));
        }
        const int u = element.find({"s", "u", "texture_u"});
        const int t = element.find({"t", "v", "texture_v"});
        if (u >= 0 && t >= 0 && lists[static_cast<std::size_t>(u)].size() == 1 &&
            lists[static_cast<std::size_t>(t)].size() == 1) {
            vertexTexels_.push_back(static_cast<float>(lists[static_cast<std::size_t>(u)][0]));
            vertexTexels_.push_back(static_cast<float>(lists[static_cast<std::size_t>(t)][0]));
        }
    }

    void addFace(const PlyElement& element, const std::vector<std::vector<double>>& lists) {
        const int indices = element.find({"vertex_indices", "vertex_index"});
        if (indices < 0) {
            values_.fail("the faces have no vertex_indices");
        }
        const std::vector<double>& corners = lists[static_cast<std::size_t>(indices)];
        const int texcoord = element.find({"texcoord"});
        const bool hasTexcoord =
            texcoord >= 0 && lists[static_cast<std::size_t>(texcoord)].size() == 2 * corners.size();
        const auto firstTexel = static_cast<std::int32_t>(cornerTexels_.size() / 2);
        for (std::size_t i = 0; hasTexcoord && i < 2 * corners.size(); ++i) {
            cornerTexels_.push_back(static_cast<float>(lists[static_cast<std::size_t>(texcoord)][i]));
        }
        for (std::size_t i = 2; i < corners.size(); ++i) {
            for (const std::size_t corner : {std::size_t{0}, i - 1, i}) {
                faces_.push_back(vertexNumber(corners[corner]));
                cornerIndex_.push_back(hasTexcoord ? firstTexel + static_cast<std::int32_t>(corner) : -1);
            }
        }
    }

    std::int32_t vertexNumber(double index) const {
        if (!(index >= 0 && index <= std::numeric_limits<std::int32_t>::max())) {
            values_.fail("a face names a vertex that cannot be");
        }
        return static_cast<std::int32_t>(index);
    }

    PlyValues& values_;
    std::vector<float> positions_;
    std::vector<float> vertexTexels_;
    std::vector<float> cornerTexels_;
    std::vector<std::int32_t> faces_;
    std::vector<std::int32_t> cornerIndex_;
};

}  // namespace

std::unique_ptr<Object3D> readPly(const std::string& path) {
    const std::string bytes = readWholeFile(path, kExitMesh);
    std::string_view rest = bytes;
    const PlyHeader header = readPlyHeader(rest, path);
    PlyValues values(rest, header.isBinary, path);
    PlyMesh collected(values);
    for (const PlyElement& element : header.elements) {
        collected.readElement(element);
    }
    return collected.build();
}

}  // namespace talvek::host
