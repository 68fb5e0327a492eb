// A session for one test: a folder of its own, a small stone in it, and the calls that most tests begin with.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "interface/host_library.h"
#include "support/test_files.h"

namespace talvek::test {

using Floats = std::vector<float>;

class HostSession : public ::testing::Test {
  protected:
    void SetUp() override { resetSession(); }
    void TearDown() override { resetSession(); }

    /// Writes a mesh into the folder and names it to the library.
    void nameMesh(std::string_view text, std::string_view name = "stone.obj") {
        mesh_ = folder_.file(name);
        writeFile(mesh_, text);
        ASSERT_EQ(TALVEK_CALL(talvekSetFileName)(mesh_.c_str()), TALVEK_OK);
    }

    /// Everything that a run needs but the mesh.
    void setUp(std::int32_t mode, std::int32_t model, std::int32_t numEpochs = 1, std::int32_t days = 365) {
        ASSERT_EQ(TALVEK_CALL(talvekSetTimeSpan)(numEpochs, days), TALVEK_OK);
        ASSERT_EQ(TALVEK_CALL(talvekSetMode)(mode), TALVEK_OK);
        ASSERT_EQ(TALVEK_CALL(talvekSetModel)(model), TALVEK_OK);
        ASSERT_EQ(TALVEK_CALL(talvekInit)(), TALVEK_OK);
    }

    /// Makes a call with standard output kept in output().
    template <typename Call>
    auto captured(Call call) {
        ::testing::internal::CaptureStdout();
        const auto result = call();
        output_ = withoutCarriageReturns(::testing::internal::GetCapturedStdout());
        return result;
    }
    std::int32_t start() { return captured(TALVEK_CALL(talvekStart)); }
    const std::string& output() const { return output_; }

    /// A text file of the folder, with '\n' line ends.
    std::string text(std::string_view name) const { return readText(folder_.file(name)); }

    Floats material() {
        Floats values(TALVEK_MATERIAL_PARAMS, -77);
        EXPECT_EQ(TALVEK_CALL(talvekGetMaterialParams)(values.data()), TALVEK_OK);
        return values;
    }
    /// The days of an epoch and its environment.
    Floats epoch(std::uint32_t n) {
        Floats values(TALVEK_EPOCH_PARAMS, -77);
        EXPECT_EQ(TALVEK_CALL(talvekGetEpochParams)(n, values.data()), TALVEK_OK);
        values.insert(values.begin(), static_cast<float>(TALVEK_CALL(talvekGetEpochTimeSpan)(n)));
        return values;
    }

    TempFolder folder_;
    std::string mesh_;

  private:
    std::string output_;
};

inline constexpr std::string_view kTriangleText = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

}  // namespace talvek::test
