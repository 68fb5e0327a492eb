// Meshes that scanners and modellers have made, weathered under every model: the frames are the same on every platform,
// byte for byte but for carriage returns. Each line of tests/data/real_mesh_frames.txt has a model, a checksum of the
// frames and the mesh. To write it anew, run this suite natively with TALVEK_WRITE_REAL_MESH_FRAMES=1 in the
// environment.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <string>

#include "interface/host_session.h"

namespace talvek::test {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t kEpochs = 3;

/// FNV-1a in steps of eight bytes.
void addTo(std::uint64_t& checksum, std::string_view text) {
    while (!text.empty()) {
        std::uint64_t word = 0;
        const std::size_t size = std::min(sizeof word, text.size());
        std::memcpy(&word, text.data(), size);
        checksum = (checksum ^ word) * 1099511628211U;
        checksum ^= checksum >> 29;
        text.remove_prefix(size);
    }
}

/// From "MODEL MESH" to the checksum, or to "refused".
using Table = std::map<std::string, std::string>;

Table readTable() {
    Table table;
    std::ifstream file(TALVEK_TEST_DATA "/real_mesh_frames.txt", std::ios::binary);
    std::string model;
    std::string frames;
    std::string mesh;
    while (file >> model >> frames && std::getline(file, mesh)) {
        table[model + mesh] = frames;
    }
    return table;
}

void writeTable(const Table& table) {
    std::ofstream file(TALVEK_TEST_DATA "/real_mesh_frames.txt", std::ios::binary);
    for (const auto& [key, frames] : table) {
        file << key.substr(0, 2) << frames << key.substr(1) << '\n';
    }
}

class RealMeshes : public HostSession {
  protected:
    void SetUp() override {
        HostSession::SetUp();
        if (realMeshFolder().empty()) {
            GTEST_SKIP() << "the folder of real meshes is not there; TALVEK_REAL_MESHES can name one";
        }
    }

    /// What becomes of one mesh under a model.
    std::string framesOf(const fs::path& path, std::int32_t model) {
        const TempFolder folder;
        const std::string mesh = folder.file("mesh.obj");
        fs::copy_file(path, mesh);
        resetSession();
        EXPECT_EQ(TALVEK_CALL(talvekSetFileName)(mesh.c_str()), TALVEK_OK);
        setUp(TALVEK_MODE_MESH_DATA, model, kEpochs, 3650);
        ::testing::internal::CaptureStderr();
        const std::int32_t result = start();
        const std::string report = ::testing::internal::GetCapturedStderr();
        if (result == TALVEK_ERROR_MESH) {
            EXPECT_NE(report.find("face index out of range in "), std::string::npos) << path;
            EXPECT_EQ(folder.listing(), "mesh.inf mesh.obj") << path;
            return "refused";
        }
        EXPECT_EQ(result, TALVEK_OK) << path;
        std::uint64_t checksum = 14695981039346656037U;
        addTo(checksum, readText(mesh + ".obj_i.obj"));
        std::string last;
        for (int n = 1; n <= kEpochs; ++n) {
            last = readText(mesh + ".obj_w_" + std::to_string(n) + ".obj");
            addTo(checksum, last);
        }
        EXPECT_EQ(readText(mesh + ".obj_w.obj"), last) << path;
        char digits[17];
        std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(checksum));
        return digits;
    }

    static Table meshes(std::int32_t model) {
        const fs::path root = realMeshFolder();
        Table found;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
            if (entry.path().extension() == ".obj") {
                const std::string name = entry.path().lexically_relative(root).generic_string();
                found[std::to_string(model) + " " + name] = entry.path().string();
            }
        }
        return found;
    }

    void expectKnownFrames(std::int32_t model) {
        const bool isWriting = std::getenv("TALVEK_WRITE_REAL_MESH_FRAMES") != nullptr;
        Table table = readTable();
        const Table found = meshes(model);
        ASSERT_GT(found.size(), 0);
        for (const auto& [key, path] : found) {
            const std::string frames = framesOf(path, model);
            if (isWriting) {
                table[key] = frames;
            }
            EXPECT_EQ(frames, table[key]) << key;
        }
        if (isWriting) {
            writeTable(table);
        }
    }
};

TEST_F(RealMeshes, HaveTheSameFramesUnderTheSo2Crust) {
    expectKnownFrames(TALVEK_MODEL_SO2_CRUST);
}

TEST_F(RealMeshes, HaveTheSameFramesUnderTheSo2No2Crust) {
    expectKnownFrames(TALVEK_MODEL_SO2_NO2_CRUST);
}

TEST_F(RealMeshes, HaveTheSameFramesUnderAcidRain) {
    expectKnownFrames(TALVEK_MODEL_ACID_RAIN);
}

}  // namespace
}  // namespace talvek::test
