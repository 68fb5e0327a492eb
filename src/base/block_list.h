// A sequence that grows without moving what it holds, for readers that learn the number of values only at the end of
// the file: a singly linked list of blocks, turned into one array of the exact size.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
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
        return last_->values() + last_->used;
    }
    void advance(std::size_t size) {
        last_->used += size;
        count_ += static_cast<std::int64_t>(size);
    }

    /// Moves the values into an array of `size` elements: the first `size` of them, or all with zeros behind. Every
    /// block is freed as soon as it is copied. Throws std::bad_alloc.
    HeapArray<T> takeArray(std::int64_t size) {
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
            std::memcpy(to + filled, first_->values(), static_cast<std::size_t>(taken) * sizeof(T));
            filled += taken;
            releaseFirst();
        }
        std::memset(to + filled, 0, static_cast<std::size_t>(size - filled) * sizeof(T));
        count_ = 0;
    }

  private:
    struct Block {
        Block* next;
        std::size_t capacity;
        std::size_t used;
        T* values() { return reinterpret_cast<T*>(this + 1); }
    };
    static_assert(alignof(T) <= alignof(Block));

    static constexpr std::size_t kSmallestBlock = 512;
    static constexpr std::size_t kLargestBlock = 65536;

    void addBlock() {
        const std::size_t capacity = last_ == nullptr ? kSmallestBlock : std::min(last_->capacity * 2, kLargestBlock);
        void* memory = system::allocate(sizeof(Block) + capacity * sizeof(T));
        if (memory == nullptr) {
            throw std::bad_alloc();
        }
        Block* block = new (memory) Block{.next = nullptr, .capacity = capacity, .used = 0};
        (last_ == nullptr ? first_ : last_->next) = block;
        last_ = block;
    }

    void releaseFirst() {
        Block* next = first_->next;
        system::release(first_);
        first_ = next;
        if (first_ == nullptr) {
            last_ = nullptr;
        }
    }

    Block* first_ = nullptr;
    Block* last_ = nullptr;
    std::int64_t count_ = 0;
};

}  // namespace talvek
