#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "base/little_endian.h"
#include "talvek/formats/mesh_builder.h"
#include "talvek/formats/stl.h"
#include "talvek/formats/text_words.h"
#include "talvek/formats/vertex_joiner.h"

namespace talvek::host {

namespace {

constexpr std::size_t kTitleSize = 80;
constexpr std::size_t kHeadSize = kTitleSize + 4;
/// A normal, three corners and a number that means nothing.
constexpr std::size_t kTriangleSize = 50;
constexpr std::size_t kNormalSize = 12;

std::string lowerCase(std::string_view word) {
    std::string lower(word);
    for (char& c : lower) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return lower;
}

/// The line behind the title decides: titles of binary files begin with "solid" as well, and some hold a line end.
bool isText(MeshInput& input) {
    constexpr std::size_t kEnough = 4096;
    const std::string_view start = input.ahead(kEnough).substr(0, kEnough);
    if (lowerCase(TextWords(start).next()) != "solid" || start.find('\0') != std::string_view::npos) {
        return false;
    }
    const std::size_t end = start.find('\n');
    const std::string second = lowerCase(TextWords(start.substr(std::min(end, start.size()))).next());
    return second.empty() || second == "facet" || second == "endsolid" || second == "solid";
}

class BinaryStl {
  public:
    explicit BinaryStl(MeshInput& input) : input_(input), builder_(input.path()) {}

    ImportedMesh read() {
        const std::size_t count = readHead();
        ImportedMesh& mesh = builder_.mesh();
        // A closed surface has half as many vertices as triangles.
        const std::size_t expected = count / 2 + count / 16;
        mesh.positions.reserve(3 * expected);
        mesh.corners.reserve(3 * count);
        VertexJoiner joiner(mesh.positions, expected);
        for (std::size_t left = count; left > 0;) {
            left -= readTriangles(left, joiner);
        }
        mesh.counts.joinedVertices = 3 * static_cast<std::int64_t>(count) - mesh.numVertices();
        return builder_.finish();
    }

  private:
    std::size_t readHead() {
        const std::string_view head = input_.ahead(kHeadSize);
        if (head.size() < kHeadSize) {
            input_.failAtByte("the file ends within the head of a binary STL file, which has 84 bytes");
        }
        const auto count = fromLittleEndian<std::uint32_t>(head.data() + kTitleSize);
        input_.pass(kHeadSize);
        if (count > input_.mostLeft() / kTriangleSize) {
            input_.failAtByte("the file is too short for the " + std::to_string(count) + " triangles of its head");
        }
        return count;
    }

    /// As many as lie ahead.
    std::size_t readTriangles(std::size_t left, VertexJoiner& joiner) {
        const std::string_view ahead = input_.ahead(kTriangleSize);
        const std::size_t count = std::min(left, ahead.size() / kTriangleSize);
        if (count == 0) {
            input_.failAtByte("the file ends too early: " + std::to_string(left) + " triangles are missing");
        }
        for (std::size_t i = 0; i < count; ++i) {
            const char* bytes = ahead.data() + i * kTriangleSize + kNormalSize;
            std::array<std::int32_t, 3> corners{};
            for (std::int32_t& corner : corners) {
                const auto coordinate = [bytes](std::size_t k) {
                    return static_cast<double>(fromLittleEndian<float>(bytes + k * sizeof(float)));
                };
                corner = joiner.vertexAt(coordinate(0), coordinate(1), coordinate(2));
                bytes += 3 * sizeof(float);
            }
            builder_.addTriangle(corners[0], corners[1], corners[2]);
        }
        input_.pass(count * kTriangleSize);
        return count;
    }

    MeshInput& input_;
    MeshBuilder builder_;
};

class TextStl {
  public:
    explicit TextStl(MeshInput& input) : input_(input), builder_(input.path()), joiner_(builder_.mesh().positions, 0) {}

    ImportedMesh read() {
        std::string_view line;
        builder_.mesh().counts.parts = 0;
        while (input_.nextLine(line)) {
            TextWords words(line);
            if (!words.isAtEnd()) {
                readLine(lowerCase(words.next()), words);
            }
        }
        if (isInFacet_) {
            input_.failAtLine("the file ends within a facet");
        }
        builder_.mesh().counts.joinedVertices = numCorners_ - builder_.mesh().numVertices();
        return builder_.finish();
    }

  private:
    void readLine(const std::string& keyword, TextWords& words) {
        if (keyword == "vertex") {
            readVertex(words);
        } else if (keyword == "facet") {
            beginFacet();
        } else if (keyword == "endfacet") {
            endFacet();
        } else if (keyword == "solid") {
            ++builder_.mesh().counts.parts;
        } else if (keyword != "outer" && keyword != "endloop" && keyword != "endsolid") {
            input_.failAtLine("the word " + keyword.substr(0, 20) + " is none of an STL file");
        }
    }

    void readVertex(TextWords& words) {
        std::array<double, 3> at{};
        for (double& coordinate : at) {
            if (!words.nextCoordinate(coordinate)) {
                input_.failAtLine("a vertex without its 3 numbers");
            }
        }
        if (!words.isAtEnd() || !isInFacet_) {
            input_.failAtLine(isInFacet_ ? "a vertex with more than 3 numbers" : "a vertex outside of a facet");
        }
        ++numCorners_;
        corners_.push_back(joiner_.vertexAt(at[0], at[1], at[2]));
    }

    void beginFacet() {
        if (isInFacet_) {
            input_.failAtLine("a facet within another one");
        }
        isInFacet_ = true;
        corners_.clear();
    }

    void endFacet() {
        constexpr std::size_t kMostCorners = 65536;
        if (!isInFacet_ || corners_.size() < 3 || corners_.size() > kMostCorners) {
            input_.failAtLine("a facet of " + std::to_string(isInFacet_ ? corners_.size() : 0) + " corners");
        }
        isInFacet_ = false;
        builder_.addFace(corners_);
    }

    MeshInput& input_;
    MeshBuilder builder_;
    VertexJoiner joiner_;
    std::int64_t numCorners_ = 0;
    std::vector<std::int64_t> corners_;
    bool isInFacet_ = false;
};

}  // namespace

ImportedMesh readStl(MeshInput& input) try {
    return isText(input) ? TextStl(input).read() : BinaryStl(input).read();
} catch (const std::length_error&) {
    input.failAtByte("the mesh has more vertices than the simulation can number; divide it");
}

}  // namespace talvek::host
