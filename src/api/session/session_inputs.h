// What a session reads, which nothing it writes may replace.
#pragma once

#include <initializer_list>

namespace talvek {

/// Whether a name leads to the same file as one of the others, directly or by links.
bool isSameFileAsAny(const char* path, std::initializer_list<const char*> others);

/// Whether a name leads to the mesh, the mineral map or the parameter file of the session.
bool isSessionInput(const char* path);

}  // namespace talvek
