#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

// The library keeps nothing per thread, so it need not hear of threads that come and go.
extern "C" BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        ::DisableThreadLibraryCalls(library);
    }
    return TRUE;
}
#endif
