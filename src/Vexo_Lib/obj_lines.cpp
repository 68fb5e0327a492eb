// A line "v 1.25 -0.5 12.000001" says where its numbers end in one mask of its characters. The digits of a number make
// one integer m, so that its value is m / 10^k: both are exact in double precision and the division rounds correctly.
// Rounding once more to float could go wrong only where the quotient came to lie exactly half-way between two floats
// and the number itself does not. Half-way values of 25 bits and multiples of 10^-k are either equal or further apart
// than a double's rounding error as long as 10^k < 2^29, so with up to 8 decimals there is nothing to fear; with more,
// a half-way quotient goes the general way.
#include "Vexo_Lib/obj_lines.h"

#include "Vexo_Lib/obj_lines_sse2.h"
#include "base/fast_digits.h"
#include "base/number_text.h"
#include "base/processor.h"

namespace talvek {

namespace {

constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// Fifteen digits are less than 2^53.
constexpr unsigned kMostDigits = 15;
constexpr unsigned kSafeDecimals = 8;
constexpr unsigned kWindow = 64;

bool isHalfwayBetweenFloats(double value) {
    constexpr std::uint64_t kDroppedBits = 0x1FFFFFFF;
    return (std::bit_cast<std::uint64_t>(value) & kDroppedBits) == 0x10000000;
}

/// The first kWindow characters of a line's numbers.
class LineNumbers {
  public:
    // The last character of the window counts as no digit, so that every search in the mask finds something.
    explicit LineNumbers(const char* text)
        : text_(text), nonDigits_(nonDigitsOf64(text) | std::uint64_t{1} << (kWindow - 1)) {}

    /// Reads the next number, which has to be followed by white space inside the window. False when it is not plain.
    bool read(float& value) {
        while (text_[at_] == ' ' && at_ < kWindow - 1) {
            ++at_;
        }
        const bool isNegative = text_[at_] == '-';
        const unsigned first = at_ + (isNegative ? 1 : 0);
        const unsigned point = endOfDigits(first);
        const bool hasPoint = text_[point] == '.' && point < kWindow - 1;
        const unsigned end = hasPoint ? endOfDigits(point + 1) : point;
        const unsigned whole = point - first;
        const unsigned decimals = hasPoint ? end - point - 1 : 0;
        at_ = end;
        if (whole == 0 || whole > 8 || whole + decimals > kMostDigits || (hasPoint && decimals == 0) ||
            end >= kWindow - 1 || !isBlank(text_[end])) {
            return false;
        }
        const double quotient = scaled(first, whole, point + 1, decimals) / kPowersOfTen[decimals];
        const auto magnitude = static_cast<float>(quotient);
        value = isNegative ? -magnitude : magnitude;
        return decimals <= kSafeDecimals || !isHalfwayBetweenFloats(quotient);
    }

    /// The character behind the last number.
    const char* position() const { return text_ + at_; }

  private:
    unsigned endOfDigits(unsigned first) const {
        return first < kWindow ? first + static_cast<unsigned>(std::countr_zero(nonDigits_ >> first)) : kWindow - 1;
    }

    /// All digits of a number as one integer.
    double scaled(unsigned wholeAt, unsigned whole, unsigned decimalsAt, unsigned decimals) const {
        std::uint64_t digits = valueOfDigits(text_ + wholeAt, whole);
        if (decimals > 0) {
            digits = digits * static_cast<std::uint64_t>(kPowersOfTen[decimals]) +
                     valueOfManyDigits(text_ + decimalsAt, decimals);
        }
        return static_cast<double>(static_cast<std::int64_t>(digits));
    }

