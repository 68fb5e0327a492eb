// Files that are cut, changed or made to hurt: whatever they hold, reading them and working with what was read stays
// inside memory, needs little of it, ends, and either gives a sound mesh or none. The sanitizers look on where they are
// built in.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "Vexo_Lib/load3d.h"
#include "support/error_reports.h"
#include "support/hostile_bytes.h"
#include "support/mesh_file_writers.h"
#include "support/peak_memory.h"
#include "support/test_files.h"
#include "support/use_mesh.h"
#include "talvek.h"
#include "weathering/delta_grid.h"
#include "weathering/mineral_map.h"

namespace talvek::test {
namespace {

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

/// The values that counts are given: around nothing, large, and such that products of two or three wrap.
constexpr std::int32_t kCounts[] = {
    -1,      0,       1,        4,          1 << 15,    (1 << 16) + 1,
    1 << 29, 1 << 30, kLargest, 0x55555556, 0x2AAAAAAB, std::numeric_limits<std::int32_t>::min()};

constexpr std::int64_t kMiB = 1 << 20;

class HostileFiles : public ::testing::Test {
  protected:
    HostileFiles() { ::testing::internal::CaptureStdout(); }
    ~HostileFiles() override {
        ::testing::internal::GetCapturedStdout();
        if (kKnowsPeakMemory) {
            EXPECT_LT(peakMemory_.growth(), mostMemory_);
        }
    }

    /// Returns whether the bytes were a mesh.
    bool use(const std::string& name, const std::string& bytes) {
        ++numUsed_;
        const std::string path = folder_.file(name);
        writeFile(path, bytes);
        const auto mesh = LoadMeshFile(path.c_str());
        if (mesh == nullptr) {
            return false;
        }
        EXPECT_TRUE(hasSoundIndices(*mesh));
        weatherOnce(*mesh);
        return true;
    }

    TempFolder folder_;
    std::int64_t numUsed_ = 0;
    /// What a test may need beyond the memory that it began with.
    std::int64_t mostMemory_ = 32 * kMiB;

