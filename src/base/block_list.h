// A sequence that grows without moving what it holds, for readers that learn the number of values only at the end of
// the file: a singly linked list of blocks, turned into one array of the exact size. A list whose first block is large
// enough becomes the array without being copied.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

#include "base/heap_array.h"

namespace talvek {

template <typename T>
class BlockList {
  public:
    BlockList() = default;
    BlockList(BlockList&&) = delete;
    ~BlockList() {
        while (first_ != nullptr) {
            releaseFirst();
        }
    }

    std::int64_t count() const { return count_; }

    /// Makes the first block as large as this, if there is memory for it. What is not filled of it costs next to
    /// nothing where the system provides memory only as it is touched.
    void expect(std::int64_t count) { expected_ = count > 0 ? static_cast<std::size_t>(count) : 0; }

    /// How many whole records of `valuesPerRecord` values the list holds. Throws std::bad_alloc for more than a mesh
    /// can count.
    std::int32_t recordCount(std::int64_t valuesPerRecord) const {
        const std::int64_t records = count_ / valuesPerRecord;
        if (records > std::numeric_limits<std::int32_t>::max()) {
            throw std::bad_alloc();
        }
        return static_cast<std::int32_t>(records);
    }

    /// Throws std::bad_alloc; the list then holds what it held.
    void append(T value) {
        *room(1) = value;
        advance(1);
    }

    /// Room for `size` values that belong together, which advance then adds. Throws std::bad_alloc.
    T* room(std::size_t size) {
        if (last_ == nullptr || last_->capacity - last_->used < size) {
            addBlock();
        }
        return last_->values.get() + last_->used;
    }
    void advance(std::size_t size) {
        last_->used += size;
        count_ += static_cast<std::int64_t>(size);
    }

    /// Moves the values into an array of `size` elements: the first `size` of them, or all with zeros behind. Every
    /// block is freed as soon as it is copied. Throws std::bad_alloc.
    HeapArray<T> takeArray(std::int64_t size) {
        if (first_ != nullptr && first_.get() == last_ && size == count_) {
            HeapArray<T> whole = shrinkArray(std::move(first_->values), size);
            releaseFirst();
            count_ = 0;
            return whole;
        }
        HeapArray<T> array = makeArray<T>(size);
        moveTo(array.get(), size);
        return array;
    }

    HeapArray<T> takeArray() { return takeArray(count_); }

    /// The same into `size` elements that are there already.
    void moveTo(T* to, std::int64_t size) {
        std::int64_t filled = 0;
        while (first_ != nullptr) {
            const std::int64_t taken = std::min(static_cast<std::int64_t>(first_->used), size - filled);
            std::memcpy(to + filled, first_->values.get(), static_cast<std::size_t>(taken) * sizeof(T));
            filled += taken;
            releaseFirst();
        }
        std::memset(to + filled, 0, static_cast<std::size_t>(size - filled) * sizeof(T));
        count_ = 0;
    }

  private:
    struct Block {
        HeapArray<T> values;
        std::size_t capacity;
        std::size_t used = 0;
        std::unique_ptr<Block> next;
    };

    static constexpr std::size_t kSmallestBlock = 512;
    static constexpr std::size_t kLargestBlock = 65536;

    // Seldom called: out of line, so that `room` is a comparison where it is used.
    [[gnu::noinline]] void addBlock() {
        std::unique_ptr<Block> block = makeNextBlock();
        Block* added = block.get();
        (last_ == nullptr ? first_ : last_->next) = std::move(block);
        last_ = added;
    }

    static std::unique_ptr<Block> makeBlock(std::size_t capacity) {
        HeapArray<T> values = makeArray<T>(static_cast<std::int64_t>(capacity));
        return std::unique_ptr<Block>(new Block{.values = std::move(values), .capacity = capacity, .next = nullptr});
    }

    std::unique_ptr<Block> makeNextBlock() {
        if (last_ != nullptr) {
            return makeBlock(std::clamp(last_->capacity * 2, kSmallestBlock, kLargestBlock));
        }
        try {
            return makeBlock(std::max(expected_, kSmallestBlock));
        } catch (const std::bad_alloc&) {
            // What is expected may be too much to ask for.
            return makeBlock(kSmallestBlock);
        }
    }

    void releaseFirst() {
        first_ = std::move(first_->next);
        if (first_ == nullptr) {
            last_ = nullptr;
        }
    }

    std::unique_ptr<Block> first_;
    Block* last_ = nullptr;
    std::int64_t count_ = 0;
    std::size_t expected_ = 0;
};

}  // namespace talvek
