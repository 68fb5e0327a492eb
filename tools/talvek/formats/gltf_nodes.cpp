#include "talvek/formats/gltf_nodes.h"

#include <algorithm>

namespace talvek::host {

namespace {

template <std::size_t N>
std::array<double, N> numbersOf(const GltfFile& file, const Json& node, const char* key,
                                std::array<double, N> numbers) {
    if (!node.contains(key)) {
        return numbers;
    }
    const Json& list = gltfList(file, node, key);
    if (list.size() != N) {
        file.fail(std::string("a node's ") + key + " has not " + std::to_string(N) + " numbers");
    }
    for (std::size_t i = 0; i < N; ++i) {
        if (!list[i].is_number()) {
            file.fail(std::string("a node's ") + key + " has something else than numbers");
        }
        numbers[i] = list[i].get<double>();
    }
    return numbers;
}

GltfTransform transformOf(const GltfFile& file, const Json& node) {
    if (node.contains("matrix")) {
        const auto m = numbersOf<16>(file, node, "matrix", {});
        return {{m[0], m[1], m[2], m[4], m[5], m[6], m[8], m[9], m[10], m[12], m[13], m[14]}};
    }
    const auto t = numbersOf<3>(file, node, "translation", {0, 0, 0});
    const auto [x, y, z, w] = numbersOf<4>(file, node, "rotation", {0, 0, 0, 1});
    const auto s = numbersOf<3>(file, node, "scale", {1, 1, 1});
    return {{(1 - 2 * (y * y + z * z)) * s[0], 2 * (x * y + z * w) * s[0], 2 * (x * z - y * w) * s[0],
             2 * (x * y - z * w) * s[1], (1 - 2 * (x * x + z * z)) * s[1], 2 * (y * z + x * w) * s[1],
             2 * (x * z + y * w) * s[2], 2 * (y * z - x * w) * s[2], (1 - 2 * (x * x + y * y)) * s[2], t[0], t[1],
             t[2]}};
}

class Scene {
  public:
    explicit Scene(const GltfFile& file)
        : file_(file), isOnTheWay_(gltfList(file, file.description(), "nodes").size()) {}

    std::vector<GltfInstance> instances() {
        const Json& description = file_.description();
        if (gltfList(file_, description, "scenes").empty()) {
            addRoots();
        } else {
            const Json& scene = file_.element("scenes", gltfNumber(file_, description, "scene", 0));
            addAll(gltfList(file_, scene, "nodes"), {});
        }
        return std::move(instances_);
    }

  private:
    /// Without a scene, all nodes that are no other one's.
    void addRoots() {
        std::vector<bool> isChild(isOnTheWay_.size());
        for (const Json& node : gltfList(file_, file_.description(), "nodes")) {
            for (const Json& child : gltfList(file_, node, "children")) {
                isChild[numberOf(child)] = true;
            }
        }
        for (std::size_t i = 0; i < isChild.size(); ++i) {
            if (!isChild[i]) {
                add(i, {});
            }
        }
    }

    void addAll(const Json& numbers, const GltfTransform& outer) {
        for (const Json& number : numbers) {
            add(numberOf(number), outer);
        }
    }

    std::size_t numberOf(const Json& number) const {
        if (!number.is_number_unsigned() || number.get<std::uint64_t>() >= isOnTheWay_.size()) {
            file_.fail("a node that is not there is named");
        }
        return number.get<std::size_t>();
    }

    void add(std::size_t number, const GltfTransform& outer) {
        // Every node has one parent, so that none is met twice; a file in which one is would have no end of them.
        constexpr int kDeepest = 1000;
        if (isOnTheWay_[number] || ++depth_ > kDeepest) {
            file_.fail("a node is within itself or in several others");
        }
        isOnTheWay_[number] = true;
        const Json& node = file_.element("nodes", static_cast<std::int64_t>(number));
        const GltfTransform transform = outer.after(transformOf(file_, node));
        if (node.contains("mesh")) {
            instances_.push_back({.mesh = gltfNumber(file_, node, "mesh", 0), .transform = transform});
        }
        addAll(gltfList(file_, node, "children"), transform);
        --depth_;
    }

    const GltfFile& file_;
    std::vector<bool> isOnTheWay_;
    std::vector<GltfInstance> instances_;
    int depth_ = 0;
};

}  // namespace

std::array<double, 3> GltfTransform::apply(const std::array<double, 3>& p) const {
    std::array<double, 3> moved{};
    for (std::size_t k = 0; k < 3; ++k) {
        moved[k] = columns[k] * p[0] + columns[3 + k] * p[1] + columns[6 + k] * p[2] + columns[9 + k];
    }
    return moved;
}

GltfTransform GltfTransform::after(const GltfTransform& inner) const {
    GltfTransform linear = *this;
    std::fill(linear.columns.begin() + 9, linear.columns.end(), 0.0);
    GltfTransform both;
    for (std::size_t c = 0; c < 4; ++c) {
        // Directions are turned but not moved.
        const GltfTransform& map = c == 3 ? *this : linear;
        const std::array<double, 3> column =
            map.apply({inner.columns[3 * c], inner.columns[3 * c + 1], inner.columns[3 * c + 2]});
        std::copy(column.begin(), column.end(), both.columns.begin() + static_cast<std::ptrdiff_t>(3 * c));
    }
    return both;
}

bool GltfTransform::isMirror() const {
    const auto& m = columns;
    return m[0] * (m[4] * m[8] - m[5] * m[7]) - m[3] * (m[1] * m[8] - m[2] * m[7]) +
               m[6] * (m[1] * m[5] - m[2] * m[4]) <
           0;
}

std::vector<GltfInstance> gltfInstances(const GltfFile& file) {
    return Scene(file).instances();
}

}  // namespace talvek::host
