// A file of a few bytes may promise up to 256 MiB, which are then worked on. Such files are slow, not interesting:
// under the fuzzer there is no memory for them. The linker redirects the library's allocations to here. What readers
// make of promises are zeroed arrays; other blocks are buffers, or copies of what has been read.
#include <cstddef>
#include <cstdlib>

namespace {

constexpr std::size_t kLargestBlock = std::size_t{1} << 20;
constexpr std::size_t kLargestZeroedBlock = std::size_t{1} << 12;

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the names that the linker asks for.
extern "C" void* __real_malloc(std::size_t size);
extern "C" void* __real_calloc(std::size_t count, std::size_t size);

extern "C" void* __wrap_malloc(std::size_t size) {
    return size <= kLargestBlock ? __real_malloc(size) : nullptr;
}

extern "C" void* __wrap_calloc(std::size_t count, std::size_t size) {
    const bool isSmall =
        count <= kLargestZeroedBlock && size <= kLargestZeroedBlock && count * size <= kLargestZeroedBlock;
    return isSmall ? __real_calloc(count, size) : nullptr;
}
// NOLINTEND(bugprone-reserved-identifier)
