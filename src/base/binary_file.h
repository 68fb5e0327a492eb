// Reads binary files whose counts come from the file itself and are therefore not believed.
#pragma once

#include <cstdint>
#include <optional>

#include "base/heap_array.h"
#include "base/input_file.h"
#include "base/little_endian.h"

namespace talvek {

/// A file of little-endian values of 32 bits, read from front to back. What the file does not hold reads as 0. Where
/// the file holds more and a read fails all the same, every function throws std::bad_alloc.
class BinaryFile {
  public:
    explicit BinaryFile(const char* path) : file_(path) {}

    bool isOpen() const { return file_.isOpen(); }

    /// Whether it is a regular file, and what has been asked for is what it holds, no more and no less.
    bool isExactlyRead() const { return missing_ == 0 && file_.remaining() == 0; }

    /// Which file this is, and its state.
    std::optional<system::FileStamp> stamp() const { return file_.stamp(); }

    void readBytes(char* to, std::size_t size) {
        std::memset(to, 0, size);
        fill(to, size);
    }

    std::int32_t readInt() {
        char bytes[sizeof(std::int32_t)];
        readBytes(bytes, sizeof bytes);
        return fromLittleEndian<std::int32_t>(bytes);
    }

    /// Says that `count` values of four bytes are going to be read. Throws std::bad_alloc for a negative count, one
    /// that no memory can hold, and one that makes the file promise far more than it has: beyond its end four times its
    /// size and 1 MiB, so that what a file costs stays in proportion to it.
    void expect(std::int64_t count) const {
        const auto size = static_cast<std::int64_t>(arrayBytes<std::int32_t>(count));
        const std::int64_t remaining = file_.remaining();
        const std::int64_t beyond = remaining >= 0 && size > remaining ? size - remaining : 0;
        if (beyond > 4 * file_.size() + kSmallPromise - missing_) {
            throw std::bad_alloc();
        }
    }

    /// An array of `count` values, with room for `spare` more. Throws std::bad_alloc as expect does.
    template <typename T>
    HeapArray<T> readArray(std::int64_t count, std::int64_t spare = 0) {
        expect(count);
        // Pages of zeros that nothing is read into cost no memory.
        HeapArray<T> array = makeZeroedArray<T>(count + spare);
        const std::size_t got = fill(array.get(), arrayBytes<T>(count));
        // The length of a pipe shows only now.
        expect(0);
        fromLittleEndianInPlace(array.get(), (got + sizeof(T) - 1) / sizeof(T));
        return array;
    }

    /// The same where the file may do without the array: null when it holds less than the whole of it, or when there is
    /// nothing to hold. Throws std::bad_alloc.
    template <typename T>
    HeapArray<T> readWholeArray(std::int64_t count) {
        const std::size_t size = arrayBytes<T>(count);
        const std::int64_t remaining = file_.remaining();
        if (size == 0 || (remaining >= 0 && remaining < static_cast<std::int64_t>(size))) {
            return nullptr;
        }
        HeapArray<T> array = makeZeroedArray<T>(count);
        if (read(array.get(), size) < size) {
            return nullptr;
        }
        fromLittleEndianInPlace(array.get(), static_cast<std::size_t>(count));
        return array;
    }

  private:
    static constexpr std::int64_t kSmallPromise = std::int64_t{1} << 20;

    std::size_t read(void* to, std::size_t size) {
        const std::size_t got = file_.read(to, size);
        if (file_.hasFailed()) {
            throw std::bad_alloc();
        }
        return got;
    }

    std::size_t fill(void* to, std::size_t size) {
        const std::size_t got = read(to, size);
        missing_ += static_cast<std::int64_t>(size - got);
        return got;
    }

    InputFile file_;
    std::int64_t missing_ = 0;
};

}  // namespace talvek
