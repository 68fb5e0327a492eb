// Arrays on the C heap and the list that grows into one.
#include "base/heap_array.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "base/block_list.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace talvek::test {
namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

TEST(HeapArrays, AnEmptyArrayIsNotAnAbsentOne) {
    EXPECT_NE(makeArray<float>(0), nullptr);
    EXPECT_NE(makeZeroedArray<double>(0), nullptr);
    EXPECT_NE(makeFilledArray(0, 1.0F), nullptr);
}

#ifdef __GLIBC__
TEST(HeapArrays, TakeHardlyMoreMemoryThanTheirValues) {
    constexpr std::int64_t kBytes = 1 << 20;
    constexpr std::size_t kPages = 2 * 4096;
    EXPECT_LT(::malloc_usable_size(makeArray<char>(kBytes).get()), kBytes + kPages);
    EXPECT_LT(::malloc_usable_size(makeZeroedArray<char>(kBytes).get()), kBytes + kPages);
    EXPECT_LT(::malloc_usable_size(makeArray<double>(kBytes / 8).get()), kBytes + kPages);
}
#endif

TEST(HeapArrays, HoldTheirValues) {
    const HeapArray<std::int32_t> zeroed = makeZeroedArray<std::int32_t>(1000);
    const HeapArray<std::int32_t> filled = makeFilledArray<std::int32_t>(1000, 7);
    for (std::size_t i = 0; i < 1000; ++i) {
        ASSERT_EQ(zeroed[i], 0);
        ASSERT_EQ(filled[i], 7);
    }
    const HeapArray<std::int32_t> copy = copyArray(filled.get(), 1000);
    EXPECT_NE(copy.get(), filled.get());
    EXPECT_EQ(copy[999], 7);
}

TEST(HeapArrays, RefuseNegativeCounts) {
    EXPECT_THROW(makeArray<float>(-1), std::bad_alloc);
    EXPECT_THROW(makeZeroedArray<char>(std::numeric_limits<std::int64_t>::min()), std::bad_alloc);
}

TEST(HeapArrays, RefuseCountsWhoseBytesOverflow) {
    EXPECT_THROW(makeArray<double>(kMost), std::bad_alloc);
    EXPECT_THROW(makeArray<double>(kMost / 8 + 1), std::bad_alloc);
    EXPECT_THROW(makeArray<float>((std::int64_t{1} << 62) + 1), std::bad_alloc);
    EXPECT_EQ(arrayBytes<double>(kMost / 8), static_cast<std::size_t>(kMost / 8 * 8));
}

TEST(HeapArrays, ACopyOfNothingIsNothing) {
    EXPECT_EQ(tryCopyArray<float>(nullptr, 5), nullptr);
    const float value = 1;
    EXPECT_EQ(tryCopyArray(&value, -1), nullptr);
    EXPECT_EQ(tryCopyArray(&value, 1)[0], 1);
}

TEST(HeapArrays, ABorrowedArrayIsFreedOnceByItsOwner) {
    HeapArray<float> borrowed;
    {
        const HeapArray<float> owner = makeFilledArray(4, 2.0F);
        borrowed = borrowArray(owner);
        EXPECT_EQ(borrowed.get(), owner.get());
    }
    borrowed.reset();
}

TEST(HeapArrays, AFormerArrayIsUsedAgainWhereItHasTheRoom) {
    HeapArray<float> former = makeFilledArray(100, 3.0F);
    const float* block = former.get();
    HeapArray<float> again = makeZeroedArrayFrom(std::move(former), 100);
    EXPECT_EQ(again.get(), block);
    EXPECT_EQ(again[0], 0);
    EXPECT_EQ(again[99], 0);
    again = shrinkArray(std::move(again), 50);
    again[49] = 7;
    const HeapArray<float> larger = makeZeroedArrayFrom(std::move(again), 51);
    EXPECT_EQ(larger[49], 0);
    EXPECT_EQ(larger[50], 0);
}

TEST(HeapArrays, AnAbsentOrABorrowedArrayIsNotUsedAgain) {
    EXPECT_EQ(makeZeroedArrayFrom<float>(nullptr, 5)[4], 0);
    const HeapArray<float> owner = makeFilledArray(100, 3.0F);
    const HeapArray<float> other = makeZeroedArrayFrom(borrowArray(owner), 100);
    EXPECT_NE(other.get(), owner.get());
    EXPECT_EQ(owner[99], 3);
    HeapArray<float> former = makeArray<float>(100);
    former.reset();
    EXPECT_NE(makeZeroedArrayFrom(std::move(former), 100), nullptr);
}

