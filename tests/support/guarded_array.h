// An array whose last element touches a page that may not be used, so that the first step beyond it ends the test:
// in the Windows build too, where no sanitizer runs.
#pragma once

#ifdef _WIN32
#include "support/windows_api.h"
#else
#include <sys/mman.h>
#endif

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

namespace talvek::test {

template <typename T>
class GuardedArray {
  public:
    /// Every byte of the elements, and of what lies before them, is `fill`.
    explicit GuardedArray(std::size_t count, unsigned char fill = 0xA5) : count_(count), fill_(fill) {
        const std::size_t used = (count * sizeof(T) + kPage - 1) / kPage * kPage;
        bytes_ = used + kPage;
#ifdef _WIN32
        block_ = static_cast<unsigned char*>(::VirtualAlloc(nullptr, bytes_, MEM_RESERVE, PAGE_NOACCESS));
        const bool isReady =
            block_ != nullptr && (used == 0 || ::VirtualAlloc(block_, used, MEM_COMMIT, PAGE_READWRITE) != nullptr);
#else
        void* block = ::mmap(nullptr, bytes_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        block_ = static_cast<unsigned char*>(block);
        const bool isReady = block != MAP_FAILED && (used == 0 || ::mprotect(block, used, PROT_READ | PROT_WRITE) == 0);
#endif
        if (!isReady) {
            std::abort();
        }
        std::memset(block_, fill, used);
        values_ = reinterpret_cast<T*>(block_ + used - count * sizeof(T));
    }
    GuardedArray(const GuardedArray&) = delete;
    GuardedArray& operator=(const GuardedArray&) = delete;
    ~GuardedArray() {
#ifdef _WIN32
        ::VirtualFree(block_, 0, MEM_RELEASE);
#else
        ::munmap(block_, bytes_);
#endif
    }

    T* data() {
        return values_;
    }
    T& operator[](std::size_t i) {
        return values_[i];
    }
    std::span<T> span() {
        return {values_, count_};
    }

    /// Whether nothing was written before the first element.
    bool isFrontIntact() const {
        for (const unsigned char* byte = block_; byte < reinterpret_cast<const unsigned char*>(values_); ++byte) {
            if (*byte != fill_) {
                return false;
            }
        }
        return true;
    }

  private:
    static constexpr std::size_t kPage = 65536;

    std::size_t count_;
    unsigned char fill_;
    std::size_t bytes_ = 0;
    unsigned char* block_ = nullptr;
    T* values_ = nullptr;
};

}  // namespace talvek::test
