// The example stone with its own mineral map, weathered under every pair of operating mode and model: the frames are
// the same bytes on every platform, line ends apart.
#include <gtest/gtest.h>

#include "example_stone/carved_block.h"
#include "example_stone/mineral_map.h"
#include "support/runs.h"
#include "weathering/random.h"

namespace talvek::test {
namespace {

struct Frames {
    std::int32_t mode;
    std::int32_t model;
    std::uint64_t checksum;
};

class ExampleStoneFrames : public ::testing::Test {
  protected:
    static void expectFrames(const std::vector<Frames>& pairs) {
        StoneRun run(example::objText(example::makeCarvedBlock()), ".obj");
        writeFile(run.mapName(), example::bitmapBytes(example::makeMineralMap()));
        run.epochs = 2;
        run.days = 3650;
        for (const Frames& pair : pairs) {
            run.mode = pair.mode;
            run.model = pair.model;
            randomGenerator() = RandomGenerator();
            ASSERT_EQ(run.start(), TALVEK_OK);
            EXPECT_NE(run.frameText(1), run.frameText(2)) << "model " << pair.model;
            EXPECT_EQ(run.framesChecksum(), pair.checksum)
                << "model " << pair.model << ": 0x" << std::hex << run.framesChecksum();
        }
    }
};

TEST_F(ExampleStoneFrames, AreTheSameEverywhereWhenOffset) {
    expectFrames({{0, 0, 0x35a5d5d2ae0f106f}, {0, 1, 0xd72f8837f05b3017}, {0, 2, 0xec91fceb28891e8e}});
}

TEST_F(ExampleStoneFrames, AreTheSameEverywhereWhenHomogeneous) {
    expectFrames({{1, 1, 0xa347e52f857b59b7}, {1, 2, 0x1e0780737afe7149}, {1, 3, 0xd32c63247f763c7a}});
}

TEST_F(ExampleStoneFrames, AreTheSameEverywhereOnTheGrid) {
    expectFrames({{2, 1, 0xb468b3fa7ed070ff}, {2, 2, 0x8ed06d419aadb906}, {2, 3, 0xc932cbda0db051fe}});
}

TEST_F(ExampleStoneFrames, AreTheSameEverywhereByTheMineralUnderEachVertex) {
    expectFrames({{3, 1, 0x56d7bd1610796a8}, {3, 2, 0x9ed68ad128dd6119}, {3, 3, 0xeb0f47fcba4130e1}});
}

}  // namespace
}  // namespace talvek::test
