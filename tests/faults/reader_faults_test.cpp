// Every reader of meshes and bitmaps while memory is short, files do not open and reads fail or come short: what comes
// out is the whole mesh or none, and a mesh file is never changed but by the upgrade, which has a test of its own.
#include <gtest/gtest.h>

#include "Vexo_Lib/load3d.h"
#include "base/input_file.h"
#include "faults/scenario.h"
#include "support/bitmaps.h"
#include "support/mesh_file_writers.h"
#include "weathering/mineral_map.h"

namespace talvek::test {
namespace {

template <typename T>
void append(std::string& bytes, const HeapArray<T>& array, std::int64_t count) {
    bytes += array != nullptr ? "+" : "-";
    if (array != nullptr) {
        bytes.append(reinterpret_cast<const char*>(array.get()), static_cast<std::size_t>(count) * sizeof(T));
    }
}

/// Everything in a mesh as one string; empty for none.
std::string contentOf(const Object3D* mesh) {
    std::string bytes;
    if (mesh != nullptr) {
        bytes = bytesOf(Ints{mesh->numVertices, mesh->numFaces, mesh->numTexels}) + mesh->label;
        append(bytes, mesh->vertices, 3 * std::int64_t{mesh->numVertices});
        append(bytes, mesh->vertexNormals, 3 * std::int64_t{mesh->numVertices});
        append(bytes, mesh->vertexColours, 3 * std::int64_t{mesh->numVertices});
        append(bytes, mesh->texels, 2 * std::int64_t{mesh->numTexels});
        append(bytes, mesh->vertexIndex, 3 * std::int64_t{mesh->numFaces});
        append(bytes, mesh->texelIndex, 3 * std::int64_t{mesh->numFaces});
        append(bytes, mesh->faceNormals, 3 * std::int64_t{mesh->numFaces});
        append(bytes, mesh->faceColours, 3 * std::int64_t{mesh->numFaces});
    }
    return bytes;
}

std::string contentOf(const MineralMap* map) {
    std::string bytes;
    if (map != nullptr) {
        bytes = bytesOf(Ints{map->width, map->height, map->channels});
        append(bytes, map->data, std::int64_t{map->width} * map->height * map->channels);
    }
    return bytes;
}

/// A file, and what comes of reading it.
class ReaderFaults : public ::testing::TestWithParam<SmallFile> {
  protected:
    /// What the file gives while the n-th operation fails; empty for nothing.
    std::string read(Fault fault = Fault::kNone, std::int64_t n = 0) {
        std::unique_ptr<Object3D> mesh;
        std::unique_ptr<MineralMap> map;
        ::testing::internal::CaptureStderr();
        armFault(fault, n, folder_.path());
        try {
            if (path_.ends_with(".bmp")) {
                map = readMineralMap(path_.c_str());
            } else {
                mesh = LoadMeshFile(path_.c_str());
            }
        } catch (const std::bad_alloc&) {
            // Only the map's pixels may run out of memory without a word.
            EXPECT_TRUE(path_.ends_with(".bmp"));
        }
        hasHappened_ = disarmFault();
        isReportedDamaged_ = ::testing::internal::GetCapturedStderr().find("damaged file " + path_) < std::string::npos;
        return contentOf(mesh.get()) + contentOf(map.get());
    }

    /// Reads while the n-th operation fails. Returns whether there was an n-th.
    bool inject(Fault fault, std::int64_t n) {
        const std::string where = GetParam().name + ", " + faultName(fault) + " " + std::to_string(n);
        writeFile(path_, GetParam().bytes);
        const std::int64_t blocksBefore = liveBlocks();
        std::string result = read(fault, n);
        const bool hasHappened = hasHappened_;
        EXPECT_TRUE(result.empty() || result == whole_) << where << " gave a part of what is in the file";
        EXPECT_TRUE(!result.empty() || hasHappened) << where;
        if (hasHappened) {
            expectNoticed(fault, result, where);
        }
        if (!isUpgraded()) {
            EXPECT_EQ(readFile(path_), GetParam().bytes) << where;
        }
        std::string().swap(result);
        EXPECT_EQ(liveBlocks(), blocksBefore) << where << " lost memory";
        EXPECT_EQ(read(), whole_) << where << " spoiled the next reading";
        return hasHappened;
    }

    void expectNoticed(Fault fault, const std::string& result, const std::string& where) const {
        const bool isSilent = path_.ends_with(".bmp") || path_.ends_with(".obj");
        if (isHarmless(fault)) {
            EXPECT_EQ(result, whole_) << where << " was not made up for";
        } else if (fault == Fault::kRead) {
            EXPECT_EQ(result, "") << where << " was overlooked";
            EXPECT_EQ(isReportedDamaged_, !isSilent) << where;
        } else if (fault == Fault::kOpen && !isUpgraded()) {
            EXPECT_EQ(result, "") << where << " was overlooked";
        }
    }

    bool isUpgraded() const { return GetParam().name == "legacy.sas"; }

    TempFolder folder_{folderInMemory()};
    const std::string path_ = folder_.file(GetParam().name);
    std::string whole_;
    bool hasHappened_ = false;
    bool isReportedDamaged_ = false;
};

TEST_P(ReaderFaults, GiveTheWholeOrNothing) {
    writeFile(path_, GetParam().bytes);
    whole_ = read();
    ASSERT_FALSE(whole_.empty());
    int injections = 0;
    for (const Fault fault : kAllFaults) {
        for (std::int64_t n = 1; inject(fault, n) && !HasFailure(); ++n) {
            ++injections;
        }
    }
    std::cout << GetParam().name << ": " << injections << " faults injected\n";
    EXPECT_GE(injections, 8);
}

TEST(InputFileFaults, AFailureIsNotForgotten) {
    const TempFolder folder{folderInMemory()};
    const std::string path = folder.file("text");
    writeFile(path, "text");
    armFault(Fault::kRead, 1, folder.path());
    InputFile file(path.c_str());
    char bytes[8];
    EXPECT_EQ(file.read(bytes, sizeof bytes), 0);
    EXPECT_TRUE(file.hasFailed());
    EXPECT_EQ(file.read(bytes, sizeof bytes), 4);
    EXPECT_TRUE(file.hasFailed());
    EXPECT_TRUE(disarmFault());
}

/// The small files, text that does not fit a reader's buffer, and bitmaps of both kinds.
std::vector<SmallFile> files() {
    std::vector<SmallFile> all = smallMeshFiles();
    const std::string filler = "\n#" + std::string(600000, '-') + "\n";
    all.push_back({"long.obj", "v 0 0 0\nv 1 0 0\n" + filler + "v 0 1 0\nf 1 2 3\n"});
    all.push_back({"long.wrl", wrlTetrahedron() + filler + wrlTetrahedron()});
    all.push_back({"colours.bmp", bitmapBytes(plainBitmap(5, 3, kGrey))});
    Bitmap indexed;
    indexed.width = 4;
    indexed.height = 2;
    indexed.bitsPerPixel = 8;
    indexed.gap = std::string(5000, 'g');
    indexed.pixelOffset += 5000;
    indexed.pixels = "12345678";
    all.push_back({"palette.bmp", bitmapBytes(indexed)});
    return all;
}

INSTANTIATE_TEST_SUITE_P(OfEveryFormat, ReaderFaults, ::testing::ValuesIn(files()), [](const auto& file) {
    std::string name = file.param.name;
    std::erase_if(name, [](char c) { return c == '.' || c == '-'; });
    return name;
});

}  // namespace
}  // namespace talvek::test
