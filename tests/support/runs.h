// Whole runs inside a test program that is linked to the library.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "mesh/object3d.h"
#include "support/bitmaps.h"
#include "support/test_files.h"
#include "talvek.h"

namespace talvek::test {

using EpochValues = std::array<float, TALVEK_EPOCH_PARAMS>;

/// A folder with the mesh "stone.obj" and perhaps its mineral map, and the session's settings for a run on it.
class StoneRun {
  public:
    explicit StoneRun(const Object3D& mesh);
    /// The mesh file's bytes as they are; `extension` with its dot.
    StoneRun(std::string_view meshBytes, std::string_view extension);
    ~StoneRun() { talvekFree(); }
    StoneRun(const StoneRun&) = delete;
    StoneRun& operator=(const StoneRun&) = delete;

    std::int32_t mode = TALVEK_MODE_OFFSETTING;
    std::int32_t model = TALVEK_MODEL_CONSTANT_OFFSET;
    std::int32_t epochs = 1;
    std::int32_t days = 1;
    bool saveResults = false;
    /// The environment of epochs 1, 2, ...; those that are not here keep the defaults of the mode.
    std::vector<EpochValues> environment;

    void addMap(const Bitmap& bitmap) { writeFile(folder_.file("stone.bmp"), bitmapBytes(bitmap)); }
    /// The result of talvekStart.
    std::int32_t start();
    /// The run log with '\n' line ends.
    std::string log() const { return readText(folder_.file("stone.inf")); }
    std::string meshName() const { return folder_.file("stone" + extension_); }
    std::string mapName() const { return folder_.file("stone.bmp"); }
    /// The text of a frame with '\n' line ends, and its mesh.
    std::string frameText(std::int32_t frame) const;
    std::unique_ptr<Object3D> frame(std::int32_t frame) const;
    /// The text of the first ('i') or last ('w') surface.
    std::string summaryText(char kind) const;
    /// A checksum of all surfaces that a run has written, line ends apart.
    std::uint64_t framesChecksum() const;
    std::string listing() const { return folder_.listing(); }

  private:
    TempFolder folder_;
    std::string extension_;
};

}  // namespace talvek::test
