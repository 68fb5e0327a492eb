// Arrays on the C heap that free themselves. Their length is not stored: it follows from the counts of the record that
// holds them. An absent array is a null pointer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>

#include "base/system.h"

namespace talvek {

struct HeapDeleter {
    /// False for an array that is some other array's block.
    bool owns = true;
    /// The size of the block in bytes, which may be larger than what the array uses of it; 0 where nobody knows.
    std::size_t room = 0;
    void operator()(void* block) const noexcept {
        if (owns) {
            system::release(block);
        }
    }
};

template <typename T>
using HeapArray = std::unique_ptr<T[], HeapDeleter>;

/// The bytes of `count` elements. Throws std::bad_alloc for a negative count and for a size no memory can have.
template <typename T>
std::size_t arrayBytes(std::int64_t count) {
    static_assert(std::is_trivially_copyable_v<T>);
    constexpr std::int64_t kMostBytes = std::numeric_limits<std::ptrdiff_t>::max();
    if (count < 0 || count > kMostBytes / static_cast<std::int64_t>(sizeof(T))) {
        throw std::bad_alloc();
    }
    return static_cast<std::size_t>(count) * sizeof(T);
}

template <typename T>
HeapArray<T> adoptBlock(void* block, std::size_t bytes) {
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return HeapArray<T>(static_cast<T*>(block), HeapDeleter{.owns = true, .room = bytes});
}

/// An array of `count` elements without defined values; never null. Throws std::bad_alloc.
template <typename T>
HeapArray<T> makeArray(std::int64_t count) {
    const std::size_t bytes = arrayBytes<T>(count);
    return adoptBlock<T>(system::allocate(bytes), bytes);
}

template <typename T>
HeapArray<T> makeZeroedArray(std::int64_t count) {
    const std::size_t bytes = arrayBytes<T>(count);
    return adoptBlock<T>(system::allocateZeroed(bytes), bytes);
}

/// `count` zeros in the block of an array that is no longer needed, if that is large enough. Throws std::bad_alloc.
template <typename T>
HeapArray<T> makeZeroedArrayFrom(HeapArray<T> former, std::int64_t count) {
    const std::size_t bytes = arrayBytes<T>(count);
    if (former == nullptr || !former.get_deleter().owns || former.get_deleter().room < bytes) {
        former.reset();
        return makeZeroedArray<T>(count);
    }
    std::memset(former.get(), 0, bytes);
    return former;
}

template <typename T>
HeapArray<T> makeFilledArray(std::int64_t count, T value) {
    HeapArray<T> array = makeArray<T>(count);
    for (std::int64_t i = 0; i < count; ++i) {
        array[static_cast<std::size_t>(i)] = value;
    }
    return array;
}

/// `from` may be null when there is nothing to copy.
template <typename T>
HeapArray<T> copyArray(const T* from, std::int64_t count) {
    HeapArray<T> array = makeArray<T>(count);
    if (count > 0) {
        std::memcpy(array.get(), from, arrayBytes<T>(count));
    }
    return array;
}

/// Gives back the memory behind the first `count` elements.
template <typename T>
HeapArray<T> shrinkArray(HeapArray<T> array, std::int64_t count) noexcept {
    const std::size_t bytes = static_cast<std::size_t>(count) * sizeof(T);
    return HeapArray<T>(static_cast<T*>(system::shrink(array.release(), bytes)),
                        HeapDeleter{.owns = true, .room = bytes});
}

/// A copy of an array; null where the source is null or there is no memory.
template <typename T>
HeapArray<T> tryCopyArray(const T* from, std::int64_t count) noexcept {
    if (from == nullptr) {
        return nullptr;
    }
    try {
        return copyArray(from, count);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// A record of its own on the C heap.
template <typename T>
using HeapRecord = std::unique_ptr<T, HeapDeleter>;

/// Throws std::bad_alloc.
template <typename T>
HeapRecord<T> makeRecord(const T& value) {
    return HeapRecord<T>(copyArray(&value, 1).release());
}

/// A second name for an array that stays its owner's.
template <typename T>
HeapArray<T> borrowArray(const HeapArray<T>& owner) {
    return HeapArray<T>(owner.get(), HeapDeleter{.owns = false, .room = 0});
}

}  // namespace talvek
