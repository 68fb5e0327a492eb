#include <array>
#include <cmath>
#include <vector>

#include "talvek/formats/mesh_builder.h"
#include "talvek/formats/off.h"
#include "talvek/formats/text_words.h"

namespace talvek::host {

namespace {

constexpr std::size_t kMostCorners = 65536;

class OffReader {
  public:
    explicit OffReader(MeshInput& input) : input_(input), builder_(input.path()) {}

    ImportedMesh read() {
        readCounts(readHead());
        for (std::int64_t i = 0; i < numVertices_; ++i) {
            readVertex(i);
        }
        if (hasTexels_) {
            builder_.mesh().texels = std::move(texels_);
        }
        for (std::int64_t i = 0; i < numFaces_; ++i) {
            readFace();
        }
        if (hasTexels_) {
            builder_.mesh().cornerTexels = builder_.mesh().corners;
        }
        return builder_.finish();
    }

  private:
    /// The next line that holds something.
    TextWords nextRow() {
        std::string_view line;
        while (input_.nextLine(line)) {
            TextWords words(line.substr(0, line.find('#')));
            if (!words.isAtEnd()) {
                return words;
            }
        }
        input_.failAtLine("the file ends too early");
    }

    /// Returns what stands behind the keyword.
    TextWords readHead() {
        TextWords words = nextRow();
        std::string_view keyword = words.next();
        const auto take = [&keyword](std::string_view prefix) {
            const bool isThere = keyword.starts_with(prefix) && keyword != prefix;
            keyword.remove_prefix(isThere ? prefix.size() : 0);
            return isThere;
        };
        hasTexels_ = take("ST");
        hasColours_ = take("C");
        hasNormals_ = take("N");
        if (keyword != "OFF" || words.rest().starts_with("BINARY")) {
            input_.failAtLine("this is no OFF file in text; others are not read");
        }
        return words;
    }

    void readCounts(TextWords words) {
        if (words.isAtEnd()) {
            words = nextRow();
        }
        numVertices_ = count(words);
        numFaces_ = count(words);
        // Each takes a digit and the end of a line, and each coordinate a digit and a blank.
        if (static_cast<std::uint64_t>(numVertices_) > input_.mostLeft() / 6 ||
            static_cast<std::uint64_t>(numFaces_) > input_.mostLeft() / 2) {
            input_.failAtLine("the file is too short for what its counts promise");
        }
    }

    std::int64_t count(TextWords& words) {
        double value = 0;
        constexpr double kMost = 1e15;
        if (!words.nextCoordinate(value) || !(value >= 0 && value < kMost) || value != std::floor(value)) {
            input_.failAtLine("a count is missing");
        }
        return static_cast<std::int64_t>(value);
    }

    double number(TextWords& words) {
        double value = 0;
        if (!words.nextCoordinate(value)) {
            input_.failAtLine(words.isAtEnd() ? "the line has fewer numbers than a vertex of this file"
                                              : "a number is missing");
        }
        return value;
    }

    void readVertex(std::int64_t vertex) {
        TextWords words = nextRow();
        const double x = number(words);
        const double y = number(words);
        builder_.addVertex(x, y, number(words));
        for (int k = 0; k < (hasNormals_ ? 3 : 0); ++k) {
            number(words);
        }
        if (hasColours_) {
            readColour(words, vertex);
        }
        for (int k = 0; k < (hasTexels_ ? 2 : 0); ++k) {
            texels_.push_back(static_cast<float>(number(words)));
        }
        if (!words.isAtEnd()) {
            input_.failAtLine("the line has more numbers than a vertex of this file");
        }
    }

    /// Three or four numbers, from 0 to 1 or, written without a point, to 255.
    void readColour(TextWords& words, std::int64_t vertex) {
        std::array<float, 4> colour{0, 0, 0, 1};
        bool isWhole = true;
        for (std::size_t k = 0; k < colour.size(); ++k) {
            const std::string_view word = words.rest();
            if (k == 3 && (words.isAtEnd() || hasTexels_)) {
                break;
            }
            isWhole &= word.substr(0, word.find_first_of(" \t")).find('.') == std::string_view::npos;
            colour[k] = static_cast<float>(number(words));
            hasOpacity_ |= k == 3;
        }
        constexpr float kBytes = 255;
        for (std::size_t k = 0; isWhole && k < (hasOpacity_ ? 4U : 3U); ++k) {
            colour[k] /= kBytes;
        }
        builder_.setColour(vertex, colour[0], colour[1], colour[2], colour[3]);
    }

    void readFace() {
        TextWords words = nextRow();
        const std::int64_t numCorners = count(words);
        if (numCorners > static_cast<std::int64_t>(kMostCorners)) {
            input_.failAtLine("a face of more than 65536 corners is not read");
        }
        corners_.clear();
        for (std::int64_t i = 0; i < numCorners; ++i) {
            if (words.isAtEnd()) {
                input_.failAtLine("the line has fewer vertices than it says");
            }
            corners_.push_back(count(words));
        }
        requireColour(words);
        builder_.addFace(corners_);
    }

    /// Behind the corners there may be a colour of at most four numbers.
    void requireColour(TextWords& words) {
        for (int k = 0; !words.isAtEnd(); ++k) {
            if (k == 4) {
                input_.failAtLine("the line has more numbers than its corners and a colour");
            }
            number(words);
        }
    }

    MeshInput& input_;
    MeshBuilder builder_;
    std::int64_t numVertices_ = 0;
    std::int64_t numFaces_ = 0;
    bool hasTexels_ = false;
    bool hasColours_ = false;
    bool hasNormals_ = false;
    bool hasOpacity_ = false;
    std::vector<float> texels_;
    std::vector<std::int64_t> corners_;
};

}  // namespace

ImportedMesh readOff(MeshInput& input) {
    return OffReader(input).read();
}

}  // namespace talvek::host
