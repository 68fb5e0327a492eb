// Reads a text file of any size as a stream of tokens and numbers, piece by piece.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "base/heap_array.h"
#include "base/input_file.h"
#include "base/number_text.h"

namespace talvek {

/// For every character whether it belongs.
class CharacterSet {
  public:
    constexpr explicit CharacterSet(std::string_view characters) {
        for (const char c : characters) {
            belongs_[static_cast<unsigned char>(c)] = true;
        }
    }
    constexpr bool contains(char c) const { return belongs_[static_cast<unsigned char>(c)]; }

  private:
    std::array<bool, 256> belongs_{};
};

/// The C locale's white space, which separates what "%s" reads.
inline constexpr CharacterSet kBlankSeparators{" \t\n\v\f\r"};

class TextScanner {
  public:
    /// Tokens are cut to this length, whatever follows up to the next separator is dropped.
    static constexpr std::size_t kLongestToken = 65536;

    static constexpr std::size_t kMargin = 16;

    /// Throws std::bad_alloc when there is no memory for the buffer.
    TextScanner(InputFile& file, const CharacterSet& separators)
        : file_(file), separators_(separators), buffer_(makeArray<char>(kMargin + kBufferSize)) {
        std::memset(buffer_.get(), 0, kMargin);
    }

    /// Reads the next token; false at the end of the file. The token's text is valid until the next call.
    bool nextToken(std::string_view& token);

    /// Reads the number that comes next as "%f" does: blanks are skipped, what follows the number directly is left to
    /// be the next token. When there is no number the value stays and nothing but the blanks is consumed.
    void readFloat(float& value);

    /// What lies ahead in memory: at least `size` characters, at most kLongestToken, unless the file ends before. It
    /// does not begin inside a token, and kMargin characters in front of it can be read, whatever they are. Valid until
    /// the next call; pass tells how much of it has been read.
    std::string_view ahead(std::size_t size);
    void pass(std::size_t length) { begin_ += length; }

  private:
    static constexpr std::size_t kBufferSize = 262144;

    bool isSeparator(char c) const { return separators_.contains(c); }
    /// Finds the token that comes next and brings it, cut to kLongestToken, into the buffer whole. Empty at the end of
    /// the file.
    std::string_view peekToken();
    /// Skips the separators, or the characters other than separators, that come next; false at the end of the file.
    bool skipWhile(bool separators);
    void consume(std::size_t length);
    /// Passes over what is left of a token that was cut.
    void skipCutToken();
    /// Moves what is unread to the front of the buffer and reads on behind it; false when nothing more came.
    bool refill();

    InputFile& file_;
    const CharacterSet& separators_;
    HeapArray<char> buffer_;
    std::size_t begin_ = kMargin;
    std::size_t end_ = kMargin;
    bool atEnd_ = false;
    /// Whether the token that was read last goes on, beyond what is kept of it.
    bool isTokenCut_ = false;
};

}  // namespace talvek
