// Makes the N-th allocation, read or file operation of the code under test fail. The linker redirects what the library
// calls to the versions in fault_injection.cpp; without an armed fault they only pass on.
#pragma once

#include <cstdint>
#include <string>

namespace talvek::test {

enum class Fault : std::uint8_t {
    kNone,
    /// malloc, calloc, realloc, operator new.
    kAllocation,
    /// From the n-th on no allocation succeeds any more.
    kMemory,
    /// A read that fails.
    kRead,
    /// A read that delivers half of what was asked for; the rest comes with the next one.
    kShortRead,
    /// An open, read or write that a signal interrupts; the next attempt succeeds.
    kInterruption,
    /// open.
    kOpen,
    /// A write that fails without writing anything, as on a full disk.
    kWrite,
    /// A write of half the bytes, after which the disk is full.
    kShortWrite,
    kClose,
    kFlush,
    kRename,
};

std::string faultName(Fault fault);

/// From now on the `n`-th operation of this kind fails, counted from 1. Only files below `folder` are concerned.
void armFault(Fault fault, std::int64_t n, const std::string& folder);

/// Ends the injection. Returns whether the fault happened.
bool disarmFault();

/// The number of blocks of the library that are allocated and not released.
std::int64_t liveBlocks();

}  // namespace talvek::test
