#include "base/text_scanner.h"

#include <cstring>
#include <utility>

namespace talvek {

namespace {

constexpr CharacterSet kNumberStarts{"0123456789+-.iInN"};

}  // namespace

bool TextScanner::refill() {
    const std::size_t unread = end_ - begin_;
    if (atEnd_) {
        return false;
    }
    std::memmove(buffer_.get() + kMargin, buffer_.get() + begin_, unread);
    begin_ = kMargin;
    end_ = kMargin + unread;
    const std::size_t wanted = kBufferSize - unread;
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

void TextScanner::skipCutToken() {
    if (std::exchange(isTokenCut_, false)) {
        skipWhile(false);
    }
}

std::string_view TextScanner::ahead(std::size_t size) {
    skipCutToken();
    while (end_ - begin_ < size && refill()) {
    }
    return {buffer_.get() + begin_, end_ - begin_};
}

std::string_view TextScanner::peekToken() {
    skipCutToken();
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
    skipCutToken();
    // Most of what is no number shows it at once.
    if (skipWhile(true) && kNumberStarts.contains(buffer_[begin_])) {
        consume(parseFloat(peekToken(), value));
    }
}

}  // namespace talvek
