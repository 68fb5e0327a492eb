// The lines of a text file of any size, read piece by piece.
#pragma once

#include <string>
#include <string_view>

#include "base/input_file.h"

namespace talvek::host {

class TextLines {
  public:
    explicit TextLines(const std::string& path) : file_(path.c_str()) {}

    /// The next line without its end; false behind the last one. Valid until the next call.
    bool next(std::string_view& line) {
        std::size_t end = pending_.find('\n', begin_);
        while (end == std::string::npos && readOn()) {
            end = pending_.find('\n', searched_);
        }
        if (end == std::string::npos) {
            end = pending_.size();
        }
        if (begin_ >= pending_.size()) {
            return false;
        }
        line = std::string_view(pending_).substr(begin_, end - begin_);
        begin_ = end + 1;
        return true;
    }

  private:
    static constexpr std::size_t kPiece = 262144;

    bool readOn() {
        pending_.erase(0, begin_);
        begin_ = 0;
        searched_ = pending_.size();
        pending_.resize(searched_ + kPiece);
        pending_.resize(searched_ + file_.read(pending_.data() + searched_, kPiece));
        return pending_.size() > searched_;
    }

    InputFile file_;
    std::string pending_;
    std::size_t begin_ = 0;
    /// Where the next search for the end of a line may begin.
    std::size_t searched_ = 0;
};

}  // namespace talvek::host
