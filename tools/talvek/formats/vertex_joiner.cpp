#include "talvek/formats/vertex_joiner.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <stdexcept>

#include "talvek/formats/imported_mesh.h"

namespace talvek::host {

namespace {

constexpr std::int32_t kNone = -1;
constexpr std::size_t kFewestSlots = 1024;

/// Another one in every process, so that no file can be made whose places all fall together.
const std::uint64_t kSeed = std::uint64_t{std::random_device()()} << 32 | std::random_device()();

std::uint64_t hashOf(std::uint64_t a, std::uint64_t b, std::uint64_t c) {
    constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
    std::uint64_t hash = (a ^ kSeed) * kOdd;
    hash = (std::rotl(hash, 29) ^ b) * kOdd;
    hash = (std::rotl(hash, 29) ^ c) * kOdd;
    return hash ^ hash >> 32;
}

/// Equal for equal coordinates: 0 and -0 are.
std::uint64_t bitsOf(double value) {
    return std::bit_cast<std::uint64_t>(value + 0.0);
}

bool isNan(double x, double y, double z) {
    return std::isnan(x) || std::isnan(y) || std::isnan(z);
}

/// Leaves only the vertices that `target` maps to themselves; every entry names an earlier one, or itself.
std::int64_t keepTargets(ImportedMesh& mesh, std::vector<std::int32_t>& target) {
    std::int32_t kept = 0;
    for (std::size_t v = 0; v < target.size(); ++v) {
        if (target[v] != static_cast<std::int32_t>(v)) {
            target[v] = target[static_cast<std::size_t>(target[v])];
            continue;
        }
        const auto to = static_cast<std::size_t>(kept);
        std::copy_n(mesh.positions.begin() + static_cast<std::ptrdiff_t>(3 * v), 3,
                    mesh.positions.begin() + static_cast<std::ptrdiff_t>(3 * to));
        if (!mesh.colours.empty()) {
            std::copy_n(mesh.colours.begin() + static_cast<std::ptrdiff_t>(4 * v), 4,
                        mesh.colours.begin() + static_cast<std::ptrdiff_t>(4 * to));
        }
        target[v] = kept++;
    }
    mesh.positions.resize(3 * static_cast<std::size_t>(kept));
    mesh.colours.resize(mesh.colours.empty() ? 0 : 4 * static_cast<std::size_t>(kept));
    for (std::int32_t& corner : mesh.corners) {
        corner = target[static_cast<std::size_t>(corner)];
    }
    return static_cast<std::int64_t>(target.size()) - kept;
}

/// Vertices by the cube of space they lie in, as wide as the distance within which they are made one.
class Cubes {
  public:
    Cubes(const std::vector<double>& positions, double width)
        : positions_(positions), width_(width), first_(sizeFor(positions.size() / 3), kNone) {}

    /// The first vertex within the distance of `v` among those that were added.
    std::int32_t near(std::size_t v) const {
        std::int32_t found = kNone;
        for (int cube = 0; cube < 27; ++cube) {
            const std::size_t slot = slotOf(v, cube % 3 - 1, cube / 3 % 3 - 1, cube / 9 - 1);
            for (std::int32_t other = first_[slot]; other != kNone; other = next_[static_cast<std::size_t>(other)]) {
                if ((found == kNone || other < found) && isNear(v, static_cast<std::size_t>(other))) {
                    found = other;
                }
            }
        }
        return found;
    }

    void add(std::size_t v) {
        const std::size_t slot = slotOf(v, 0, 0, 0);
        next_.resize(v + 1, kNone);
        next_[v] = first_[slot];
        first_[slot] = static_cast<std::int32_t>(v);
    }

  private:
    static std::size_t sizeFor(std::size_t count) { return std::bit_ceil(std::max(count, kFewestSlots)); }

    std::size_t slotOf(std::size_t v, int dx, int dy, int dz) const {
        const auto cell = [this, v](std::size_t k, int d) {
            return bitsOf(std::floor(positions_[3 * v + k] / width_) + d);
        };
        return hashOf(cell(0, dx), cell(1, dy), cell(2, dz)) & (first_.size() - 1);
    }

