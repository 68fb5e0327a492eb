// The words and numbers of a line.
#pragma once

#include <string_view>

#include "talvek/formats/coordinate_text.h"

namespace talvek::host {

class TextWords {
  public:
    explicit TextWords(std::string_view line) : rest_(line) { skipBlanks(); }

    bool isAtEnd() const { return rest_.empty(); }
    std::string_view rest() const { return rest_; }

    /// The next word; empty at the end.
    std::string_view next() {
        std::size_t length = 0;
        while (length < rest_.size() && !isBlank(rest_[length])) {
            ++length;
        }
        const std::string_view word = rest_.substr(0, length);
        rest_.remove_prefix(length);
        skipBlanks();
        return word;
    }

    /// Reads a word that is a number as a whole; false, with nothing read, when it is none.
    bool nextCoordinate(double& value) {
        const std::size_t length = parseCoordinate(rest_, value);
        if (length == 0 || (length < rest_.size() && !isBlank(rest_[length]))) {
            return false;
        }
        rest_.remove_prefix(length);
        skipBlanks();
        return true;
    }

  private:
    void skipBlanks() {
        while (!rest_.empty() && isBlank(rest_.front())) {
            rest_.remove_prefix(1);
        }
    }

    std::string_view rest_;
};

}  // namespace talvek::host
