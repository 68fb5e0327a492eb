// Whatever floating-point environment a host has set: the library calculates in the default one, and gives the host its
// own back. Other rounding modes used to change frames, and exceptions that a host had enabled ended it.
#include <gtest/gtest.h>

#include <array>
#include <cfenv>
#include <string>
#include <utility>

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

#include "interface/host_session.h"
#include "support/bitmaps.h"
#include "support/meshes.h"

namespace talvek::test {
namespace {

/// All that a session's functions give a host that calculates.
struct Results {
    std::string frame;
    std::string firstSurface;
    std::string log;
    std::string parameters;
    Floats material;
    Floats epoch;
    Floats vertices = {};
    Floats normals = {};
    bool operator==(const Results&) const = default;
};

class FloatEnvironment : public HostSession {
  protected:
    void SetUp() override {
        HostSession::SetUp();
        const auto sphere = makeSphere(10, 2);
        layTexture(*sphere, 1 / 40.0F, 1 / 40.0F);
        // A face without an area and a vertex that is no number, so that there are exceptions to be raised.
        text_ = objText(*sphere) + "v 1e-41 2e-42 3e-43\nv nan 0 0\nf 1 1 2\nf 1 163 164\n";
        writeFile(folder_.file("stone.bmp"), bitmapBytes(plainBitmap(40, 40, kWhite)));
    }

    Results run(std::int32_t mode, std::int32_t model) {
        resetSession();
        nameMesh(text_);
        setUp(mode, model, 2);
        Floats material(TALVEK_MATERIAL_PARAMS, 0.1F);
        material[1] = 1e-40F;
        EXPECT_EQ(TALVEK_CALL(talvekSetMaterialParams)(material.data()), TALVEK_OK);
        EXPECT_EQ(start(), TALVEK_OK);
        EXPECT_EQ(captured(TALVEK_CALL(talvekSaveParams)), TALVEK_OK);
        EXPECT_EQ(captured(TALVEK_CALL(talvekReadParams)), TALVEK_OK);
        Results results{.frame = text("stone.obj.obj_w_2.obj"),
                        .firstSurface = text("stone.obj.obj_i.obj"),
                        .log = text("stone.inf"),
                        .parameters = text("stone.cfg"),
                        .material = this->material(),
                        .epoch = epoch(2)};
        const std::int32_t triangles = TALVEK_CALL(talvekGetFrameNumTriangles)(2);
        results.vertices.resize(9 * static_cast<std::size_t>(triangles));
        results.normals.resize(results.vertices.size());
        EXPECT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(2, results.vertices.data(), results.normals.data()), TALVEK_OK);
        // Not-a-numbers differ from themselves.
        for (float& value : results.vertices) {
            value = value == value ? value : 0;
        }
        for (float& value : results.normals) {
            value = value == value ? value : 0;
        }
        return results;
    }

    /// Compares what every pair of mode and model gives while `change` is in force with what it gives otherwise.
    template <typename Change, typename Undo>
    void expectNoEffect(Change change, Undo undo) {
        constexpr std::pair<std::int32_t, std::int32_t> kPairs[] = {{0, 0}, {0, 1}, {0, 2}, {1, 1},
                                                                    {1, 2}, {1, 3}, {2, 3}, {3, 3}};
        for (const auto& [mode, model] : kPairs) {
            // The random offsets of two runs differ.
            const bool isRandom = mode == TALVEK_MODE_OFFSETTING && model == TALVEK_MODEL_RANDOM_OFFSET;
            const Results expected = run(mode, model);
            change();
            const Results results = run(mode, model);
            undo();
            EXPECT_TRUE(isRandom || results == expected) << "mode " << mode << ", model " << model;
        }
    }

    std::string text_;
};

TEST_F(FloatEnvironment, NoRoundingModeChangesAnything) {
    for (const int rounding : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        SCOPED_TRACE(rounding);
        expectNoEffect([rounding] { std::fesetround(rounding); },
                       [rounding] {
                           EXPECT_EQ(std::fegetround(), rounding);
                           std::fesetround(FE_TONEAREST);
                       });
    }
}

TEST_F(FloatEnvironment, TheHostsFlagsStayAsTheyAre) {
    nameMesh(text_);
    setUp(TALVEK_MODE_OFFSETTING, TALVEK_MODEL_SMOOTHING);
    std::feclearexcept(FE_ALL_EXCEPT);
    const std::int32_t result = TALVEK_CALL(talvekStart)();
    EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), 0);
    EXPECT_EQ(result, TALVEK_OK);
    std::feraiseexcept(FE_OVERFLOW);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(1), 322);
    EXPECT_NE(std::fetestexcept(FE_OVERFLOW), 0);
    std::feclearexcept(FE_ALL_EXCEPT);
}

#if defined(__SSE2__)

constexpr unsigned kFlushToZero = 0x8000;
constexpr unsigned kDenormalsAreZero = 0x0040;
constexpr unsigned kAllMasks = 0x1F80;

TEST_F(FloatEnvironment, FlushingToZeroChangesNothing) {
    const unsigned before = _mm_getcsr();
    for (const unsigned flush : {kFlushToZero, kDenormalsAreZero, kFlushToZero | kDenormalsAreZero}) {
        SCOPED_TRACE(flush);
        expectNoEffect([=] { _mm_setcsr(before | flush); },
                       [=] {
                           EXPECT_EQ(_mm_getcsr() & (kFlushToZero | kDenormalsAreZero), flush);
                           _mm_setcsr(before);
                       });
    }
}

// The example stone alone used to end such a host.
TEST_F(FloatEnvironment, EnabledExceptionsEndNothing) {
    nameMesh(text_);
    const unsigned before = _mm_getcsr();
    for (std::int32_t mode = 0; mode <= TALVEK_MODE_GRAIN_WEAVER; ++mode) {
        const std::int32_t model =
            mode == 0 ? std::int32_t{TALVEK_MODEL_SMOOTHING} : std::int32_t{TALVEK_MODEL_ACID_RAIN};
        std::array<std::int32_t, 4> results{};
        std::array<float, TALVEK_EPOCH_PARAMS> environment = {1e-40F, 0.1F, 0.2F, 0.3F};
        ASSERT_EQ(TALVEK_CALL(talvekSetMode)(mode), TALVEK_OK);
        ASSERT_EQ(TALVEK_CALL(talvekSetModel)(model), TALVEK_OK);
        ASSERT_EQ(TALVEK_CALL(talvekInit)(), TALVEK_OK);
        ::testing::internal::CaptureStdout();
        _mm_setcsr(before & ~kAllMasks & ~0x3FU);
        results[0] = TALVEK_CALL(talvekSetEpochParams)(1, environment.data());
        results[1] = TALVEK_CALL(talvekStart)();
        results[2] = TALVEK_CALL(talvekSaveParams)();
        results[3] = TALVEK_CALL(talvekReadParams)();
        const unsigned after = _mm_getcsr();
        _mm_setcsr(before);
        ::testing::internal::GetCapturedStdout();
        EXPECT_EQ(results, (std::array<std::int32_t, 4>{}));
        EXPECT_EQ(after & kAllMasks, 0U);
    }
}

#endif

}  // namespace
}  // namespace talvek::test
