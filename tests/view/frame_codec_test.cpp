// Surfaces come out of their blocks as they went in, whatever their numbers are.
#include "talvek/view/frame_codec.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "talvek/view/ordered_integers.h"
#include "view/plain_decoder.h"

namespace talvek::test {
namespace {

using host::CodedFrame;
using host::Positions;

/// A wavy surface that recedes a little more each time.
std::vector<float> wavySurface(std::size_t vertices, double time) {
    std::vector<float> coordinates;
    for (std::size_t v = 0; v < vertices; ++v) {
        const double x = static_cast<double>(v % 100) * 3.4;
        const double y = std::floor(static_cast<double>(v) / 100) * 3.3;
        coordinates.push_back(static_cast<float>(x));
        coordinates.push_back(static_cast<float>(y));
        coordinates.push_back(static_cast<float>(150 + std::sin(x) - 0.017 * time * (1 + 0.2 * std::cos(y))));
    }
    return coordinates;
}

const float kOddNumbers[] = {0.0F,
                             -0.0F,
                             1.0F,
                             -1.0F,
                             std::numeric_limits<float>::max(),
                             std::numeric_limits<float>::lowest(),
                             std::numeric_limits<float>::min(),
                             std::numeric_limits<float>::denorm_min(),
                             -std::numeric_limits<float>::denorm_min(),
                             std::numeric_limits<float>::infinity(),
                             -std::numeric_limits<float>::infinity(),
                             std::numeric_limits<float>::quiet_NaN()};

std::vector<float> oddSurface(unsigned seed) {
    std::minstd_rand random(seed);
    std::vector<float> coordinates;
    for (int i = 0; i < 3000; ++i) {
        coordinates.push_back(kOddNumbers[random() % std::size(kOddNumbers)]);
    }
    return coordinates;
}

TEST(OrderedIntegers, KeepOrderAndBits) {
    EXPECT_LT(host::orderedOf(-1.0F), host::orderedOf(-0.5F));
    EXPECT_LT(host::orderedOf(-0.0F), host::orderedOf(0.0F));
    EXPECT_EQ(host::orderedOf(1.0F) + 1, host::orderedOf(std::nextafter(1.0F, 2.0F)));
    for (const float value : kOddNumbers) {
        EXPECT_EQ(std::bit_cast<std::uint32_t>(host::floatOf(host::orderedOf(value))),
                  std::bit_cast<std::uint32_t>(value));
    }
}

TEST(FrameCodec, BringsBackTheFirstSurface) {
    for (const auto& surface : {wavySurface(5000, 0), oddSurface(1), std::vector<float>{}, wavySurface(1, 0)}) {
        const Positions positions = host::positionsOf(surface);
        EXPECT_EQ(decodedFirst(host::encodeFirst(positions), surface.size() / 3), positions);
    }
}

TEST(FrameCodec, BringsBackFaces) {
    std::vector<std::int32_t> corners;
    for (std::int32_t i = 0; i < 2000; ++i) {
        corners.insert(corners.end(), {i, i + 100, i + 1});
    }
    corners.insert(corners.end(), {2147483646, 0, 2147483646});
    EXPECT_EQ(decodedFaces(host::encodeFaces(corners), corners.size() / 3), corners);
}

/// Codes surfaces as a page holds them and compares each with what comes out.
void expectRoundTrip(const std::vector<Positions>& surfaces, const std::vector<double>& times) {
    std::vector<Positions> decoded(surfaces.size());
    for (CodedFrame& coded : host::codingOrder(surfaces.size())) {
        const Positions& wanted = surfaces[coded.frame];
        if (coded.references.empty()) {
            decoded[coded.frame] = decodedFirst(host::encodeFirst(wanted), wanted.size() / 3);
        } else {
            host::setWeights(coded, times);
            std::vector<const Positions*> references;
            std::vector<Positions> known;
            for (const host::Reference& reference : coded.references) {
                references.push_back(&surfaces[reference.frame]);
                ASSERT_FALSE(decoded[reference.frame].empty()) << "a surface is foretold from a later one";
                known.push_back(decoded[reference.frame]);
            }
            decoded[coded.frame] = decodedFrame(host::encodeFrame(coded, wanted, references), coded, known);
        }
        EXPECT_EQ(decoded[coded.frame], wanted) << coded.frame;
    }
}

TEST(FrameCodec, BringsBackEverySurfaceOfARun) {
    std::vector<Positions> surfaces;
    std::vector<double> times;
    for (int i = 0; i < 23; ++i) {
        times.push_back(i * i);
        surfaces.push_back(host::positionsOf(wavySurface(3000, i * i)));
    }
    expectRoundTrip(surfaces, times);
}

TEST(FrameCodec, BringsBackSurfacesThatHaveNothingInCommon) {
    std::vector<Positions> surfaces;
    for (unsigned i = 0; i < 9; ++i) {
        surfaces.push_back(host::positionsOf(oddSurface(i + 1)));
    }
    expectRoundTrip(surfaces, {0, 1, 1, 1, 2, 2, 5, 5, 5});
}

TEST(FrameCodec, KeepsEvenRunsSmall) {
    constexpr std::size_t kVertices = 20000;
    std::vector<Positions> surfaces;
    std::vector<double> times;
    for (int i = 0; i <= 50; ++i) {
        times.push_back(i);
        surfaces.push_back(host::positionsOf(wavySurface(kVertices, i)));
    }
    std::size_t bytes = 0;
    for (CodedFrame& coded : host::codingOrder(surfaces.size())) {
        host::setWeights(coded, times);
        std::vector<const Positions*> references;
        for (const host::Reference& reference : coded.references) {
            references.push_back(&surfaces[reference.frame]);
        }
        bytes += references.empty() ? 0 : host::encodeFrame(coded, surfaces[coded.frame], references).bytes.size();
    }
    EXPECT_LT(static_cast<double>(bytes) / kVertices / 50, 1.0) << "bytes a vertex and epoch";
}

}  // namespace
}  // namespace talvek::test
