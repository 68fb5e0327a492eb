#include "interface/host_library.h"

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include <cstdio>
#include <cstdlib>

namespace talvek::test {

namespace {

#ifdef _WIN32
void* loadLibrary() {
    return reinterpret_cast<void*>(::LoadLibraryA(TALVEK_LIBRARY));
}
void* findSymbol(void* library, const char* name) {
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(library), name));
}
#else
void* loadLibrary() {
    return ::dlopen(TALVEK_LIBRARY, RTLD_NOW | RTLD_LOCAL);
}
void* findSymbol(void* library, const char* name) {
    return ::dlsym(library, name);
}
#endif

}  // namespace

void* symbolAddress(const char* name) {
    static void* const library = loadLibrary();
    void* address = library != nullptr ? findSymbol(library, name) : nullptr;
    if (address == nullptr) {
        std::fprintf(stderr, "cannot find %s in %s\n", name, TALVEK_LIBRARY);
        std::exit(EXIT_FAILURE);
    }
    return address;
}

void resetSession() {
    TALVEK_CALL(talvekFree)();
    TALVEK_CALL(talvekSetTimeSpan)(1, 1);
    TALVEK_CALL(talvekSetMode)(0);
    TALVEK_CALL(talvekSetModel)(0);
    TALVEK_CALL(talvekSetResults)(0);
    TALVEK_CALL(talvekSetFileName)("");
}

}  // namespace talvek::test
