// What the processor is known to have when the code is compiled.
#pragma once

#if defined(__SSE2__) || defined(_M_X64)
#define TALVEK_HAS_SSE2
#include <emmintrin.h>
#endif
