#include "example_stone/carved_block.h"

#include <charconv>
#include <cstddef>
#include <utility>

#include "example_stone/carving.h"

namespace talvek::example {

namespace {

// The finely worked sides are meshed with every point of this lattice, the others with every second.
constexpr Axis kSteps{128, 86, 64};
constexpr int kCoarseStride = 2;
static_assert(kDressedStepU * kSteps.z == kBlockSize.z && kDressedStepV * kSteps.y == kBlockSize.y);

constexpr std::uint32_t kUnused = 0xFFFFFFFFU;

/// A point of a side's lattice.
struct SideStep {
    int i = 0;
    int j = 0;
};

constexpr int stepsAlong(const Axis& axis) {
    const int steps = axis.x * kSteps.x + axis.y * kSteps.y + axis.z * kSteps.z;
    return steps < 0 ? -steps : steps;
}

constexpr Axis latticePoint(const BoxSide& side, const SideStep& at) {
    return {side.corner.x * kSteps.x + side.uAxis.x * at.i + side.vAxis.x * at.j,
            side.corner.y * kSteps.y + side.uAxis.y * at.i + side.vAxis.y * at.j,
            side.corner.z * kSteps.z + side.uAxis.z * at.i + side.vAxis.z * at.j};
}

constexpr Vec3 blockPoint(const Axis& lattice) {
    return {kBlockSize.x * lattice.x / kSteps.x, kBlockSize.y * lattice.y / kSteps.y,
            kBlockSize.z * lattice.z / kSteps.z};
}

constexpr bool isOnFinelyWorkedSide(const Axis& lattice) {
    static_assert(isFinelyWorked(Side::kFront) && isFinelyWorked(Side::kRight));
    return lattice.x == kSteps.x || lattice.z == kSteps.z;
}

double squaredDistance(const Vec3& a, const Vec3& b) {
    const double x = a.x - b.x;
    const double y = a.y - b.y;
    const double z = a.z - b.z;
    return x * x + y * y + z * z;
}

Vec3 middleOf(const Vec3& a, const Vec3& b) {
    return {(a.x + b.x) / 2.0, (a.y + b.y) / 2.0, (a.z + b.z) / 2.0};
}

class BlockMesher {
  public:
    StoneMesh take() {
        for (const BoxSide& side : kBoxSides) {
            addSide(side);
        }
        return std::move(mesh_);
    }

  private:
    void addSide(const BoxSide& side) {
        uSteps_ = stepsAlong(side.uAxis);
        vSteps_ = stepsAlong(side.vAxis);
        texelOfStep_.assign(static_cast<std::size_t>(uSteps_ + 1) * static_cast<std::size_t>(vSteps_ + 1), kUnused);
        const int stride = isFinelyWorked(side.side) ? 1 : kCoarseStride;
        for (int j = 0; j < vSteps_; j += stride) {
            for (int i = 0; i < uSteps_; i += stride) {
                addCell(side, {i, j}, stride);
            }
        }
    }

    void addCell(const BoxSide& side, const SideStep& at, int stride) {
        const std::array<SideStep, 4> corners{
            {at, {at.i + stride, at.j}, {at.i + stride, at.j + stride}, {at.i, at.j + stride}}};
        outline_.clear();
        std::size_t start = 0;
        for (std::size_t k = 0; k < corners.size(); ++k) {
            outline_.push_back(cornerAt(side, corners[k]));
            const SideStep& next = corners[(k + 1) % corners.size()];
            const SideStep middle{(corners[k].i + next.i) / 2, (corners[k].j + next.j) / 2};
            // Where a finely worked side adjoins, its points on the common edge have to be used here too.
            if (stride == kCoarseStride && isOnFinelyWorkedSide(latticePoint(side, middle))) {
                start = outline_.size();
                outline_.push_back(cornerAt(side, middle));
            }
        }
        if (outline_.size() == corners.size()) {
            const Vec3 middle =
                middleOf(blockPoint(latticePoint(side, corners[0])), blockPoint(latticePoint(side, corners[2])));
            start = isFirstDiagonalCloser(carvedPoint(middle)) ? 0 : 1;
        }
        addFan(start);
    }

