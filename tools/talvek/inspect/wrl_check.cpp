#include "talvek/inspect/wrl_check.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "Vexo_Lib/wrl_lists.h"
#include "base/input_file.h"
#include "base/text_scanner.h"
#include "mesh/vector3.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

/// The reader makes a report of two hundred bytes for each.
constexpr std::int64_t kMostMismatches = 100;

constexpr std::string_view kOtherShapes[] = {"Box",       "Cube", "Sphere",    "Cone",   "Cylinder", "ElevationGrid",
                                             "Extrusion", "Text", "AsciiText", "Inline", "WWWInline"};
constexpr std::string_view kNamedSurfaces[] = {"Shape",          "Group",      "Separator",  "Transform",
                                               "IndexedFaceSet", "Coordinate", "Coordinate3"};

bool isOneOf(std::span<const std::string_view> words, std::string_view word) {
    return std::ranges::find(words, word) != words.end();
}

class WrlCheck {
  public:
    explicit WrlCheck(InputFile& file) : scanner_(file, kWrlSeparators) {}

    void run() {
        std::string_view token;
        while (mismatches_ <= kMostMismatches && scanner_.nextToken(token)) {
            takeToken(token);
        }
    }

    void report(Findings& findings) const {
        if (mismatches_ > kMostMismatches) {
            findings.fail(
                "mismatches", mismatches_,
                "more than " + std::to_string(kMostMismatches) +
                    " lists of the file do not have the lengths that belong together; the file is damaged, or "
                    "of many shapes: export the one that is to be weathered");
            return;
        }
        const std::int64_t lost = triangles_ - lastTriangles_;
        if (lost > 0) {
            findings.lose("shapesReplaced", lost, replacedText(lost));
        }
        if (otherShapes_ > 0) {
            findings.lose("otherShapes", otherShapes_,
                          countOf(static_cast<std::uint64_t>(otherShapes_), "shape") + " such as " + firstOther_ +
                              " not made of faces, which the reader passes over; export the scene as faces");
        }
        if (reused_ > 0) {
            findings.lose("shapesUsedAgain", reused_,
                          countOf(static_cast<std::uint64_t>(reused_), "place") +
                              " where a shape is used again (USE), which the reader passes over; export the scene as "
                              "one shape");
        }
        if (scales_ > 0) {
            findings.lose("scales", scales_,
                          countOf(static_cast<std::uint64_t>(scales_), "scale") + " of the scene, the first of them " +
                              firstScale_ +
                              ", that the reader passes over: the mesh has another size than meant; export it with the "
                              "scale applied");
        }
    }

  private:
    void takeToken(std::string_view token) {
        const std::string word(token.substr(0, token.find('{')));
        const bool opens = word.size() < token.size();
        if (const std::string shape = std::exchange(expected_, {}); !shape.empty() && word.empty() && opens) {
            ++otherShapes_;
            firstOther_ = otherShapes_ == 1 ? shape : firstOther_;
        }
        if (isOneOf(kOtherShapes, word)) {
            expected_ = word;
            if (opens) {
                takeToken("{");
            }
        } else if (word == "DEF") {
            takeDefinition();
        } else if (word == "USE") {
            takeUse();
        } else if (word == "scale" || word == "scaleFactor") {
            takeScale();
        } else {
            takeList(word);
        }
    }

    void takeDefinition() {
        std::string_view token;
        if (!scanner_.nextToken(token)) {
            return;
        }
        const std::string name(token);
        if (scanner_.nextToken(token)) {
            if (isOneOf(kNamedSurfaces, token.substr(0, token.find('{')))) {
                defined_.insert(name);
            }
            takeToken(std::string(token));
        }
    }

    void takeUse() {
        std::string_view token;
        if (scanner_.nextToken(token)) {
            reused_ += defined_.contains(std::string(token)) ? 1 : 0;
        }
    }