  private:
    PeakMemory peakMemory_;
    CaughtReports reports_;
};

class HostileForms : public HostileFiles, public ::testing::WithParamInterface<SmallFile> {};

TEST_P(HostileForms, SoundToBeginWith) {
    EXPECT_LE(GetParam().bytes.size(), 8192);
    EXPECT_TRUE(use(GetParam().name, GetParam().bytes));
}

TEST_P(HostileForms, CutAnywhere) {
    forEachPrefix(GetParam().bytes, [this](const std::string& bytes) { use(GetParam().name, bytes); });
    EXPECT_EQ(numUsed_, static_cast<std::int64_t>(GetParam().bytes.size()) + 1);
}

TEST_P(HostileForms, ChangedInAnyByte) {
    forEachChangedByte(GetParam().bytes, [this](const std::string& bytes) { use(GetParam().name, bytes); });
    EXPECT_GT(numUsed_, static_cast<std::int64_t>(2 * GetParam().bytes.size()));
}

INSTANTIATE_TEST_SUITE_P(OfEachFormat, HostileForms, ::testing::ValuesIn(smallMeshFiles()),
                         [](const ::testing::TestParamInfo<SmallFile>& file) {
                             std::string name = file.param.name;
                             std::ranges::replace_if(
                                 name, [](char c) { return c == '.' || c == '-'; }, '_');
                             return name;
                         });

TEST_F(HostileFiles, AnyCountsInABinFile) {
    const std::string body = binBytes(Tetrahedron::kVertices, Tetrahedron::kFaces).substr(8);
    for (const std::int32_t vertices : kCounts) {
        for (const std::int32_t faces : kCounts) {
            use("mesh.bin", bytesOf(Ints{vertices, faces}) + body);
            use("mesh.bin", bytesOf(Ints{vertices, faces}) + body + binLabel("stone", 0));
        }
    }
    for (const std::int32_t texels : kCounts) {
        use("mesh.bin", bytesOf(Ints{4, 4}) + body + binLabel("stone", 0xFF) + bytesOf(Ints{texels}) + body);
    }
}

TEST_F(HostileFiles, AnyCountsInASasFile) {
    const std::string body = sasTetrahedron(7778).substr(20);
    for (const std::int32_t version : {7777, 7778, 7779, 7780}) {
        for (const std::int32_t faces : kCounts) {
            for (const std::int32_t vertices : kCounts) {
                use("mesh.sas", sasHeader(version, faces, vertices) + body);
            }
        }
    }
    for (const std::int32_t texels : kCounts) {
        use("mesh.sas", sasTetrahedron(7780, bytesOf(Ints{texels}) + body));
    }
}

TEST_F(HostileFiles, AnyDimensionsOfAGeometryImage) {
    for (const std::int32_t width : kCounts) {
        for (const std::int32_t height : kCounts) {
            for (const std::int32_t channels : {-1, 0, 1, 2, 3, 4, 16, 1 << 15, 1 << 29, kLargest}) {
                use("scan.fim", fimBytes(width, height, channels, fimPlane(4, 4)));
            }
        }
    }
}

TEST_F(HostileFiles, AnyIndexInAnyFormat) {
    for (const std::int32_t index : kCounts) {
        const std::string text = std::to_string(index);
        const bool isVertex = index >= 0 && index < 4;
        EXPECT_EQ(use("mesh.bin", binBytes(Tetrahedron::kVertices, {0, index, 2})), isVertex) << index;
        EXPECT_EQ(use("mesh.sas", sasHeader(7778, 1, 4) + bytesOf(Tetrahedron::kVertices) + bytesOf(Ints{0, index, 2})),
                  isVertex)
            << index;
        EXPECT_EQ(use("mesh.obj", "v 0 0 0 v 1 0 0 v 0 1 0 v 0 0 1\nf 1 3 " + text), index >= 1 && index <= 4) << index;
        EXPECT_EQ(use("mesh.wrl", "Coordinate [ 0 0 0 1 0 0 0 1 0 0 0 1 ] coordIndex [ 0 " + text + " 2 -1 ]"),
                  isVertex)
            << index;
    }
}

TEST_F(HostileFiles, AnyTexelIndexInAnyFormat) {
    const std::string bin = binBytes(Tetrahedron::kVertices, {0, 1, 2}) + binLabel("", 0xFF) + bytesOf(Ints{1, 0, 0});
    for (const std::int32_t index : kCounts) {
        EXPECT_TRUE(use("mesh.bin", bin + bytesOf(Ints{index, index, index}))) << index;
        EXPECT_TRUE(use("mesh.obj", "v 0 0 0 v 1 0 0 v 0 1 0\nvt 0 0\nf 1/1 2/" + std::to_string(index) + " 3/1"));
    }
}

// The largest that a few bytes may promise, and a little more.
constexpr std::int32_t kPromisedVertices = (1 << 20) / 12;

TEST_F(HostileFiles, APromiseThatIsKeptNeedsAFewTimesItsSize) {
    mostMemory_ = 4 * kMiB;
    writeFile(folder_.file("mesh.bin"), bytesOf(Ints{kPromisedVertices, 0}));
    const auto mesh = LoadMeshFile(folder_.file("mesh.bin").c_str());
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numVertices, kPromisedVertices);
}

TEST_F(HostileFiles, APromiseBeyondThatNeedsNothing) {
    constexpr std::int32_t kVertices = kPromisedVertices + 8;
    EXPECT_FALSE(use("mesh.bin", bytesOf(Ints{kVertices, 0})));
    EXPECT_FALSE(use("mesh.bin", bytesOf(Ints{0, kVertices})));
    EXPECT_FALSE(use("mesh.sas", sasHeader(7778, 0, kVertices)));
    EXPECT_FALSE(use("mesh.sas", sasHeader(7778, kVertices, 0)));
    // Too much only in all arrays together.
    EXPECT_FALSE(use("mesh.sas", sasHeader(7777, kVertices / 2, 0)));
    EXPECT_FALSE(use("scan.fim", fimBytes(256, 257, 4, {})));
}

TEST_F(HostileFiles, FacesOfOneVertexAlone) {
    std::string text = "v 0 0 0\n";
    for (int i = 0; i < 20000; ++i) {
        text += "f 1 1 1\n";
    }
    EXPECT_TRUE(use("mesh.obj", text));
}

TEST_F(HostileFiles, NumbersThatAreNone) {
    EXPECT_TRUE(
        use("mesh.obj", "v nan inf -inf v 1e38 -1e38 1e38 v 1e-45 0 0 v 3e38 3e38 3e38\nf 1 2 3 f 2 3 4 f 4 2 1"));
}

/// A bitmap's two headers, 54 bytes.
std::string bitmapHeaders(std::uint32_t offset, std::int32_t width, std::int32_t height, std::int32_t bits,
                          std::int32_t imageSize) {
    return "BM" + bytesOf(Ints{0, 0, static_cast<std::int32_t>(offset), 40, width, height, 1 | bits << 16, 0, imageSize,
                               0, 0, 0, 0});
}

class HostileBitmaps : public HostileFiles {
  protected:
    bool useBitmap(const std::string& bytes) {
        ++numUsed_;
        writeFile(path_, bytes);
        const auto map = readMineralMap(path_.c_str());
        if (map == nullptr) {
            return false;
        }
        const std::int64_t values = std::int64_t{map->width} * map->height * map->channels;
        volatile float sum = 0;
        for (std::int64_t i = 0; i < values; ++i) {
            sum = sum + map->data[static_cast<std::size_t>(i)];
        }
        return true;
    }

