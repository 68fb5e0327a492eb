#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>

#include "Vexo_Lib/fim.h"

namespace talvek {

namespace {

struct Pixel {
    std::int64_t column;
    std::int64_t row;
};

/// Walks the cells once. Buffers have the size of the worst case; what is not written in them costs no memory.
class FimTriangulation {
  public:
    explicit FimTriangulation(const FimImage& image)
        : image_(image),
          numPixels_(std::int64_t{image.width} * image.height),
          numbers_(makeZeroedArray<std::int32_t>(numPixels_)),
          positions_(makeArray<float>(3 * numPixels_)),
          texels_(makeArray<float>(2 * numPixels_)),
          corners_(makeArray<std::int32_t>(6 * numPixels_)) {}

    void run() {
        if (image_.width < 2 || image_.height < 2) {
            return;
        }
        for (std::int64_t column = 0; column < image_.width - 1; ++column) {
            for (std::int64_t row = 0; row < image_.height - 1; ++row) {
                addCell(column, row);
            }
        }
    }

    std::unique_ptr<Object3D> buildMesh() const {
        auto mesh = std::make_unique<Object3D>();
        mesh->numVertices = checkedCount(numVertices_);
        mesh->numTexels = mesh->numVertices;
        mesh->numFaces = checkedCount(numFaces_);
        mesh->vertices = copyArray(positions_.get(), 3 * numVertices_);
        mesh->vertexIndex = copyArray(corners_.get(), 3 * numFaces_);
        mesh->texels = copyArray(texels_.get(), 2 * numVertices_);
        constexpr float kGrey = 0.8F;
        mesh->faceColours = makeFilledArray(3 * numFaces_, kGrey);
        return mesh;
    }

  private:
    /// Throws std::bad_alloc for more than a mesh can count.
    static std::int32_t checkedCount(std::int64_t count) {
        if (count > std::numeric_limits<std::int32_t>::max()) {
            throw std::bad_alloc();
        }
        return static_cast<std::int32_t>(count);
    }

    bool isValid(const Pixel& at) const {
        const float* values = image_.pixel(at.column, at.row);
        return std::any_of(values, values + 3, [](float value) { return std::fabs(value) > 0; });
    }

    /// The pixel's vertex, counted from 1; 0 while it has none.
    std::int32_t& numberOf(const Pixel& at) {
        return numbers_[static_cast<std::size_t>(at.column * image_.height + at.row)];
    }

    void addCell(std::int64_t column, std::int64_t row) {
        const Pixel a = {column, row};
        const Pixel b = {column + 1, row};
        const Pixel c = {column + 1, row + 1};
        const Pixel d = {column, row + 1};
        if (!isValid(a) || !isValid(c)) {
            return;
        }
        if (isValid(b)) {
            giveVertices({a, b, c});
            addTriangle({a, b, c});
        }
        if (isValid(d)) {
            giveVertices({a, d, c});
            addTriangle({a, c, d});
        }
    }

    void giveVertices(std::initializer_list<Pixel> pixels) {
        for (const Pixel& at : pixels) {
            if (numberOf(at) == 0) {
                addVertex(at);
                numberOf(at) = checkedCount(numVertices_);
            }
        }
    }

    void addVertex(const Pixel& at) {
        std::copy_n(image_.pixel(at.column, at.row), 3, positions_.get() + 3 * numVertices_);
        float* texel = texels_.get() + 2 * numVertices_;
        texel[0] = static_cast<float>(at.column) / static_cast<float>(image_.width - 2);
        texel[1] = static_cast<float>(at.row) / static_cast<float>(image_.height - 2);
        ++numVertices_;
    }

    void addTriangle(std::initializer_list<Pixel> pixels) {
        std::int32_t* corner = corners_.get() + 3 * numFaces_;
        for (const Pixel& at : pixels) {
            *corner++ = numberOf(at) - 1;
        }
        ++numFaces_;
    }

    const FimImage& image_;
    std::int64_t numPixels_;
    HeapArray<std::int32_t> numbers_;
    HeapArray<float> positions_;
    HeapArray<float> texels_;
    HeapArray<std::int32_t> corners_;
    std::int64_t numVertices_ = 0;
    std::int64_t numFaces_ = 0;
};

}  // namespace

std::unique_ptr<Object3D> TriangulateFimImage(const FimImage& image) try {
    constexpr std::int32_t kChannels = 3;
    if (image.channels != kChannels) {
        return nullptr;
    }
    FimTriangulation triangulation(image);
    triangulation.run();
    return triangulation.buildMesh();
} catch (const std::bad_alloc&) {
    return nullptr;
}

}  // namespace talvek
