// Hosts that use the library hard or live in odd surroundings: many runs, other locales and time zones.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#ifdef _WIN32
#include "support/windows_api.h"
// After the header above.
#include <psapi.h>
#else
#include <unistd.h>

#include <fstream>
#endif

#include "interface/host_library.h"
#include "support/comma_locale.h"
#include "support/meshes.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

#ifdef _WIN32

std::size_t residentBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

void setTimeZone(const char* zone) {
    ::_putenv_s("TZ", zone);
}

#else

std::size_t residentBytes() {
    std::ifstream statistics("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    statistics >> total >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
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

constexpr std::size_t kTolerance = 4 * 1024 * 1024;

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
    const std::size_t before = residentBytes();
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(run(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN), TALVEK_OK);
    }
    if (!kFreedMemoryStays) {
        EXPECT_LT(residentBytes(), before + kTolerance);
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
    const std::size_t before = residentBytes();
    readFrames(5000);
    if (!kFreedMemoryStays) {
        EXPECT_LT(residentBytes(), before + kTolerance);
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
