#include "base/text_scanner.h"

#include <cstring>
#include <utility>

namespace talvek {

bool TextScanner::refill() {
    if (atEnd_ || end_ - begin_ == kBufferSize) {
        return false;
    }
    std::memmove(buffer_.get(), buffer_.get() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
    const std::size_t wanted = kBufferSize - end_;
    const std::size_t got = file_.read(buffer_.get() + end_, wanted);
    end_ += got;
    atEnd_ = got < wanted;
    return got > 0;
}

bool TextScanner::skipWhile(bool separators) {
    for (;;) {
        while (begin_ < end_ && isSeparator(buffer_[begin_]) == separators) {
            ++begin_;
        }
        if (begin_ < end_) {
            return true;
        }
        if (!refill()) {
            return false;
        }
    }
}

std::string_view TextScanner::peekToken() {
    if (std::exchange(isTokenCut_, false)) {
        skipWhile(false);
    }
    if (!skipWhile(true)) {
        return {};
    }
    std::size_t length = 0;
    while (length < kLongestToken) {
        if (begin_ + length == end_ && !refill()) {
            break;
        }
        if (isSeparator(buffer_[begin_ + length])) {
            break;
        }
        ++length;
    }
    return {buffer_.get() + begin_, length};
}

void TextScanner::consume(std::size_t length) {
    begin_ += length;
    isTokenCut_ = length == kLongestToken;
}

bool TextScanner::nextToken(std::string_view& token) {
    token = peekToken();
    consume(token.size());
    return !token.empty();
}

void TextScanner::readFloat(float& value) {
    consume(parseFloat(peekToken(), value));
}

}  // namespace talvek
