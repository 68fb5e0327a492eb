#include "talvek/view/frame_codec.h"

#include <algorithm>
#include <cmath>

#include "talvek/view/ordered_integers.h"

namespace talvek::host {

namespace {

using Numbers = std::vector<std::uint32_t>;

constexpr std::uint32_t largestOf(std::uint32_t width) {
    return width == 4 ? 0xFFFFFFFFU : (1U << (8 * width)) - 1;
}

/// The fewest planes that hold nearly all numbers: each escape costs as much as several numbers.
std::uint32_t widthFor(const Numbers& numbers) {
    std::size_t needing[5] = {};
    for (const std::uint32_t number : numbers) {
        ++needing[number < 0xFF ? 1 : number < 0xFFFF ? 2 : number < 0xFFFFFF ? 3 : 4];
    }
    std::size_t larger = numbers.size();
    for (std::uint32_t width = 1; width < 4; ++width) {
        larger -= needing[width];
        if (larger <= numbers.size() / 64) {
            return width;
        }
    }
    return 4;
}

Block pack(const Numbers& numbers, Redundancy redundancy) {
    Block block;
    block.width = widthFor(numbers);
    const std::uint32_t largest = largestOf(block.width);
    Bytes planes(block.width * numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const std::uint32_t kept = std::min(numbers[i], largest);
        for (std::uint32_t plane = 0; plane < block.width; ++plane) {
            planes[plane * numbers.size() + i] = static_cast<std::uint8_t>(kept >> (8 * plane));
        }
    }
    for (const std::uint32_t number : numbers) {
        if (block.width < 4 && number >= largest) {
            ++block.escapes;
            for (int shift = 0; shift < 32; shift += 8) {
                planes.push_back(static_cast<std::uint8_t>(number >> shift));
            }
        }
    }
    block.bytes = compress(planes, redundancy);
    return block;
}

/// The ordered integer that the references give. All arithmetic is in integers, which every machine does alike.
class Foretelling {
  public:
    Foretelling(const CodedFrame& coded, std::span<const Positions* const> references) : base_(references[0]->data()) {
        for (std::size_t i = 1; i < references.size(); ++i) {
            if (coded.references[i].weight != 0) {
                terms_[count_++] = {references[i]->data(), coded.references[i].weight};
            }
        }
    }

    std::uint32_t at(std::size_t i) const {
        const std::int64_t base = base_[i];
        std::int64_t sum = kUnitWeight / 2;
        for (std::size_t k = 0; k < count_; ++k) {
            sum += terms_[k].weight * (std::int64_t{terms_[k].values[i]} - base);
        }
        return static_cast<std::uint32_t>(base + (sum >> 14));
    }

  private:
    struct Term {
        const std::uint32_t* values = nullptr;
        std::int64_t weight = 0;
    };
    const std::uint32_t* base_;
    std::array<Term, 3> terms_{};
    std::size_t count_ = 0;
};

}  // namespace

Positions positionsOf(std::span<const float> vertices) {
    const std::size_t count = vertices.size() / 3;
    Positions positions(vertices.size());
    for (std::size_t v = 0; v < count; ++v) {
        for (std::size_t k = 0; k < 3; ++k) {
            positions[k * count + v] = orderedOf(vertices[3 * v + k]);
        }
    }
    return positions;
}

std::uint32_t checksumOfPositions(const Positions& positions) {
    static_assert(std::endian::native == std::endian::little);
    return checksumOf({reinterpret_cast<const std::uint8_t*>(positions.data()), 4 * positions.size()});
}

Block encodeFirst(const Positions& positions) {
    const std::size_t count = positions.size() / 3;
    Numbers numbers(positions.size());
    for (std::size_t i = 0; i < positions.size(); ++i) {
        numbers[i] = zigzag(positions[i] - (i % std::max<std::size_t>(count, 1) == 0 ? 0 : positions[i - 1]));
    }
    return pack(numbers, Redundancy::kRepetitions);
}

Block encodeFaces(std::span<const std::int32_t> corners) {
    Numbers numbers(corners.size());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const std::size_t before = i % 3 == 0 ? i - 3 : i - 1;
        const std::int32_t reference = i == 0 ? 0 : corners[before];
        // The planes hold the first corners of all faces, then the second ones, then the third ones.
        numbers[i % 3 * (corners.size() / 3) + i / 3] =
            zigzag(static_cast<std::uint32_t>(corners[i]) - static_cast<std::uint32_t>(reference));
    }
    return pack(numbers, Redundancy::kRepetitions);
}

Block encodeFrame(const CodedFrame& coded, const Positions& positions, std::span<const Positions* const> references) {
    const Foretelling foretelling(coded, references);
    Numbers numbers(positions.size());
    for (std::size_t i = 0; i < positions.size(); ++i) {
        numbers[i] = zigzag(positions[i] - foretelling.at(i));
    }
    return pack(numbers, Redundancy::kRuns);
}

double foretellingError(const CodedFrame& coded, const Positions& positions,
                        std::span<const Positions* const> references) {
    constexpr std::size_t kStep = 37;
    const Foretelling foretelling(coded, references);
    double sum = 0;
    for (std::size_t i = 0; i < positions.size(); i += kStep) {
        sum += std::log2(1.0 + zigzag(positions[i] - foretelling.at(i)));
    }
    return sum;
}

}  // namespace talvek::host
