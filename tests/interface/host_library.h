// The shared library as a host sees it: loaded at run time, called through its 35 exported names.
#pragma once

#include <string>

#include "support/test_files.h"
#include "talvek.h"

namespace talvek::test {

/// Loads the library once per process; ends the process when that fails.
void* symbolAddress(const char* name);

/// One function of the interface: call(&talvekInit) stands for the exported function of that name.
#define TALVEK_CALL(function) (reinterpret_cast<decltype(&::function)>(::talvek::test::symbolAddress(#function)))

/// A second library with a session of its own, in the state after loading.
class LibraryCopy {
  public:
    LibraryCopy();
    LibraryCopy(const LibraryCopy&) = delete;
    LibraryCopy& operator=(const LibraryCopy&) = delete;
    ~LibraryCopy();

    void* address(const char* name) const;

  private:
    TempFolder folder_;
    void* library_ = nullptr;
};

#define TALVEK_COPY_CALL(library, function) (reinterpret_cast<decltype(&::function)>((library).address(#function)))

/// Puts the session into a state near the one after loading: no stores, one epoch of a day, mode 0, model 0, no
/// results flag. (The status cannot be reset.)
void resetSession();

}  // namespace talvek::test
