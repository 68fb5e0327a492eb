#include "view/plain_decoder.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cmath>

namespace talvek::test {

namespace {

std::int64_t unzigzag(std::uint32_t number) {
    const std::int64_t half = number / 2;
    return number % 2 == 0 ? half : -half - 1;
}

std::uint32_t wrapped(std::int64_t value) {
    return static_cast<std::uint32_t>(value & 0xFFFFFFFF);
}

}  // namespace

std::vector<std::uint8_t> inflated(const host::Bytes& bytes) {
    std::vector<std::uint8_t> out(1 << 22);
    z_stream stream{};
    EXPECT_EQ(inflateInit2(&stream, -15), Z_OK);
    stream.next_in = const_cast<std::uint8_t*>(bytes.data());
    stream.avail_in = static_cast<unsigned>(bytes.size());
    stream.next_out = out.data();
    stream.avail_out = static_cast<unsigned>(out.size());
    EXPECT_EQ(inflate(&stream, Z_FINISH), Z_STREAM_END);
    EXPECT_EQ(stream.avail_in, 0U);
    out.resize(stream.total_out);
    inflateEnd(&stream);
    return out;
}

std::vector<std::uint32_t> unpacked(const host::Block& block, std::size_t count) {
    const std::vector<std::uint8_t> bytes = inflated(block.bytes);
    EXPECT_EQ(bytes.size(), block.width * count + 4 * block.escapes);
    std::vector<std::uint32_t> numbers(count);
    std::size_t escape = block.width * count;
    const double escaped = std::pow(256.0, block.width) - 1;
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t plane = 0; plane < block.width; ++plane) {
            numbers[i] += static_cast<std::uint32_t>(bytes[plane * count + i]) << (8 * plane);
        }
        if (block.width < 4 && numbers[i] == escaped) {
            numbers[i] = 0;
            for (int shift = 0; shift < 32; shift += 8) {
                numbers[i] |= static_cast<std::uint32_t>(bytes.at(escape++)) << shift;
            }
        }
    }
    return numbers;
}

host::Positions decodedFirst(const host::Block& block, std::size_t vertices) {
    host::Positions positions = unpacked(block, 3 * vertices);
    for (std::size_t plane = 0; plane < 3; ++plane) {
        std::int64_t value = 0;
        for (std::size_t i = plane * vertices; i < (plane + 1) * vertices; ++i) {
            value += unzigzag(positions[i]);
            positions[i] = wrapped(value);
        }
    }
    return positions;
}

std::vector<std::int32_t> decodedFaces(const host::Block& block, std::size_t faces) {
    const std::vector<std::uint32_t> numbers = unpacked(block, 3 * faces);
    std::vector<std::int32_t> corners;
    std::int64_t first = 0;
    for (std::size_t face = 0; face < faces; ++face) {
        first += unzigzag(numbers[face]);
        const std::int64_t second = first + unzigzag(numbers[faces + face]);
        const std::int64_t third = second + unzigzag(numbers[2 * faces + face]);
        for (const std::int64_t corner : {first, second, third}) {
            corners.push_back(static_cast<std::int32_t>(corner));
        }
    }
    return corners;
}

host::Positions decodedFrame(const host::Block& block, const host::CodedFrame& coded,
                             const std::vector<host::Positions>& references) {
    host::Positions positions = unpacked(block, references[0].size());
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const std::int64_t base = references[0][i];
        double sum = host::kUnitWeight / 2;
        for (std::size_t k = 1; k < coded.references.size(); ++k) {
            sum += static_cast<double>(coded.references[k].weight) * static_cast<double>(references[k][i] - base);
        }
        const auto moved = static_cast<std::int64_t>(std::floor(sum / host::kUnitWeight));
        positions[i] = wrapped(base + moved + unzigzag(positions[i]));
    }
    return positions;
}

}  // namespace talvek::test
