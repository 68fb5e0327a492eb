// The floating-point environment that every result depends on: rounding to nearest, denormal numbers kept, exceptions
// that stop nothing.
#pragma once

#include <cfenv>

#include "base/processor.h"

#if defined(__FAST_MATH__) || (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__) ||             \
    defined(__ASSOCIATIVE_MATH__) || defined(__RECIPROCAL_MATH__) || defined(__NO_SIGNED_ZEROS__) || \
    defined(_M_FP_FAST)
#error "Results are promised to the last bit: this code must not be compiled with -ffast-math or any of its parts."
#endif

namespace talvek {

/// As long as one exists the thread calculates in the default environment; then the host has its own again, with the
/// flags that it had raised and no others.
class DefaultFloatEnvironment {
  public:
    DefaultFloatEnvironment() {
#ifdef TALVEK_HAS_SSE2
        hostsControl_ = _mm_getcsr();
#endif
        std::feholdexcept(&hosts_);
        std::fesetenv(FE_DFL_ENV);
#ifdef TALVEK_HAS_SSE2
        // Not every C library's default reaches all of what the processor has.
        _mm_setcsr(kDefaultControl);
#endif
    }
    DefaultFloatEnvironment(const DefaultFloatEnvironment&) = delete;
    DefaultFloatEnvironment& operator=(const DefaultFloatEnvironment&) = delete;
    ~DefaultFloatEnvironment() {
        std::fesetenv(&hosts_);
#ifdef TALVEK_HAS_SSE2
        _mm_setcsr(hostsControl_);
#endif
    }

  private:
    std::fenv_t hosts_{};
#ifdef TALVEK_HAS_SSE2
    /// All exceptions masked, to nearest, nothing flushed to zero.
    static constexpr unsigned kDefaultControl = 0x1F80;
    unsigned hostsControl_ = 0;
#endif
};

}  // namespace talvek
