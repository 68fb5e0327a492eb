#include "Vexo_Lib/fim.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Vexo_Lib/error_report.h"
#include "base/binary_file.h"

namespace talvek {

namespace {

/// Where error reports about images say that they were made: readers of the reports know "load3d".
constexpr SourceSite siteInLoad3d(int line) {
    return {"load3d.cpp", line};
}

/// Throws std::bad_alloc for dimensions that are negative or whose product does not fit.
std::int64_t numValues(const FimImage& image) {
    if (image.width < 0 || image.height < 0 || image.channels < 0) {
        throw std::bad_alloc();
    }
    const std::int64_t numPixels = std::int64_t{image.width} * image.height;
    if (image.channels > 0 && numPixels > std::numeric_limits<std::int64_t>::max() / image.channels) {
        throw std::bad_alloc();
    }
    return numPixels * image.channels;
}

void moveToOrigin(const FimImage& image, Object3D& mesh) {
    const std::span<float> positions = mesh.vertexSpan();
    // The image may have no pixel at all.
    if (positions.empty()) {
        return;
    }
    constexpr double kSmallestOffset = 0.0001;
    const float* offset = image.pixel(0, 0);
    const bool isMoved = std::any_of(offset, offset + 3, [](float component) {
        return std::fabs(static_cast<double>(component)) > kSmallestOffset;
    });
    if (!isMoved) {
        return;
    }
    for (std::size_t i = 0; i < positions.size(); ++i) {
        positions[i] += offset[i % 3];
    }
    mesh.largestCoordinate = largestAbsoluteCoordinate(mesh);
}

}  // namespace

std::unique_ptr<FimImage> ReadFimImage(const char* path) try {
    BinaryFile file(path);
    if (!file.isOpen()) {
        reportError(siteInLoad3d(__LINE__), "cannot load ", path);
        return nullptr;
    }
    auto image = std::make_unique<FimImage>();
    image->width = file.readInt();
    image->height = file.readInt();
    image->channels = file.readInt();
    image->data = file.readArray<float>(numValues(*image));
    return image;
} catch (const std::bad_alloc&) {
    reportError(siteInLoad3d(__LINE__), "damaged file ", path);
    return nullptr;
}

std::unique_ptr<Object3D> LoadFimFile(const char* path) try {
    const std::unique_ptr<FimImage> image = ReadFimImage(path);
    std::unique_ptr<Object3D> mesh = image != nullptr ? TriangulateFimImage(*image) : nullptr;
    if (mesh == nullptr) {
        return nullptr;
    }
    moveToOrigin(*image, *mesh);
    mesh->faceColours = makeFilledArray(3 * std::int64_t{mesh->numFaces}, 1.0F);
    return mesh;
} catch (const std::bad_alloc&) {
    reportError(siteInLoad3d(__LINE__), "damaged file ", path);
    return nullptr;
}

}  // namespace talvek
