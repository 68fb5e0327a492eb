#include "talvek/formats/ply_rows.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

#include "talvek/formats/coordinate_text.h"

namespace talvek::host {

namespace {

template <typename T>
double valueOf(const char* bytes, bool isTurned) {
    std::array<char, sizeof(T)> own;
    std::memcpy(own.data(), bytes, own.size());
    if (isTurned) {
        std::ranges::reverse(own);
    }
    return static_cast<double>(std::bit_cast<T>(own));
}

double valueOf(PlyType type, const char* bytes, bool isTurned) {
    switch (type) {
        case PlyType::kInt8:
            return valueOf<std::int8_t>(bytes, isTurned);
        case PlyType::kUint8:
            return valueOf<std::uint8_t>(bytes, isTurned);
        case PlyType::kInt16:
            return valueOf<std::int16_t>(bytes, isTurned);
        case PlyType::kUint16:
            return valueOf<std::uint16_t>(bytes, isTurned);
        case PlyType::kInt32:
            return valueOf<std::int32_t>(bytes, isTurned);
        case PlyType::kUint32:
            return valueOf<std::uint32_t>(bytes, isTurned);
        case PlyType::kFloat32:
            return valueOf<float>(bytes, isTurned);
        default:
            return valueOf<double>(bytes, isTurned);
    }
}

std::string_view withoutBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}

/// No face of a scan has more corners, and every one costs fifty times its bytes to divide.
constexpr std::size_t kLongestList = std::size_t{2} * 65536;

}  // namespace

void PlyRows::fail(const std::string& reason) const {
    if (encoding_ == PlyEncoding::kText) {
        input_.failAtLine(reason);
    }
    input_.failAtByte(reason);
}

void PlyRows::begin(const PlyElement& element, std::initializer_list<int> wanted) {
    isWanted_.assign(element.properties.size(), false);
    for (const int property : wanted) {
        if (property >= 0) {
            isWanted_[static_cast<std::size_t>(property)] = true;
        }
    }
    // Every property takes a byte or a digit at least.
    const std::uint64_t each = std::max<std::uint64_t>(element.properties.size(), 1);
    if (!element.properties.empty() && static_cast<std::uint64_t>(element.count) > input_.mostLeft() / each) {
        fail("the file is too short for " + std::to_string(element.count) + " of element " + element.name);
    }
}

void PlyRows::next(const PlyElement& element) {
    values_.clear();
    firsts_.clear();
    if (encoding_ == PlyEncoding::kText) {
        beginTextRow();
    }
    for (std::size_t i = 0; i < element.properties.size(); ++i) {
        const PlyProperty& property = element.properties[i];
        firsts_.push_back(values_.size());
        const std::size_t length = property.isList ? listLength(property) : 1;
        if (!isWanted_[i]) {
            passOver(property.type, length);
            continue;
        }
        if (length > kLongestList) {
            fail("a list of " + property.name + " has " + std::to_string(length) + " values, more than are read");
        }
        for (std::size_t k = 0; k < length; ++k) {
            values_.push_back(read(property.type));
        }
    }
    firsts_.push_back(values_.size());
    if (encoding_ == PlyEncoding::kText) {
        endTextRow(element);
    }
}

void PlyRows::passOver(PlyType type, std::size_t count) {
    if (encoding_ == PlyEncoding::kText) {
        for (std::size_t i = 0; i < count; ++i) {
            textValue(type);
        }
        return;
    }
    constexpr std::size_t kPiece = 65536;
    for (std::size_t left = count * sizeOf(type); left > 0;) {
        const std::size_t piece = std::min({left, kPiece, input_.ahead(std::min(left, kPiece)).size()});
        if (piece == 0) {
            input_.failAtByte("the file ends too early");
        }
        input_.pass(piece);
        left -= piece;
    }
}

void PlyRows::beginTextRow() {
    do {
        if (!input_.nextLine(line_)) {
            input_.failAtLine("the file ends too early");
        }
        line_ = withoutBlanks(line_);
    } while (line_.empty());
}

void PlyRows::endTextRow(const PlyElement& element) const {
    if (!withoutBlanks(line_).empty()) {
        input_.failAtLine("the line has more numbers than the head gives the properties of element " + element.name +
                          "; the two do not fit, and what the numbers mean is not certain");
    }
}

double PlyRows::textValue(PlyType type) {
    line_ = withoutBlanks(line_);
    double value = 0;
    const std::size_t length = type == PlyType::kFloat32 ? parseCoordinate(line_, value) : parseDouble(line_, value);
    if (length == 0 || (length < line_.size() && !isBlank(line_[length]))) {
        input_.failAtLine(line_.empty() ? "the line has fewer numbers than the head gives its element properties"
                                        : "a number is missing");
    }
    line_.remove_prefix(length);
    return type == PlyType::kFloat32 ? static_cast<double>(static_cast<float>(value)) : value;
}

double PlyRows::byteValue(PlyType type) {
    const std::size_t size = sizeOf(type);
    const std::string_view bytes = input_.ahead(size);
    if (bytes.size() < size) {
        input_.failAtByte("the file ends too early");
    }
    const bool isTurned = (encoding_ == PlyEncoding::kBigEndian) == (std::endian::native == std::endian::little);
    const double value = valueOf(type, bytes.data(), isTurned);
    input_.pass(size);
    return value;
}

std::size_t PlyRows::listLength(const PlyProperty& property) {
    const double length =
        encoding_ == PlyEncoding::kText ? textValue(property.countType) : byteValue(property.countType);
    const std::size_t each = encoding_ == PlyEncoding::kText ? 1 : sizeOf(property.type);
    if (!(length >= 0) || length != std::floor(length) ||
        length * static_cast<double>(each) > static_cast<double>(input_.mostLeft() + line_.size())) {
        fail("the file is too short for a list of " + property.name);
    }
    return static_cast<std::size_t>(length);
}

}  // namespace talvek::host
