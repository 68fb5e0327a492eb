// Pictures that are nearly nothing in the file and nearly everything in memory.
#include "talvek/mineral_map/picture.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include "talvek/support/exit_status.h"

namespace talvek::test {
namespace {

std::string bigEndian(std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
    return bytes;
}

std::string chunk(const std::string& typeAndData) {
    const uLong crc =
        crc32(0, reinterpret_cast<const Bytef*>(typeAndData.data()), static_cast<uInt>(typeAndData.size()));
    return bigEndian(static_cast<std::uint32_t>(typeAndData.size() - 4)) + typeAndData +
           bigEndian(static_cast<std::uint32_t>(crc));
}

/// A picture of so many white pixels a side, one bit for each.
std::string whitePng(std::uint32_t side) {
    std::string row(1 + (side + 7) / 8, '\xFF');
    row[0] = '\0';
    std::string rows;
    for (std::uint32_t i = 0; i < side; ++i) {
        rows += row;
    }
    std::string packed(compressBound(static_cast<uLong>(rows.size())), '\0');
    uLongf size = static_cast<uLongf>(packed.size());
    compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(rows.data()),
              static_cast<uLong>(rows.size()), 9);
    packed.resize(size);
    return "\x89PNG\r\n\x1A\n" + chunk("IHDR" + bigEndian(side) + bigEndian(side) + std::string("\1\0\0\0\0", 5)) +
           chunk("IDAT" + packed) + chunk("IEND");
}

TEST(Pictures, ThatExpandBeyondAllProportionAreRefused) {
    const std::string bytes = whitePng(12000);
    ASSERT_LT(bytes.size(), 100000U);
    try {
        host::decodePicture(bytes, "white.png");
        FAIL() << "decoded";
    } catch (const host::Failure& failure) {
        EXPECT_NE(std::string(failure.what()).find("white.png: a picture of 12000 x 12000 pixels"), std::string::npos);
    }
}

TEST(Pictures, SmallOnesMayBeBlank) {
    const host::Picture picture = host::decodePicture(whitePng(1000), "white.png");
    EXPECT_EQ(picture.width, 1000);
    EXPECT_EQ(picture.colours.size(), 3000000U);
    EXPECT_EQ(picture.colours[0], 255);
}

}  // namespace
}  // namespace talvek::test
