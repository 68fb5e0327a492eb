// Meshes that scanners and modellers have made, weathered under every pair of operating mode and model: the frames are
// the same on every platform, byte for byte but for carriage returns. Each line of tests/data/real_mesh_frames.txt has
// a mode, a model, a checksum of the frames and the mesh. To write the lines anew, run these suites natively with
// TALVEK_WRITE_REAL_MESH_FRAMES=1 in the environment.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>

#include "support/runs.h"
#include "weathering/random.h"

namespace talvek::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kTable = TALVEK_TEST_DATA "/real_mesh_frames.txt";

std::string checksumText(std::uint64_t checksum) {
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(checksum));
    return digits;
}

/// From "MODE MODEL MESH" to the checksum, or to "refused".
using Table = std::map<std::string, std::string>;

Table readTable() {
    Table table;
    std::ifstream file(kTable, std::ios::binary);
    std::string mode;
    std::string model;
    std::string frames;
    std::string mesh;
    while (file >> mode >> model >> frames && std::getline(file, mesh)) {
        table[mode + " " + model + mesh] = frames;
    }
    return table;
}

void writeTable(const Table& table) {
    constexpr std::size_t kPairSize = 4;
    std::ofstream file(kTable, std::ios::binary);
    for (const auto& [key, frames] : table) {
        file << key.substr(0, kPairSize) << frames << key.substr(kPairSize - 1) << '\n';
    }
}

/// The checksum of all that a run writes, or "refused".
std::string framesOf(StoneRun& run, const std::string& name) {
    randomGenerator() = RandomGenerator();
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    const std::int32_t result = run.start();
    ::testing::internal::GetCapturedStderr();
    ::testing::internal::GetCapturedStdout();
    if (result == TALVEK_ERROR_MESH) {
        EXPECT_TRUE(run.log().ends_with("\nProcessing ABORTED!\n")) << name;
        EXPECT_EQ(run.listing().find(".obj_"), std::string::npos) << name;
        return "refused";
    }
    EXPECT_EQ(result, TALVEK_OK) << name;
    return checksumText(run.framesChecksum());
}

/// A mesh file, by its path below the folder of real meshes.
using Meshes = std::map<std::string, fs::path>;

Meshes realMeshes() {
    const fs::path root = realMeshFolder();
    Meshes meshes;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        if (entry.path().extension() == ".obj" || entry.path().extension() == ".wrl") {
            meshes[entry.path().lexically_relative(root).generic_string()] = entry.path();
        }
    }
    return meshes;
}

bool hasTexels(const std::string& bytes) {
    return bytes.find("\nvt ") != std::string::npos || bytes.find("TextureCoordinate") != std::string::npos;
}

class RealMeshFrames : public ::testing::Test {
  protected:
    void SetUp() override {
        if (realMeshFolder().empty()) {
            GTEST_SKIP() << "the folder of real meshes is not there; TALVEK_REAL_MESHES can name one";
        }
    }

    void expectKnownFrames(std::int32_t mode, std::int32_t model) {
        const bool needsTexels = mode == TALVEK_MODE_QEMSCAN || mode == TALVEK_MODE_GRAIN_WEAVER;
        const bool isWriting = std::getenv("TALVEK_WRITE_REAL_MESH_FRAMES") != nullptr;
        const std::string pair = std::to_string(mode) + " " + std::to_string(model) + " ";
        Table table = readTable();
        int numWeathered = 0;
        for (const auto& [name, path] : realMeshes()) {
            const std::string bytes = readFile(path.string());
            if (needsTexels && !hasTexels(bytes)) {
                continue;
            }
            StoneRun run(bytes, path.extension().string());
            run.addMap(patchyBitmap());
            run.mode = mode;
            run.model = model;
            // The second epoch is the first that starts from weathered stone; on the grid each takes long.
            run.epochs = mode == TALVEK_MODE_QEMSCAN ? 2 : 3;
            run.days = 3650;
            const std::string frames = framesOf(run, name);
            if (isWriting) {
                table[pair + name] = frames;
            }
            EXPECT_EQ(frames, table[pair + name]) << pair << name;
            ++numWeathered;
        }
        if (isWriting) {
            writeTable(table);
        }
        const auto isOfPair = [&pair](const auto& row) { return row.first.starts_with(pair); };
        EXPECT_EQ(numWeathered, std::ranges::count_if(table, isOfPair)) << "meshes against rows of the table";
    }
};

// A suite for each mode, because suites are what runs one by one under Wine.
class RealMeshFramesOfOffsetting : public RealMeshFrames {};
class RealMeshFramesOfMeshData : public RealMeshFrames {};
class RealMeshFramesOfQemscan : public RealMeshFrames {};
class RealMeshFramesOfGrainWeaver : public RealMeshFrames {};

TEST_F(RealMeshFramesOfOffsetting, AreTheSameUnderAConstantOffset) {
    expectKnownFrames(TALVEK_MODE_OFFSETTING, TALVEK_MODEL_CONSTANT_OFFSET);
}
TEST_F(RealMeshFramesOfOffsetting, AreTheSameUnderARandomOffset) {
    expectKnownFrames(TALVEK_MODE_OFFSETTING, TALVEK_MODEL_RANDOM_OFFSET);
}
TEST_F(RealMeshFramesOfOffsetting, AreTheSameUnderSmoothing) {
    expectKnownFrames(TALVEK_MODE_OFFSETTING, TALVEK_MODEL_SMOOTHING);
}

TEST_F(RealMeshFramesOfMeshData, AreTheSameUnderTheSo2Crust) {
    expectKnownFrames(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_SO2_CRUST);
}
TEST_F(RealMeshFramesOfMeshData, AreTheSameUnderTheSo2No2Crust) {
    expectKnownFrames(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_SO2_NO2_CRUST);
}
TEST_F(RealMeshFramesOfMeshData, AreTheSameUnderAcidRain) {
    expectKnownFrames(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
}

TEST_F(RealMeshFramesOfQemscan, AreTheSameUnderTheSo2Crust) {
    expectKnownFrames(TALVEK_MODE_QEMSCAN, TALVEK_MODEL_SO2_CRUST);
}
TEST_F(RealMeshFramesOfQemscan, AreTheSameUnderTheSo2No2Crust) {
    expectKnownFrames(TALVEK_MODE_QEMSCAN, TALVEK_MODEL_SO2_NO2_CRUST);
}
TEST_F(RealMeshFramesOfQemscan, AreTheSameUnderAcidRain) {
    expectKnownFrames(TALVEK_MODE_QEMSCAN, TALVEK_MODEL_ACID_RAIN);
}

TEST_F(RealMeshFramesOfGrainWeaver, AreTheSameUnderTheSo2Crust) {
    expectKnownFrames(TALVEK_MODE_GRAIN_WEAVER, TALVEK_MODEL_SO2_CRUST);
}
TEST_F(RealMeshFramesOfGrainWeaver, AreTheSameUnderTheSo2No2Crust) {
    expectKnownFrames(TALVEK_MODE_GRAIN_WEAVER, TALVEK_MODEL_SO2_NO2_CRUST);
}
TEST_F(RealMeshFramesOfGrainWeaver, AreTheSameUnderAcidRain) {
    expectKnownFrames(TALVEK_MODE_GRAIN_WEAVER, TALVEK_MODEL_ACID_RAIN);
}

}  // namespace
}  // namespace talvek::test
