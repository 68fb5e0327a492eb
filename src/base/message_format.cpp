#include "base/message_format.h"

#include <algorithm>
#include <cstring>

#include "base/number_text.h"

namespace talvek {

namespace {

/// A buffer that silently drops what does not fit, and always keeps room for the terminator.
class CutText {
  public:
    explicit CutText(std::span<char> buffer) : buffer_(buffer) {}

    void append(std::string_view text) {
        const std::size_t kept = std::min(text.size(), buffer_.size() - 1 - used_);
        std::memcpy(buffer_.data() + used_, text.data(), kept);
        used_ += kept;
    }
    void terminate() { buffer_[used_] = '\0'; }

  private:
    std::span<char> buffer_;
    std::size_t used_ = 0;
};

void appendArgument(CutText& out, const MessageArgument& argument, int decimals) {
    char number[kNumberTextSize];
    if (const auto* text = std::get_if<std::string_view>(&argument)) {
        out.append(*text);
    } else if (const auto* integer = std::get_if<std::int32_t>(&argument)) {
        out.append({number, static_cast<std::size_t>(formatInteger(number, *integer) - number)});
    } else {
        const char* end = formatFixed(number, std::get<double>(argument), decimals);
        out.append({number, static_cast<std::size_t>(end - number)});
    }
}

}  // namespace

void formatMessage(std::span<char> buffer, std::string_view format, std::initializer_list<MessageArgument> arguments) {
    CutText out(buffer);
    const MessageArgument* argument = arguments.begin();
    while (!format.empty()) {
        const std::size_t literal = std::min(format.find('%'), format.size());
        out.append(format.substr(0, literal));
        format.remove_prefix(literal);
        if (format.empty()) {
            break;
        }
        const bool hasDecimals = format[1] == '.';
        appendArgument(out, *argument++, hasDecimals ? format[2] - '0' : 0);
        format.remove_prefix(hasDecimals ? 4 : 2);
    }
    out.terminate();
}

std::size_t expandWithoutArguments(std::string_view text, char* out) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.substr(i, 2) == "%%") {
            ++i;
        }
        out[length++] = text[i];
    }
    return length;
}

}  // namespace talvek
