// The library's own random numbers.
#include "weathering/random.h"

#include <gtest/gtest.h>

#include <vector>

namespace talvek::test {
namespace {

TEST(RandomGenerator, GivesItsOneSequence) {
    RandomGenerator generator;
    std::vector<std::int32_t> drawn(10);
    for (std::int32_t& number : drawn) {
        number = generator.next();
    }
    EXPECT_EQ(drawn, (std::vector<std::int32_t>{41, 18467, 6334, 26500, 19169, 15724, 11478, 29358, 26962, 24464}));
}

TEST(RandomGenerator, FollowsItsRecurrenceForAMillionNumbers) {
    RandomGenerator generator;
    std::uint64_t state = 1;
    for (int i = 0; i < 1000000; ++i) {
        state = (state * 214013 + 2531011) % 4294967296;
        ASSERT_EQ(generator.next(), static_cast<std::int32_t>(state / 65536 % 32768)) << i;
    }
}

TEST(RandomGenerator, GoesOnWhereTheProcessLeftIt) {
    RandomGenerator expected = randomGenerator();
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(randomGenerator().next(), expected.next());
    }
}

}  // namespace
}  // namespace talvek::test
