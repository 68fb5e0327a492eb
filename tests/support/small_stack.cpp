#include "support/small_stack.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#include "support/windows_api.h"
#else
#include <pthread.h>
#endif

namespace talvek::test {

namespace {

constexpr std::size_t kStackSize = 128 * 1024;

}  // namespace

#ifdef _WIN32

namespace {

DWORD WINAPI callWork(LPVOID work) {
    (*static_cast<std::function<void()>*>(work))();
    return 0;
}

}  // namespace

void runOnSmallStack(std::function<void()> work) {
    const HANDLE thread =
        ::CreateThread(nullptr, kStackSize, callWork, &work, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    ASSERT_NE(thread, nullptr);
    ::WaitForSingleObject(thread, INFINITE);
    ::CloseHandle(thread);
}

#else

namespace {

void* callWork(void* work) {
    (*static_cast<std::function<void()>*>(work))();
    return nullptr;
}

}  // namespace

void runOnSmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    ASSERT_EQ(::pthread_attr_init(&attributes), 0);
    ASSERT_EQ(::pthread_attr_setstacksize(&attributes, kStackSize), 0);
    pthread_t thread{};
    ASSERT_EQ(::pthread_create(&thread, &attributes, callWork, &work), 0);
    ::pthread_join(thread, nullptr);
    ::pthread_attr_destroy(&attributes);
}

#endif

}  // namespace talvek::test
