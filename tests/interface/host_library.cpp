#include "interface/host_library.h"

#ifdef _WIN32
#include "support/windows_api.h"
#else
#include <dlfcn.h>
#endif

#include <cstdio>
#include <cstdlib>

namespace talvek::test {

namespace {

#ifdef _WIN32
void* loadLibrary(const char* path) {
    return reinterpret_cast<void*>(::LoadLibraryA(path));
}
void unloadLibrary(void* library) {
    ::FreeLibrary(static_cast<HMODULE>(library));
}
void* findSymbol(void* library, const char* name) {
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(library), name));
}
#else
void* loadLibrary(const char* path) {
    return ::dlopen(path, RTLD_NOW | RTLD_LOCAL);
}
void unloadLibrary(void* library) {
    ::dlclose(library);
}
void* findSymbol(void* library, const char* name) {
    return ::dlsym(library, name);
}
#endif

void* symbolIn(void* library, const char* name) {
    void* address = library != nullptr ? findSymbol(library, name) : nullptr;
    if (address == nullptr) {
        std::fprintf(stderr, "cannot find %s in %s\n", name, TALVEK_LIBRARY);
        std::exit(EXIT_FAILURE);
    }
    return address;
}

}  // namespace

void* symbolAddress(const char* name) {
    static void* const library = loadLibrary(TALVEK_LIBRARY);
    return symbolIn(library, name);
}

LibraryCopy::LibraryCopy() {
    const std::filesystem::path original = TALVEK_LIBRARY;
    const std::string copy = folder_.file("Copy" + original.extension().string());
    std::filesystem::copy_file(original, copy);
    library_ = loadLibrary(copy.c_str());
}

LibraryCopy::~LibraryCopy() {
    unloadLibrary(library_);
}

void* LibraryCopy::address(const char* name) const {
    return symbolIn(library_, name);
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
