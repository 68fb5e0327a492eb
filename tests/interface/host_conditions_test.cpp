// Hosts that use the library hard or live in odd surroundings: many runs, other locales and time zones.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

#ifdef _WIN32
#include "support/windows_api.h"
#else
#include <malloc.h>
#endif

#include "interface/host_library.h"
#include "support/comma_locale.h"
#include "support/meshes.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

#ifdef _WIN32

/// What is allocated and not released, in all heaps of the process.
std::size_t allocatedBytes() {
    std::array<HANDLE, 64> heaps{};
    const DWORD count = std::min(::GetProcessHeaps(heaps.size(), heaps.data()), static_cast<DWORD>(heaps.size()));
    std::size_t bytes = 0;
    for (const HANDLE heap : std::span(heaps).first(count)) {
        PROCESS_HEAP_ENTRY entry{};
        while (::HeapWalk(heap, &entry) != 0) {
            bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
        }
    }
    return bytes;
}

void setTimeZone(const char* zone) {
    ::_putenv_s("TZ", zone);
}

#else

/// What is allocated and not released.
std::size_t allocatedBytes() {
    const struct mallinfo2 heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

void setTimeZone(const char* zone) {
    ::setenv("TZ", zone, 1);
    ::tzset();
}

#endif

// Sanitizers and memory checkers hold on to what is freed, so that its later use is seen.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kFreedMemoryStays = true;
#else
constexpr bool kFreedMemoryStays = false;
#endif

/// Sixteen bytes for each of a thousand runs would be more: what grows is the test's own.
constexpr std::size_t kTolerance = 16000;

class HostConditions : public ::testing::Test {
  protected:
    void SetUp() override {
        ::testing::internal::CaptureStdout();
        resetSession();
        writeFile(mesh_, objText(*makeSphere(10, 2)));
    }

    void TearDown() override {
        ::testing::internal::GetCapturedStdout();
        TALVEK_CALL(talvekFree)();
    }

    std::int32_t run(std::int32_t mode, std::int32_t model) const {
        TALVEK_CALL(talvekFree)();
        TALVEK_CALL(talvekSetFileName)(mesh_.c_str());
        TALVEK_CALL(talvekSetTimeSpan)(2, 365);
        TALVEK_CALL(talvekSetMode)(mode);
        TALVEK_CALL(talvekSetModel)(model);
        TALVEK_CALL(talvekInit)();
        return TALVEK_CALL(talvekStart)();
    }

    std::string lastSurface() const { return readText(mesh_ + ".obj_w.obj"); }

    TempFolder folder_;
    std::string mesh_ = folder_.file("stone.obj");
};

TEST_F(HostConditions, AThousandRunsNeedNoMoreMemoryThanTen) {
    for (int i = 0; i < 10; ++i) {
        ASSERT_EQ(run(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN), TALVEK_OK);
    }
    const std::size_t before = allocatedBytes();
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(run(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN), TALVEK_OK);
    }
    if (!kFreedMemoryStays) {
        EXPECT_LT(allocatedBytes(), before + kTolerance);
    }
}

TEST_F(HostConditions, TenThousandFrameReadsNeedNoMoreMemoryThanTen) {
    ASSERT_EQ(run(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN), TALVEK_OK);
    std::vector<float> vertices(9 * static_cast<std::size_t>(TALVEK_CALL(talvekGetFrameNumTriangles)(1)));
    std::vector<float> normals(vertices.size());
    const auto readFrames = [&](int count) {
        for (int i = 0; i < count; ++i) {
            ASSERT_GT(TALVEK_CALL(talvekGetFrameNumTriangles)(1), 0);
            ASSERT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(2, vertices.data(), normals.data()), TALVEK_OK);
        }
    };
    readFrames(10);
    const std::size_t before = allocatedBytes();
    readFrames(5000);
    if (!kFreedMemoryStays) {
        EXPECT_LT(allocatedBytes(), before + kTolerance);
    }
}

TEST_F(HostConditions, RandomOffsetsLeaveTheHostsRandomNumbersAlone) {
    std::srand(7);
    const int first = std::rand();
    const int second = std::rand();
    std::srand(7);
    EXPECT_EQ(std::rand(), first);
    ASSERT_EQ(run(TALVEK_MODE_OFFSETTING, TALVEK_MODEL_RANDOM_OFFSET), TALVEK_OK);
    EXPECT_EQ(std::rand(), second);
}

TEST_F(HostConditions, ACommaLocaleChangesNothing) {
    ASSERT_EQ(run(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekSaveParams)(), TALVEK_OK);
    const std::string surface = lastSurface();
    const std::string log = readText(folder_.file("stone.inf"));
    const std::string parameters = readText(folder_.file("stone.cfg"));
    float material[TALVEK_MATERIAL_PARAMS];
    {
        const CommaLocale locale;
        if (!locale.isSet()) {
            GTEST_SKIP() << "this system has no locale with a decimal comma";
        }
        EXPECT_EQ(run(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN), TALVEK_OK);
        EXPECT_EQ(TALVEK_CALL(talvekSaveParams)(), TALVEK_OK);
        EXPECT_EQ(TALVEK_CALL(talvekReadParams)(), TALVEK_OK);
        EXPECT_EQ(TALVEK_CALL(talvekGetMaterialParams)(material), TALVEK_OK);
    }
    EXPECT_EQ(material[2], 544.3F);
    EXPECT_EQ(lastSurface(), surface);
    EXPECT_EQ(readText(folder_.file("stone.inf")), log);
    EXPECT_EQ(readText(folder_.file("stone.cfg")), parameters);
}

TEST_F(HostConditions, ATimeZoneChangesNothing) {
    ASSERT_EQ(run(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN), TALVEK_OK);
    const std::string surface = lastSurface();
    setTimeZone("XYZ+13:45");
    EXPECT_EQ(run(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN), TALVEK_OK);
    setTimeZone("UTC0");
    EXPECT_EQ(lastSurface(), surface);
}

}  // namespace
}  // namespace talvek::test
