// The Windows interface, for the Windows parts of the tests: without what they do not use and without its macros `min`
// and `max`.
#pragma once

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
