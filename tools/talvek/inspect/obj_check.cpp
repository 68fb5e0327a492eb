#include "talvek/inspect/obj_check.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

#include "base/number_text.h"
#include "talvek/inspect/points.h"
#include "talvek/inspect/text_lines.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

/// The words of a line, one after the other.
class Words {
  public:
    explicit Words(std::string_view line) : rest_(line) {}

    /// Empty behind the last word.
    std::string_view next() {
        std::size_t begin = 0;
        while (begin < rest_.size() && isBlank(rest_[begin])) {
            ++begin;
        }
        std::size_t end = begin;
        while (end < rest_.size() && !isBlank(rest_[end])) {
            ++end;
        }
        const std::string_view word = rest_.substr(begin, end - begin);
        rest_.remove_prefix(end);
        return word;
    }

  private:
    std::string_view rest_;
};

bool isNumber(std::string_view word) {
    constexpr std::string_view kPlain = "0123456789.-";
    float ignored = 0;
    return (!word.empty() && word.find_first_not_of(kPlain) == std::string_view::npos && word.back() != '-') ||
           (!word.empty() && parseFloat(word, ignored) == word.size());
}

/// Trouble of one kind: where it was first and how often it came.
struct Trouble {
    std::int64_t count = 0;
    std::string first;

    template <typename Where>
    void note(Where where) {
        if (count++ == 0) {
            first = where();
        }
    }
    std::string more() const {
        return count > 1 ? " (and " + countOf(static_cast<std::uint64_t>(count - 1), "more place") + ")" : "";
    }
};

class ObjCheck {
  public:
    explicit ObjCheck(const Object3D& mesh) : mesh_(mesh) {}

    void check(std::string_view line) {
        ++line_;
        Words words(line);
        const std::string_view keyword = words.next();
        if (keyword == "v" || keyword == "vt") {
            checkNumbers(words, keyword == "v" ? 3 : 2);
        } else if (keyword == "f") {
            checkFace(words);
        } else if (!keyword.empty()) {
            checkOther(keyword, line);
        }
    }

    void report(Findings& findings) const {
        if (relativeIndex_.count > 0) {
            findings.fail("relativeIndices", relativeIndex_.count, relativeText());
        }
        if (badIndex_.count > 0) {
            findings.fail("indicesOutOfRange", badIndex_.count, badIndex_.first + badIndex_.more());
        }
        if (polygon_.count > 0) {
            findings.lose("polygons", polygon_.count, polygonText());
        }
        const auto lose = [&findings](const char* kind, const Trouble& trouble) {
            if (trouble.count > 0) {
                findings.lose(kind, trouble.count, trouble.first + trouble.more());
            }
        };
        lose("shortFaces", shortFace_);
        lose("shortRecords", shortRecord_);
        lose("strayRecords", strayRecord_);
    }

  private:
    std::string place() const { return "line " + std::to_string(line_) + ": "; }

    void checkNumbers(Words& words, std::size_t wanted) {
        for (std::size_t i = 0; i < wanted; ++i) {
            if (!isNumber(words.next())) {
                shortRecord_.note([&] {
                    return place() + "a " + (wanted == 3 ? "vertex" : "texture coordinate") + " without its " +
                           std::to_string(wanted) + " numbers takes those of the one before";
                });
                return;
            }
        }
    }

    void checkFace(Words& words) {
        ++faces_;
        corners_.clear();
        for (std::string_view word = words.next(); !word.empty(); word = words.next()) {
            corners_.push_back(toInt(word.substr(0, word.find('/'))));
            checkIndex(corners_.back());
        }
        if (corners_.size() < 3) {
            shortFace_.note([&] {
                return place() + "face " + std::to_string(faces_) + " has " + countOf(corners_.size(), "corner") +
                       "; the reader takes the words of the next line for the rest";
            });
            return;
        }
        for (std::size_t i = 1; i + 1 < corners_.size(); ++i) {
            const double area = areaOf(corners_[0], corners_[i], corners_[i + 1]);
            area_ += area;
            lostArea_ += i > 1 ? area : 0;
        }
        if (corners_.size() > 3) {
            polygon_.note([&] {
                return place() + "face " + std::to_string(faces_) + " has " + std::to_string(corners_.size()) +
                       " corners";
            });
        }
    }

    void checkIndex(std::int32_t index) {
        const auto named = [&] {
            return place() + "face " + std::to_string(faces_) + " names vertex " + std::to_string(index);
        };
        if (index < 0) {
            relativeIndex_.note(named);
        } else if (index == 0 || index > mesh_.numVertices) {
            badIndex_.note(
                [&] { return named() + ", and the file has vertices 1 to " + std::to_string(mesh_.numVertices); });
        }
    }

    /// 0 where a corner is not there or not finite.
    double areaOf(std::int32_t a, std::int32_t b, std::int32_t c) const {
        if (std::min({a, b, c}) < 1 || std::max({a, b, c}) > mesh_.numVertices) {
            return 0;
        }
        const Point origin = pointOf(mesh_, a - 1);
        const double area = length(cross(pointOf(mesh_, b - 1) - origin, pointOf(mesh_, c - 1) - origin)) / 2;
        return std::isfinite(area) ? area : 0;
    }

    /// The reader does not know lines: a lone "v" or "f" begins a record wherever it stands.
    void checkOther(std::string_view keyword, std::string_view line) {
        if (line.find_first_of("vf", static_cast<std::size_t>(keyword.data() - line.data()) + keyword.size()) ==
            std::string_view::npos) {
            return;
        }
        Words words(line);
        words.next();
        for (std::string_view word = words.next(); !word.empty(); word = words.next()) {
            if (word == "v" || word == "vt" || word == "f") {
                strayRecord_.note([&] {
                    return place() + "the word \"" + std::string(word) + "\" after " + std::string(keyword) +
                           " is taken for the beginning of a record; take it out";
                });
                return;
            }
        }
    }

    std::string relativeText() const {
        return relativeIndex_.first + relativeIndex_.more() +
               "; indices that count from the end are not read; export with absolute ones";
    }

    std::string polygonText() const {
        return polygon_.first + ", of which the reader keeps the first three; so it is with " +
               partText(polygon_.count, faces_, "faces") + ", and " + shareText(lostArea_, area_) +
               " of the surface is left out; triangulate the mesh";
    }

    const Object3D& mesh_;
    std::int64_t line_ = 0;
    std::int64_t faces_ = 0;
    double area_ = 0;
    double lostArea_ = 0;
    std::vector<std::int32_t> corners_;
    Trouble relativeIndex_;
    Trouble badIndex_;
    Trouble polygon_;
    Trouble shortFace_;
    Trouble shortRecord_;
    Trouble strayRecord_;
};

}  // namespace

void checkObjFile(const std::string& path, const Object3D& mesh, Findings& findings) {
    ObjCheck check(mesh);
    TextLines lines(path);
    for (std::string_view line; lines.next(line);) {
        check.check(line);
    }
    check.report(findings);
}

}  // namespace talvek::host