TEST(BlockLists, GiveTheirValuesInOrder) {
    for (const std::int64_t count : {0, 1, 511, 512, 513, 1535, 1536, 1537, 200000}) {
        BlockList<std::int32_t> list;
        for (std::int64_t i = 0; i < count; ++i) {
            list.append(static_cast<std::int32_t>(i * 3));
        }
        ASSERT_EQ(list.count(), count);
        const HeapArray<std::int32_t> array = list.takeArray();
        for (std::int64_t i = 0; i < count; ++i) {
            ASSERT_EQ(array[static_cast<std::size_t>(i)], i * 3);
        }
        EXPECT_EQ(list.count(), 0);
    }
}

TEST(BlockLists, FillALargerArrayWithZeros) {
    BlockList<float> list;
    list.append(1);
    list.append(2);
    const HeapArray<float> array = list.takeArray(4);
    EXPECT_EQ(array[0], 1);
    EXPECT_EQ(array[1], 2);
    EXPECT_EQ(array[2], 0);
    EXPECT_EQ(array[3], 0);
}

TEST(BlockLists, CutAtTheEndOfASmallerArray) {
    BlockList<float> list;
    for (int i = 0; i < 2000; ++i) {
        list.append(static_cast<float>(i));
    }
    const HeapArray<float> array = list.takeArray(600);
    EXPECT_EQ(array[599], 599);
    EXPECT_EQ(list.count(), 0);
}

TEST(BlockLists, GiveTheirValuesInOrderWhateverWasExpected) {
    for (const std::int64_t expected : {-1, 0, 1, 1000, 5000, 100000}) {
        for (const std::int64_t count : {0, 1, 999, 1000, 1001, 5000, 80000}) {
            BlockList<std::int32_t> list;
            list.expect(expected);
            for (std::int64_t i = 0; i < count; ++i) {
                list.append(static_cast<std::int32_t>(i * 3));
            }
            const HeapArray<std::int32_t> array = list.takeArray();
            ASSERT_NE(array, nullptr);
            for (std::int64_t i = 0; i < count; ++i) {
                ASSERT_EQ(array[static_cast<std::size_t>(i)], i * 3) << expected << " " << count;
            }
            EXPECT_EQ(list.count(), 0);
        }
    }
}

TEST(BlockLists, GrowAsUsualWhereMoreIsExpectedThanThereIsMemory) {
    BlockList<double> list;
    list.expect(kMost);
    for (int i = 0; i < 3000; ++i) {
        list.append(i);
    }
    EXPECT_EQ(list.takeArray()[2999], 2999);
}

TEST(BlockLists, FillALargerArrayWithZerosWhateverWasExpected) {
    BlockList<std::int32_t> list;
    list.expect(2000);
    for (int i = 1; i <= 1500; ++i) {
        list.append(i);
    }
    const HeapArray<std::int32_t> array = list.takeArray(1900);
    EXPECT_EQ(array[1499], 1500);
    EXPECT_EQ(array[1500], 0);
    EXPECT_EQ(array[1899], 0);
    list.append(7);
    EXPECT_EQ(list.takeArray()[0], 7);
}

TEST(BlockLists, CanBeUsedAgain) {
    BlockList<std::int32_t> list;
    list.append(1);
    list.takeArray();
    list.append(2);
    list.append(3);
    EXPECT_EQ(list.count(), 2);
    EXPECT_EQ(list.takeArray()[1], 3);
}

TEST(BlockLists, KeepTheirValuesWhenTheArrayCannotBeMade) {
    BlockList<double> list;
    list.append(1.5);
    EXPECT_THROW(list.takeArray(kMost), std::bad_alloc);
    EXPECT_EQ(list.count(), 1);
    EXPECT_EQ(list.takeArray()[0], 1.5);
}

TEST(BlockLists, RefuseMoreRecordsThanAMeshCanCount) {
    BlockList<char> list;
    list.room(1);
    // Says so without writing them.
    list.advance(std::size_t{1} << 33);
    EXPECT_THROW(list.recordCount(3), std::bad_alloc);
    EXPECT_EQ(list.recordCount(1 << 10), 1 << 23);
}

}  // namespace
}  // namespace talvek::test
