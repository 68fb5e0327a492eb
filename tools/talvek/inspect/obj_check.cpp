#include "talvek/inspect/obj_check.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "base/number_text.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    for (std::size_t begin = 0; begin < line.size();) {
        const std::size_t end = std::min(line.find_first_of(" \t\v\f\r", begin), line.size());
        if (end > begin) {
            words.push_back(line.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return words;
}

bool isNumber(std::string_view word) {
    float ignored = 0;
    return parseFloat(word, ignored) == word.size();
}

/// Trouble of one kind: where it was first and how often it came.
struct Trouble {
    std::int64_t count = 0;
    std::string first;

    void note(const std::string& where) { first = count++ == 0 ? where : first; }
    std::string more() const {
        return count > 1 ? " (and " + countOf(static_cast<std::uint64_t>(count - 1), "more place") + ")" : "";
    }
};

std::int64_t countVertices(std::string_view text) {
    std::int64_t count = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::vector<std::string_view> words = wordsOf(text.substr(begin, end - begin));
        count += !words.empty() && words[0] == "v" ? 1 : 0;
        begin = end + 1;
    }
    return count;
}

class ObjCheck {
  public:
    explicit ObjCheck(std::string_view text) : text_(text), numVertices_(countVertices(text)) {}

    void run() {
        for (std::size_t begin = 0; begin < text_.size();) {
            const std::size_t end = std::min(text_.find('\n', begin), text_.size());
            ++line_;
            checkLine(wordsOf(text_.substr(begin, end - begin)));
            begin = end + 1;
        }
    }

    void report(Findings& findings) const {
        if (badIndex_.count > 0) {
            findings.addFatal(badIndex_.first + badIndex_.more());
        }
        for (const Trouble* trouble : {&polygon_, &shortFace_, &shortVertex_, &strayRecord_}) {
            if (trouble->count > 0) {
                findings.add(trouble->first + trouble->more());
            }
        }
    }

  private:
    std::string place() const { return "line " + std::to_string(line_) + ": "; }

    void checkLine(const std::vector<std::string_view>& words) {
        if (words.empty()) {
            return;
        }
        if (words[0] == "v" || words[0] == "vt") {
            checkNumbers(words, words[0] == "v" ? 3 : 2);
        } else if (words[0] == "f") {
            checkFace(words);
        } else {
            checkOther(words);
        }
    }

    void checkNumbers(const std::vector<std::string_view>& words, std::size_t wanted) {
        const std::size_t given = std::min(words.size() - 1, wanted);
        const bool areNumbers =
            std::all_of(words.begin() + 1, words.begin() + 1 + static_cast<std::ptrdiff_t>(given), isNumber);
        if (given < wanted || !areNumbers) {
            shortVertex_.note(place() + "a " + (wanted == 3 ? "vertex" : "texture coordinate") + " without its " +
                              std::to_string(wanted) + " numbers takes those of the one before");
        }
    }

    void checkFace(const std::vector<std::string_view>& words) {
        ++face_;
        const std::size_t corners = words.size() - 1;
        if (corners > 3) {
            polygon_.note(place() + "face " + std::to_string(face_) + " has " + std::to_string(corners) +
                          " corners, of which the reader keeps the first three; triangulate the mesh");
        } else if (corners < 3) {
            shortFace_.note(place() + "face " + std::to_string(face_) + " has " + countOf(corners, "corner") +
                            "; the reader takes the words of the next line for the rest");
        }
        for (std::size_t i = 1; i <= std::min<std::size_t>(corners, 3); ++i) {
            checkIndex(words[i]);
        }
    }

    void checkIndex(std::string_view corner) {
        const std::int64_t index = toInt(corner.substr(0, corner.find('/')));
        const std::string name = place() + "face " + std::to_string(face_) + " names vertex " + std::to_string(index);
        if (index < 0) {
            badIndex_.note(name + "; indices that count from the end are not read; export with absolute ones");
        } else if (index == 0 || index > numVertices_) {
            badIndex_.note(name + ", and the file has vertices 1 to " + std::to_string(numVertices_));
        }
    }

    /// The reader does not know lines: a lone "v" or "f" begins a record wherever it stands.
    void checkOther(const std::vector<std::string_view>& words) {
        const auto stray = std::find_if(words.begin() + 1, words.end(), [](std::string_view word) {
            return word == "v" || word == "vt" || word == "f";
        });
        if (stray != words.end()) {
            strayRecord_.note(place() + "the word \"" + std::string(*stray) + "\" after " + std::string(words[0]) +
                              " is taken for the beginning of a record; take it out");
        }
    }

    std::string_view text_;
    std::int64_t numVertices_;
    std::int64_t line_ = 0;
    std::int64_t face_ = 0;
    Trouble badIndex_;
    Trouble polygon_;
    Trouble shortFace_;
    Trouble shortVertex_;
    Trouble strayRecord_;
};

}  // namespace

void checkObjText(std::string_view text, Findings& findings) {
    ObjCheck check(text);
    check.run();
    check.report(findings);
}

}  // namespace talvek::host
