// What the functions that hosts call have in common. They check arguments and stores, in the order that decides which
// result code a call with several faults gets; the work is done elsewhere.
#pragma once

#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>

#include "api/session/session.h"
#include "math/float_environment.h"

namespace talvek {

/// Runs what calculates and may run out of memory; no exception reaches the host, and the host's floating-point
/// environment does not reach the results.
template <typename Work>
std::int32_t guarded(std::int32_t resultWithoutMemory, Work work) noexcept {
    const DefaultFloatEnvironment pinned;
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return resultWithoutMemory;
    }
}

inline bool isBeyondEpochs(std::uint32_t number) {
    return number > static_cast<std::uint32_t>(session().numEpochs);
}

/// Whether an epoch number names no epoch, or one that the table was created without.
inline bool hasNoRecord(std::uint32_t epoch) {
    return isBeyondEpochs(epoch) || epoch > static_cast<std::uint32_t>(session().epochTable.size);
}

inline void copyText(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    out[text.size()] = '\0';
}

}  // namespace talvek
