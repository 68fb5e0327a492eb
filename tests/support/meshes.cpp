#include "support/meshes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <numbers>
#include <span>
#include <string_view>
#include <utility>

namespace talvek::test {

std::unique_ptr<Object3D> makeMesh(const std::vector<float>& vertices, const std::vector<std::int32_t>& faces) {
    auto mesh = std::make_unique<Object3D>();
    mesh->numVertices = static_cast<std::int32_t>(vertices.size() / 3);
    mesh->numFaces = static_cast<std::int32_t>(faces.size() / 3);
    mesh->vertices = copyArray(vertices.data(), static_cast<std::int64_t>(vertices.size()));
    mesh->vertexIndex = copyArray(faces.data(), static_cast<std::int64_t>(faces.size()));
    return mesh;
}

std::unique_ptr<Object3D> makePlane(std::int32_t cells) {
    std::vector<float> vertices;
    std::vector<std::int32_t> faces;
    const std::int32_t row = cells + 1;
    for (std::int32_t y = 0; y < row; ++y) {
        for (std::int32_t x = 0; x < row; ++x) {
            vertices.insert(vertices.end(), {static_cast<float>(x), static_cast<float>(y), 0});
        }
    }
    for (std::int32_t y = 0; y < cells; ++y) {
        for (std::int32_t x = 0; x < cells; ++x) {
            const std::int32_t corner = y * row + x;
            faces.insert(faces.end(), {corner, corner + 1, corner + row + 1, corner, corner + row + 1, corner + row});
        }
    }
    return makeMesh(vertices, faces);
}

std::unique_ptr<Object3D> makeCube(float size) {
    std::vector<float> vertices;
    for (int i = 0; i < 8; ++i) {
        vertices.insert(vertices.end(), {(i & 1) != 0 ? size : 0, (i & 2) != 0 ? size : 0, (i & 4) != 0 ? size : 0});
    }
    return makeMesh(vertices, {0, 2, 3, 0, 3, 1, 4, 5, 7, 4, 7, 6, 0, 1, 5, 0, 5, 4,
                               2, 6, 7, 2, 7, 3, 0, 4, 6, 0, 6, 2, 1, 3, 7, 1, 7, 5});
}

namespace {

class SphereBuilder {
  public:
    explicit SphereBuilder(double radius) : radius_(radius) {}

    std::int32_t addVertex(double x, double y, double z) {
        const double scale = radius_ / std::sqrt(x * x + y * y + z * z);
        vertices.insert(vertices.end(),
                        {static_cast<float>(x * scale), static_cast<float>(y * scale), static_cast<float>(z * scale)});
        return static_cast<std::int32_t>(vertices.size() / 3) - 1;
    }

    void split() {
        const std::vector<std::int32_t> coarse = std::exchange(faces, {});
        for (std::size_t i = 0; i < coarse.size(); i += 3) {
            const std::int32_t a = coarse[i];
            const std::int32_t b = coarse[i + 1];
            const std::int32_t c = coarse[i + 2];
            const std::int32_t ab = middle(a, b);
            const std::int32_t bc = middle(b, c);
            const std::int32_t ca = middle(c, a);
            faces.insert(faces.end(), {a, ab, ca, ab, b, bc, ca, bc, c, ab, bc, ca});
        }
    }

    std::vector<float> vertices;
    std::vector<std::int32_t> faces;

  private:
    std::int32_t middle(std::int32_t a, std::int32_t b) {
        const auto [place, isNew] = middles_.try_emplace(std::minmax(a, b), 0);
        if (isNew) {
            const float* p = &vertices[3 * static_cast<std::size_t>(a)];
            const float* q = &vertices[3 * static_cast<std::size_t>(b)];
            place->second = addVertex(static_cast<double>(p[0]) + static_cast<double>(q[0]),
                                      static_cast<double>(p[1]) + static_cast<double>(q[1]),
                                      static_cast<double>(p[2]) + static_cast<double>(q[2]));
        }
        return place->second;
    }

    double radius_;
    std::map<std::pair<std::int32_t, std::int32_t>, std::int32_t> middles_;
};

}  // namespace

std::unique_ptr<Object3D> makeSphere(float radius, int levels) {
    SphereBuilder builder(static_cast<double>(radius));
    const double t = std::numbers::phi;
    const double corners[12][3] = {{-1, t, 0},  {1, t, 0},  {-1, -t, 0}, {1, -t, 0}, {0, -1, t},  {0, 1, t},
                                   {0, -1, -t}, {0, 1, -t}, {t, 0, -1},  {t, 0, 1},  {-t, 0, -1}, {-t, 0, 1}};
    for (const auto& corner : corners) {
        builder.addVertex(corner[0], corner[1], corner[2]);
    }
    builder.faces = {0, 11, 5,  0, 5,  1, 0, 1, 7, 0, 7,  10, 0, 10, 11, 1, 5, 9, 5, 11,
                     4, 11, 10, 2, 10, 7, 6, 7, 1, 8, 3,  9,  4, 3,  4,  2, 3, 2, 6, 3,
                     6, 8,  3,  8, 9,  4, 9, 5, 2, 4, 11, 6,  2, 10, 8,  6, 7, 9, 8, 1};
    for (int level = 0; level < levels; ++level) {
        builder.split();
    }
    return makeMesh(builder.vertices, builder.faces);
}

void layTexture(Object3D& mesh, float uScale, float vScale) {
    mesh.numTexels = mesh.numVertices;
    mesh.texels = makeArray<float>(2 * std::int64_t{mesh.numTexels});
    mesh.texelIndex = copyArray(mesh.vertexIndex.get(), 3 * std::int64_t{mesh.numFaces});
    for (std::size_t i = 0; i < static_cast<std::size_t>(mesh.numVertices); ++i) {
        mesh.texels[2 * i] = mesh.vertices[3 * i] * uScale;
        mesh.texels[2 * i + 1] = mesh.vertices[3 * i + 1] * vScale;
    }
}

namespace {

template <typename T>
void appendNumber(std::string& text, T value) {
    char digits[64];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void appendRows(std::string& text, std::string_view key, std::span<const float> values, std::size_t rowLength) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        text += i % rowLength == 0 ? key : " ";
        appendNumber(text, values[i]);
        text += i % rowLength == rowLength - 1 ? "\n" : "";
    }
}

}  // namespace

std::string objText(const Object3D& mesh) {
    std::string text;
    appendRows(text, "v ", mesh.vertexSpan(), 3);
    appendRows(text, "vt ", {mesh.texels.get(), 2 * static_cast<std::size_t>(mesh.numTexels)}, 2);
    for (std::size_t i = 0; i < mesh.faceSpan().size(); ++i) {
        text += i % 3 == 0 ? "f " : " ";
        appendNumber(text, mesh.faceSpan()[i] + 1);
        if (mesh.texelIndex != nullptr) {
            text += '/';
            appendNumber(text, mesh.texelIndex[i] + 1);
        }
        text += i % 3 == 2 ? "\n" : "";
    }
    return text;
}

}  // namespace talvek::test
