#include <array>
#include <charconv>
#include <vector>

#include "talvek/formats/mesh_builder.h"
#include "talvek/formats/text_words.h"
#include "talvek/formats/wavefront.h"
#include "talvek/formats/wavefront_materials.h"

namespace talvek::host {

namespace {

constexpr std::size_t kMostCorners = 65536;

class WavefrontReader {
  public:
    explicit WavefrontReader(MeshInput& input) : input_(input), builder_(input.path()) {}

    ImportedMesh read() {
        std::string_view line;
        while (nextLine(line)) {
            TextWords words(line);
            if (!words.isAtEnd()) {
                readRecord(words.next(), words);
            }
        }
        builder_.mesh().materials = materials_.take();
        return builder_.finish();
    }

  private:
    /// A line that ends in "\" goes on in the next one.
    bool nextLine(std::string_view& line) {
        if (!input_.nextLine(line)) {
            return false;
        }
        if (line.ends_with('\\')) {
            joined_.clear();
            bool isThere = true;
            for (; isThere && line.ends_with('\\'); isThere = input_.nextLine(line)) {
                joined_.append(line, 0, line.size() - 1).append(" ");
            }
            joined_.append(isThere ? line : std::string_view());
            line = joined_;
        }
        return true;
    }

    void readRecord(std::string_view keyword, TextWords& words) {
        if (keyword == "v") {
            readVertex(words);
        } else if (keyword == "f") {
            readFace(words);
        } else if (keyword == "vt") {
            readTexel(words);
        } else if (keyword == "usemtl") {
            builder_.useMaterial(materials_.numberOf(words.rest()));
        } else if (keyword == "mtllib") {
            materials_.read(input_.path(), words.rest());
        } else if (keyword == "l" || keyword == "p") {
            ++builder_.mesh().counts.leftOut;
        } else if (keyword == "surf" || keyword == "curv") {
            input_.failAtLine("curves and free-form surfaces are not read; export the mesh as polygons");
        }
    }

    /// Three coordinates, behind which there may be a weight, or a colour with or without its opacity.
    void readVertex(TextWords& words) {
        std::array<double, 7> values{};
        std::size_t count = 0;
        while (count < values.size() && words.nextCoordinate(values[count])) {
            ++count;
        }
        if (count < 3 || count == 5 || !words.isAtEnd()) {
            input_.failAtLine(count < 3 ? "a vertex without its 3 numbers"
                                        : "a vertex of other than 3 numbers, with a weight or a colour behind them");
        }
        const std::int64_t vertex = builder_.mesh().numVertices();
        builder_.addVertex(values[0], values[1], values[2]);
        constexpr std::size_t kWithColour = 6;
        if (count >= kWithColour) {
            builder_.setColour(vertex, static_cast<float>(values[3]), static_cast<float>(values[4]),
                               static_cast<float>(values[5]),
                               count > kWithColour ? static_cast<float>(values[6]) : 1.0F);
        }
    }

    void readTexel(TextWords& words) {
        std::array<double, 3> values{};
        std::size_t count = 0;
        while (count < values.size() && words.nextCoordinate(values[count])) {
            ++count;
        }
        if (count == 0 || !words.isAtEnd()) {
            input_.failAtLine("a texture coordinate of other than 1 to 3 numbers");
        }
        std::vector<float>& texels = builder_.mesh().texels;
        texels.push_back(static_cast<float>(values[0]));
        texels.push_back(static_cast<float>(values[1]));
    }

    void readFace(TextWords& words) {
        corners_.clear();
        texels_.clear();
        bool hasTexel = false;
        while (!words.isAtEnd()) {
            hasTexel |= readCorner(words.next());
        }
        if (corners_.size() > kMostCorners) {
            input_.failAtLine("a face of more than 65536 corners is not read");
        }
        builder_.addFace(corners_, hasTexel ? texels_ : std::span<const std::int64_t>());
    }

    /// "7", "7/2", "7/2/5" or "7//5". Returns whether there is a texture coordinate.
    bool readCorner(std::string_view word) {
        const char* const end = word.data() + word.size();
        const char* at = word.data();
        corners_.push_back(readIndex(at, end, builder_.mesh().numVertices()));
        texels_.push_back(-1);
        if (at != end && *at == '/' && at + 1 != end && at[1] != '/') {
            ++at;
            texels_.back() = readIndex(at, end, static_cast<std::int64_t>(builder_.mesh().texels.size() / 2));
        } else if (at != end && *at == '/') {
            ++at;
        }
        if (at != end && *at != '/') {
            input_.failAtLine("the corner " + std::string(word.substr(0, 40)) + " is none of a face");
        }
        return texels_.back() != -1;
    }

    /// From 1, or from -1 backwards, from the last one so far.
    std::int64_t readIndex(const char*& at, const char* end, std::int64_t count) {
        std::int64_t index = 0;
        const auto [behind, error] = std::from_chars(at, end, index);
        if (error != std::errc() || index == 0 || index < -count) {
            input_.failAtLine(error != std::errc() ? "an index is missing"
                                                   : "an index of " + std::to_string(index) + " names nothing");
        }
        at = behind;
        return index > 0 ? index - 1 : count + index;
    }

    MeshInput& input_;
    MeshBuilder builder_;
    WavefrontMaterials materials_;
    std::string joined_;
    std::vector<std::int64_t> corners_;
    std::vector<std::int64_t> texels_;
};

}  // namespace

ImportedMesh readWavefront(MeshInput& input) {
    return WavefrontReader(input).read();
}

}  // namespace talvek::host