    void takeScale() {
        std::string text;
        bool isScaled = false;
        for (int i = 0; i < 3; ++i) {
            std::string_view token;
            double factor = 1;
            if (!scanner_.nextToken(token) || parseDouble(token, factor) == 0) {
                return;
            }
            isScaled = isScaled || factor != 1;
            text += (i == 0 ? "" : " ") + briefNumber(factor);
        }
        if (isScaled) {
            firstScale_ = scales_++ == 0 ? text : firstScale_;
        }
    }

    void takeList(const std::string& word) {
        if (word == "Coordinate3" || word == "Coordinate") {
            takeVertexValues(&positions_);
        } else if (word == "Color") {
            takeVertexValues(nullptr);
        } else if (word == "coordIndex" && openWrlList(scanner_)) {
            takeFaces();
        } else if (word == "texCoordIndex" && openWrlList(scanner_)) {
            BlockList<std::int32_t> corners;
            readWrlTriangles(scanner_, corners);
            mismatches_ += corners.count() / 3 != lastTriangles_ ? 1 : 0;
        }
    }

    void takeVertexValues(std::vector<float>* kept) {
        if (!openWrlList(scanner_)) {
            return;
        }
        BlockList<float> values;
        readWrlFloats(scanner_, 3, values);
        const std::int64_t count = values.count() / 3;
        numVertices_ = numVertices_ == 0 ? count : numVertices_;
        mismatches_ += count != numVertices_ ? 1 : 0;
        if (kept != nullptr) {
            kept->resize(static_cast<std::size_t>(values.count()));
            values.moveTo(kept->data(), values.count());
        }
    }

    void takeFaces() {
        BlockList<std::int32_t> list;
        readWrlTriangles(scanner_, list);
        lastTriangles_ = list.count() / 3;
        triangles_ += lastTriangles_;
        ++lists_;
        std::vector<std::int32_t> corners(static_cast<std::size_t>(3 * lastTriangles_));
        list.moveTo(corners.data(), 3 * lastTriangles_);
        lastArea_ = areaOf(corners);
        area_ += lastArea_;
    }

    /// With the positions that stand before the faces; 0 for faces that name others.
    double areaOf(const std::vector<std::int32_t>& corners) const {
        const auto numPositions = static_cast<std::int64_t>(positions_.size() / 3);
        double sum = 0;
        for (std::size_t i = 0; i + 2 < corners.size(); i += 3) {
            const auto [low, high] = std::minmax({corners[i], corners[i + 1], corners[i + 2]});
            if (low >= 0 && high < numPositions) {
                const auto a = tripleAt<double>(positions_.data(), corners[i]);
                const double area = length(cross(tripleAt<double>(positions_.data(), corners[i + 1]) - a,
                                                 tripleAt<double>(positions_.data(), corners[i + 2]) - a)) /
                                    2;
                sum += std::isfinite(area) ? area : 0;
            }
        }
        return sum;
    }

    std::string replacedText(std::int64_t lost) const {
        const std::string share = area_ > 0 ? ", " + shareText(area_ - lastArea_, area_) + " of the surface," : "";
        return "the file has " + countOf(static_cast<std::uint64_t>(lists_), "list") +
               " of faces, of which the reader keeps the last: " + partText(lost, triangles_, "triangles") + share +
               " are left out; export the scene as one shape";
    }

    TextScanner scanner_;
    std::vector<float> positions_;
    std::int64_t numVertices_ = 0;
    std::int64_t triangles_ = 0;
    std::int64_t lastTriangles_ = 0;
    std::int64_t lists_ = 0;
    double area_ = 0;
    double lastArea_ = 0;
    std::int64_t mismatches_ = 0;
    /// A shape's name that a "{" has to follow.
    std::string expected_;
    std::string firstOther_;
    std::int64_t otherShapes_ = 0;
    std::set<std::string> defined_;
    std::int64_t reused_ = 0;
    std::string firstScale_;
    std::int64_t scales_ = 0;
};

}  // namespace

void checkWrlFile(const std::string& path, Findings& findings) {
    InputFile file(path.c_str());
    WrlCheck check(file);
    check.run();
    check.report(findings);
}

}  // namespace talvek::host
