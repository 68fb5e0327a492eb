// What the records of an OBJ file amount to, in the order of the file, while it is being read.
#pragma once

#include <cstdint>

#include "base/block_list.h"

namespace talvek {

struct ObjRecords {
    static constexpr std::int32_t kNoTexel = -1;

    BlockList<float> coordinates;
    BlockList<float> texels;
    BlockList<std::int32_t> vertexIndices;

    /// Corners without a texel are only counted until the first one with a texel comes: most files have none at all.
    std::int64_t leadingCornersWithoutTexel = 0;
    BlockList<std::int32_t> texelIndices;

    /// A record without a number takes the one that its kind had last.
    float lastPosition[3] = {};
    float lastTexel[2] = {};

    /// Prepares for a text of so many characters, or -1 where that is not known.
    void expectTextOf(std::int64_t characters) {
        // Few files have more numbers of one kind than this.
        constexpr std::int64_t kCharactersPerNumber = 8;
        const std::int64_t count = characters / kCharactersPerNumber;
        coordinates.expect(count);
        texels.expect(count);
        vertexIndices.expect(count);
        texelIndices.expect(count);
    }

    /// Adds the last position, or texel, to its list. Throws std::bad_alloc, as all that follow.
    void addPosition() { addLast(coordinates, lastPosition); }
    void addTexel() { addLast(texels, lastTexel); }

    void addCorner(std::int32_t vertex, std::int32_t texel) {
        vertexIndices.append(vertex);
        if (texel == kNoTexel) {
            addNoTexels(1);
        } else {
            texelIndices.append(texel);
        }
    }

    void addNoTexels(std::int64_t corners) {
        if (texelIndices.count() == 0) {
            leadingCornersWithoutTexel += corners;
            return;
        }
        for (std::int64_t i = 0; i < corners; ++i) {
            texelIndices.append(kNoTexel);
        }
    }

  private:
    template <std::size_t N>
    static void addLast(BlockList<float>& list, const float (&values)[N]) {
        std::memcpy(list.room(N), values, sizeof values);
        list.advance(N);
    }
};

}  // namespace talvek