    /// Whether the diagonal between corners 0 and 2 follows the carving better than the other one. This makes edges lie
    /// along grooves and ridges instead of notching them.
    bool isFirstDiagonalCloser(const Vec3& middleOfSurface) const {
        const auto position = [this](std::size_t k) { return mesh_.positions[outline_[k].position]; };
        return squaredDistance(middleOf(position(0), position(2)), middleOfSurface) <=
               squaredDistance(middleOf(position(1), position(3)), middleOfSurface);
    }

    /// Triangles from one corner of the outline to all others. With a point in the middle of an edge it has to be that
    /// one: from another corner of that edge a triangle without area would come out.
    void addFan(std::size_t start) {
        const std::size_t count = outline_.size();
        for (std::size_t k = 1; k + 1 < count; ++k) {
            mesh_.faces.push_back({outline_[start], outline_[(start + k) % count], outline_[(start + k + 1) % count]});
        }
    }

    Corner cornerAt(const BoxSide& side, const SideStep& at) {
        const Axis lattice = latticePoint(side, at);
        return {positionAt(lattice), texelAt(side, at, blockPoint(lattice))};
    }

    std::uint32_t positionAt(const Axis& lattice) {
        const int index = (lattice.z * (kSteps.y + 1) + lattice.y) * (kSteps.x + 1) + lattice.x;
        std::uint32_t& position = positionOfLattice_[static_cast<std::size_t>(index)];
        if (position == kUnused) {
            position = static_cast<std::uint32_t>(mesh_.positions.size());
            mesh_.positions.push_back(carvedPoint(blockPoint(lattice)));
        }
        return position;
    }

    std::uint32_t texelAt(const BoxSide& side, const SideStep& at, const Vec3& point) {
        const int index = at.j * (uSteps_ + 1) + at.i;
        std::uint32_t& texel = texelOfStep_[static_cast<std::size_t>(index)];
        if (texel == kUnused) {
            texel = static_cast<std::uint32_t>(mesh_.texels.size());
            const SidePoint onSide = projectedOnSide(side, point);
            mesh_.texels.push_back(
                {(side.atlasLeft + onSide.u) / kAtlasWidth, (side.atlasBottom + onSide.v) / kAtlasHeight});
        }
        return texel;
    }

    StoneMesh mesh_;
    std::vector<std::uint32_t> positionOfLattice_ =
        std::vector<std::uint32_t>(static_cast<std::size_t>((kSteps.x + 1) * (kSteps.y + 1) * (kSteps.z + 1)), kUnused);
    std::vector<std::uint32_t> texelOfStep_;
    std::vector<Corner> outline_;
    int uSteps_ = 0;
    int vSteps_ = 0;
};

void appendDecimal(std::string& text, double value, int decimals) {
    std::array<char, 64> digits{};
    const auto result =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, decimals);
    text += ' ';
    text.append(digits.data(), result.ptr);
}

void appendIndex(std::string& text, char before, std::uint32_t index) {
    std::array<char, 16> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), index + 1);
    text += before;
    text.append(digits.data(), result.ptr);
}

}  // namespace

StoneMesh makeCarvedBlock() {
    return BlockMesher().take();
}

std::string objText(const StoneMesh& mesh) {
    constexpr std::size_t kBytesPerLine = 40;
    std::string text = "# A carved block of stone, in millimetres\n";
    text.reserve(kBytesPerLine * (mesh.positions.size() + mesh.texels.size() + mesh.faces.size()));
    for (const Vec3& position : mesh.positions) {
        text += 'v';
        appendDecimal(text, position.x, 4);
        appendDecimal(text, position.y, 4);
        appendDecimal(text, position.z, 4);
        text += '\n';
    }
    for (const Texel& texel : mesh.texels) {
        text += "vt";
        appendDecimal(text, texel.u, 6);
        appendDecimal(text, texel.v, 6);
        text += '\n';
    }
    for (const auto& face : mesh.faces) {
        text += 'f';
        for (const Corner& corner : face) {
            appendIndex(text, ' ', corner.position);
            appendIndex(text, '/', corner.texel);
        }
        text += '\n';
    }
    return text;
}

}  // namespace talvek::example