    bool isNear(std::size_t a, std::size_t b) const {
        double sum = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            const double d = positions_[3 * a + k] - positions_[3 * b + k];
            sum += d * d;
        }
        return sum <= width_ * width_;
    }

    const std::vector<double>& positions_;
    double width_;
    std::vector<std::int32_t> first_;
    std::vector<std::int32_t> next_;
};

}  // namespace

VertexJoiner::VertexJoiner(std::vector<double>& positions, std::size_t expected)
    : positions_(positions), slots_(std::bit_ceil(std::max(expected + expected / 2, kFewestSlots)), kNone) {
    mask_ = slots_.size() - 1;
}

std::size_t VertexJoiner::slotOf(double x, double y, double z) const {
    std::size_t slot = hashOf(bitsOf(x), bitsOf(y), bitsOf(z)) & mask_;
    for (; slots_[slot] != kNone; slot = (slot + 1) & mask_) {
        const double* position = positions_.data() + 3 * static_cast<std::size_t>(slots_[slot]);
        if (position[0] == x && position[1] == y && position[2] == z) {
            break;
        }
    }
    return slot;
}

void VertexJoiner::grow() {
    slots_.assign(2 * slots_.size(), kNone);
    mask_ = slots_.size() - 1;
    const std::size_t count = positions_.size() / 3;
    for (std::size_t v = 0; v < count; ++v) {
        const double* position = positions_.data() + 3 * v;
        if (isNan(position[0], position[1], position[2])) {
            continue;
        }
        slots_[slotOf(position[0], position[1], position[2])] = static_cast<std::int32_t>(v);
    }
}

std::int32_t VertexJoiner::vertexAt(double x, double y, double z) {
    const std::size_t count = positions_.size() / 3;
    if (isNan(x, y, z)) {
        // A table of such places would be one long search, for none is found.
        positions_.insert(positions_.end(), {x, y, z});
        return static_cast<std::int32_t>(count);
    }
    std::size_t slot = slotOf(x, y, z);
    if (slots_[slot] != kNone) {
        return slots_[slot];
    }
    if (count >= std::numeric_limits<std::int32_t>::max()) {
        throw std::length_error("vertices");
    }
    if (4 * count >= 3 * slots_.size()) {
        grow();
        slot = slotOf(x, y, z);
    }
    positions_.insert(positions_.end(), {x, y, z});
    slots_[slot] = static_cast<std::int32_t>(count);
    return slots_[slot];
}

std::int64_t weldVertices(ImportedMesh& mesh, double distance) {
    const auto count = static_cast<std::size_t>(mesh.numVertices());
    std::vector<std::int32_t> target(count);
    Cubes cubes(mesh.positions, distance);
    for (std::size_t v = 0; v < count; ++v) {
        const double* position = mesh.positions.data() + 3 * v;
        // Nothing is near what lies nowhere.
        const bool isSomewhere = std::isfinite(position[0]) && std::isfinite(position[1]) && std::isfinite(position[2]);
        const std::int32_t other = isSomewhere ? cubes.near(v) : kNone;
        target[v] = other == kNone ? static_cast<std::int32_t>(v) : other;
        if (isSomewhere && other == kNone) {
            cubes.add(v);
        }
    }
    return keepTargets(mesh, target);
}

std::int64_t joinEqualVertices(ImportedMesh& mesh) {
    const auto count = static_cast<std::size_t>(mesh.numVertices());
    std::vector<std::int32_t> target(count);
    std::vector<std::int32_t> firstAt;
    std::vector<double> places;
    VertexJoiner joiner(places, count / 2);
    for (std::size_t v = 0; v < count; ++v) {
        const auto place = static_cast<std::size_t>(
            joiner.vertexAt(mesh.positions[3 * v], mesh.positions[3 * v + 1], mesh.positions[3 * v + 2]));
        if (place == firstAt.size()) {
            firstAt.push_back(static_cast<std::int32_t>(v));
        }
        target[v] = firstAt[place];
    }
    return keepTargets(mesh, target);
}

}  // namespace talvek::host
