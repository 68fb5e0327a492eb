#include "support/plain_obj.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace talvek::test {

namespace {

constexpr const char* kBlanks = " \t\n\v\f\r";

class Tokens {
  public:
    explicit Tokens(const std::string& text) : text_(text) {}

    bool next(std::string& token) {
        at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size());
        const std::size_t end = std::min(text_.find_first_of(kBlanks, at_), text_.size());
        token = text_.substr(at_, end - at_);
        at_ = end;
        return !token.empty();
    }

    void readFloat(float& value) {
        at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size());
        const char* start = text_.c_str() + at_;
        char* end = nullptr;
        const float read = std::strtof(start, &end);
        value = end != start ? read : value;
        at_ += static_cast<std::size_t>(end - start);
    }

  private:
    const std::string& text_;
    std::size_t at_ = 0;
};

std::int32_t zeroBased(const std::string& number) {
    constexpr long long kSmallest = std::numeric_limits<std::int32_t>::min();
    constexpr long long kLargest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(std::strtoll(number.c_str(), nullptr, 10), kSmallest + 1, kLargest) -
                                     1);
}

void readFace(Tokens& tokens, PlainObj& obj) {
    std::string corner;
    for (int i = 0; i < 3 && tokens.next(corner); ++i) {
        const std::size_t slash = std::min(corner.find('/'), corner.size());
        obj.vertexIndices.push_back(zeroBased(corner.substr(0, slash)));
        obj.texelIndices.push_back(zeroBased(slash < corner.size() ? corner.substr(slash + 1) : ""));
    }
}

template <typename T>
void expectSameArray(const HeapArray<T>& array, std::size_t count, const std::vector<T>& expected) {
    ASSERT_EQ(count, expected.size());
    ASSERT_NE(array, nullptr);
    for (std::size_t i = 0; i < count; ++i) {
        ASSERT_TRUE(hasSameBits(&array[i], &expected[i], 1))
            << "element " << i << ": " << array[i] << " instead of " << expected[i];
    }
}

std::string tripleText(const char* keyword, const float* triple) {
    char line[400];
    std::snprintf(line, sizeof line, "%s %.6f %.6f %.6f\n", keyword, static_cast<double>(triple[0]),
                  static_cast<double>(triple[1]), static_cast<double>(triple[2]));
    return line;
}

}  // namespace

PlainObj readObjPlainly(const std::string& text) {
    PlainObj obj;
    Tokens tokens(text);
    std::string token;
    float position[3] = {};
    float texel[2] = {};
    while (tokens.next(token)) {
        if (token == "v") {
            std::for_each(position, position + 3, [&](float& value) { tokens.readFloat(value); });
            obj.coordinates.insert(obj.coordinates.end(), position, position + 3);
        } else if (token == "vt") {
            std::for_each(texel, texel + 2, [&](float& value) { tokens.readFloat(value); });
            obj.texels.insert(obj.texels.end(), texel, texel + 2);
        } else if (token == "f") {
            readFace(tokens, obj);
        }
    }
    return obj;
}

std::string writeObjPlainly(const Object3D& mesh) {
    std::string text = "#\n# Obj file created by QN Lib\n#\n";
    const bool hasNormals = mesh.vertexNormals != nullptr;
    const std::string count = std::to_string(mesh.numVertices);
    text += "# " + count + " vertices\n" + (hasNormals ? "# " + count + " normals\n" : "");
    for (std::size_t i = 0; i < mesh.vertexSpan().size(); i += 3) {
        text += tripleText("v", &mesh.vertices[i]);
        text += hasNormals ? tripleText("vn", &mesh.vertexNormals[i]) : "";
    }
    text += "# " + std::to_string(mesh.numFaces) + " triangles\n";
    const std::span<const std::int32_t> corners = mesh.faceSpan();
    for (std::size_t i = 0; i < corners.size(); i += 3) {
        char line[100];
        std::snprintf(line, sizeof line, "f %d %d %d\n", corners[i] + 1, corners[i + 1] + 1, corners[i + 2] + 1);
        text += line;
    }
    return text;
}

void expectSame(const Object3D& mesh, const PlainObj& plain) {
    EXPECT_EQ(static_cast<std::size_t>(mesh.numFaces), plain.vertexIndices.size() / 3);
    expectSameArray(mesh.vertices, 3 * static_cast<std::size_t>(mesh.numVertices), plain.coordinates);
    expectSameArray(mesh.texels, 2 * static_cast<std::size_t>(mesh.numTexels), plain.texels);
    expectSameArray(mesh.vertexIndex, plain.vertexIndices.size(), plain.vertexIndices);
    expectSameArray(mesh.texelIndex, plain.texelIndices.size(), plain.texelIndices);
}

}  // namespace talvek::test