    const char* text_;
    std::uint64_t nonDigits_;
    unsigned at_ = 0;
};

const char* readPosition(const char* text, ObjRecords& records) {
    LineNumbers numbers(text);
    float position[3];
    if (!numbers.read(position[0]) || !numbers.read(position[1]) || !numbers.read(position[2])) {
        return nullptr;
    }
    std::memcpy(records.lastPosition, position, sizeof position);
    records.addPosition();
    return numbers.position();
}

const char* readTexel(const char* numbersAt, ObjRecords& records) {
    LineNumbers numbers(numbersAt);
    float texel[2];
    if (!numbers.read(texel[0]) || !numbers.read(texel[1])) {
        return nullptr;
    }
    std::memcpy(records.lastTexel, texel, sizeof texel);
    records.addTexel();
    return numbers.position();
}

/// A face of three vertex numbers, one blank before each.
const char* readBareFace(const char* text, ObjRecords& records) {
    const std::uint64_t nonDigits = nonDigitsOf32(text) | std::uint64_t{1} << 32;
    std::int32_t corners[3];
    unsigned first = 0;
    for (std::int32_t& corner : corners) {
        const auto count = static_cast<unsigned>(std::countr_zero(nonDigits >> first));
        if (count == 0 || count > 8 || !isBlank(text[first + count])) {
            return nullptr;
        }
        corner = static_cast<std::int32_t>(valueOfDigits(text + first, count)) - 1;
        first += count + 1;
    }
    for (const std::int32_t corner : corners) {
        records.addCorner(corner, ObjRecords::kNoTexel);
    }
    return text + first - 1;
}

struct Corner {
    std::int32_t vertex;
    std::int32_t texel;
};

/// Reads "7", "7/8", "7/8/9" or "7//9"; returns the white space behind it, null when there is none.
const char* readCorner(const char* text, Corner& corner) {
    const std::uint64_t nonDigits = nonDigitsOf32(text) | std::uint64_t{1} << 31;
    std::int32_t numbers[3] = {};
    unsigned first = 0;
    for (std::int32_t& number : numbers) {
        const auto count = static_cast<unsigned>(std::countr_zero(nonDigits >> first));
        if (count > 8 || (count == 0 && &number != &numbers[1])) {
            return nullptr;
        }
        number = count > 0 ? static_cast<std::int32_t>(valueOfDigits(text + first, count)) : 0;
        first += count + 1;
        if (text[first - 1] != '/') {
            break;
        }
    }
    corner = {numbers[0] - 1, numbers[1] - 1};
    return isBlank(text[first - 1]) ? text + first - 1 : nullptr;
}

const char* readSlashedFace(const char* text, ObjRecords& records) {
    Corner corners[3];
    const char* at = text - 1;
    for (Corner& corner : corners) {
        at = *at == ' ' ? readCorner(at + 1, corner) : nullptr;
        if (at == nullptr) {
            return nullptr;
        }
    }
    for (const Corner& corner : corners) {
        records.addCorner(corner.vertex, corner.texel);
    }
    return at;
}

/// Passes over the rest of a line as far as no further record can start in it, because it has neither of the letters
/// that begin one: to the next line, or to white space before.
const char* passOverRest(const char* text, const char* end) {
    const char* lastBlank = text;
    for (const char* at = text; at != end && *at != 'v' && *at != 'f'; ++at) {
        if (*at == '\n') {
            return at + 1;
        }
        lastBlank = isBlank(*at) ? at : lastBlank;
    }
    return lastBlank;
}

/// The work that a machine may be able to do faster. Each function returns null for what it leaves to the plain form.
struct PlainMachine {
    static const char* readPosition(const char*, ObjRecords&) { return nullptr; }
    static const char* readBareFace(const char*, ObjRecords&) { return nullptr; }
    static const char* passOverLine(const char*) { return nullptr; }
};

#ifdef TALVEK_HAS_SSE2
struct Sse2Machine {
    static const char* readPosition(const char* text, ObjRecords& records) {
        float* room = records.coordinates.room(4);
        const unsigned end = sse2::readPosition(text, room);
        if (end == 0 || !isBlank(text[end])) {
            return nullptr;
        }
        std::memcpy(records.lastPosition, room, sizeof records.lastPosition);
        records.coordinates.advance(3);
        return text + end;
    }

    static const char* readBareFace(const char* text, ObjRecords& records) {
        const unsigned end = sse2::readVertexNumbers(text, records.vertexIndices.room(4));
        if (end == 0 || !isBlank(text[end])) {
            return nullptr;
        }
        records.vertexIndices.advance(3);
        records.addNoTexels(3);
        return text + end;
    }

    static const char* passOverLine(const char* text) {
        const unsigned next = sse2::passOverLine(text);
        return next > 0 ? text + next : nullptr;
    }
};
#else
using Sse2Machine = PlainMachine;
#endif

const char* firstOf(const char* fast, auto plain) {
    return fast != nullptr ? fast : plain();
}

/// Reads the record that starts a line; null when it is not plain. A line that starts with anything else than a record
/// counts as read up to its first character, so that the rest of it can be passed over.
template <typename Machine>
const char* readRecord(const char* line, ObjRecords& records) {
    const char* numbers = line + 2;
    if (line[0] == 'v') {
        if (line[1] == ' ') {
            return firstOf(Machine::readPosition(numbers, records), [&] { return readPosition(numbers, records); });
        }
        if (line[1] == 't' && line[2] == ' ') {
            return readTexel(line + 3, records);
        }
        return line[1] == 'n' && line[2] == ' ' ? line + 2 : nullptr;
    }
    if (line[0] == 'f') {
        if (line[1] != ' ') {
            return nullptr;
        }
        return firstOf(Machine::readBareFace(numbers, records), [&] {
            return firstOf(readBareFace(numbers, records), [&] { return readSlashedFace(numbers, records); });
        });
    }
    return line;
}

template <typename Machine>
const char* readLines(const char* text, const char* end, ObjRecords& records) {
    while (static_cast<std::size_t>(end - text) >= kPlainLineWindow) {
        const char* recordEnd = readRecord<Machine>(text, records);
        if (recordEnd == nullptr) {
            return text;
        }
        const char* next = recordEnd + 1;
        if (*recordEnd != '\n') {
            const bool hasWindow = static_cast<std::size_t>(end - recordEnd) >= kPlainLineWindow;
            next = firstOf(hasWindow ? Machine::passOverLine(recordEnd) : nullptr,
                           [&] { return passOverRest(recordEnd, end); });
        }
        if (next == recordEnd) {
            return next;
        }
        text = next;
    }
    return text;
}

}  // namespace

const char* readPlainLines(const char* text, const char* end, ObjRecords& records) {
    return readLines<Sse2Machine>(text, end, records);
}

const char* readPlainLinesPortably(const char* text, const char* end, ObjRecords& records) {
    return readLines<PlainMachine>(text, end, records);
}

}  // namespace talvek