    std::string path_ = folder_.file("stone.bmp");
    const std::string bitmap_ = bitmapHeaders(54, 5, 4, 24, 0) + std::string(16 * 4, '\x7F');
};

TEST_F(HostileBitmaps, CutOrChanged) {
    EXPECT_TRUE(useBitmap(bitmap_));
    forEachPrefix(bitmap_, [this](const std::string& bytes) { useBitmap(bytes); });
    forEachChangedByte(bitmap_, [this](const std::string& bytes) { useBitmap(bytes); });
}

/// Whether a bitmap of 64 bytes of pixels, or none, may have these headers.
bool isPossible(std::int64_t width, std::int64_t height, std::int64_t bits, std::int64_t size) {
    if (width < 0 || height == std::numeric_limits<std::int32_t>::min()) {
        return false;
    }
    const std::int64_t rowBytes = width * ((bits + 7) / 8);
    const std::int64_t step = (rowBytes + 3) / 4 * 4;
    const std::int64_t rows = std::abs(height);
    const std::int64_t all =
        rows > 0 && step > std::numeric_limits<std::int64_t>::max() / rows ? kLargest : step * rows;
    const std::int64_t read = size != 0 ? size : all;
    return read <= 64 && read >= all - (step - rowBytes);
}

// A width of 0 and a height of 2^31 - 1 used to take seconds.
TEST_F(HostileBitmaps, AnyHeader) {
    for (const std::int32_t width : kCounts) {
        for (const std::int32_t height : kCounts) {
            for (const std::int32_t bits : {0, 8, 24, 65535}) {
                for (const std::int32_t size : {0, 64, kLargest}) {
                    EXPECT_EQ(useBitmap(bitmapHeaders(54, width, height, bits, size) + std::string(64, '\x7F')),
                              isPossible(width, height, bits, size))
                        << width << " x " << height << ", " << bits << " bits, " << size << " bytes";
                }
            }
        }
    }
    for (const std::uint32_t offset : {0U, 53U, 55U, 117U, 118U, 1U << 31, ~0U}) {
        useBitmap(bitmapHeaders(offset, 5, 4, 24, 0) + std::string(64, '\x7F'));
    }
}

TEST_F(HostileBitmaps, OfAnySizeUnderAGrid) {
    for (const std::int32_t width : {0, 2}) {
        for (const std::int32_t height : {0, -2}) {
            writeFile(path_, bitmapHeaders(54, width, height, 24, 0) + bitmap_.substr(54));
            const auto map = readMineralMap(path_.c_str());
            ASSERT_NE(map, nullptr);
            EXPECT_NE(mineralDeltaGrid(*map, 1.0), nullptr);
        }
    }
}

class HostileParameters : public HostileFiles {
  protected:
    void useParameters(const std::string& text) {
        writeFile(folder_.file("stone.cfg"), text);
        talvekFree();
        ASSERT_EQ(talvekSetFileName(folder_.file("stone.obj").c_str()), TALVEK_OK);
        ASSERT_EQ(talvekReadParams(), TALVEK_OK);
        ASSERT_LE(talvekGetNumEpochs(), TALVEK_MAX_EPOCHS);
        ASSERT_GE(talvekGetNumEpochs(), 0);
        std::uint32_t days = 0;
        talvekGetFrameTime(static_cast<std::uint32_t>(talvekGetNumEpochs()), &days);
        ASSERT_EQ(talvekSaveParams(), TALVEK_OK);
        talvekFree();
    }
};

TEST_F(HostileParameters, CutOrChanged) {
    const std::string text = "mode = 1;\nmodel=3;\nmtl = 1, 2.5e3;\nepcs = 3;\nepc_0 = 30, 1;\nepc_2 = 9, 0;\n";
    forEachPrefix(text, [this](const std::string& damaged) { useParameters(damaged); });
    forEachChangedByte(text, [this](const std::string& damaged) { useParameters(damaged); });
}

TEST_F(HostileParameters, AnyNumbers) {
    for (const char* number : {"-1", "0", "4000", "4001", "2147483647", "2147483648", "-2147483649", "1e308", "-1e308",
                               "1e999", "nan", "-inf", "0x7fffffff", "", ",,,,,,,,,", "99999999999999999999999"}) {
        const std::string value = number;
        useParameters("mode = " + value + "\nmodel = " + value + "\nmtl = " + value);
        useParameters("epcs = " + value + "\nepc_0 = " + value + "\nepc_1 = " + value);
        useParameters("epcs = 3\nepc_" + value + " = 1");
        useParameters("epcs = 9\nepc_9 = " + value + "\nepcs = " + value + "\nepc_9 = 1");
    }
    useParameters(std::string(100000, 'e') + "\n" + "epc_1 = " + std::string(100000, ',') + "\n" +
                  std::string(1000, '\0'));
}

}  // namespace
}  // namespace talvek::test
