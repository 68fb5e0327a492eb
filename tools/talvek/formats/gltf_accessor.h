// Numbers in the bytes of a glTF file.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "talvek/formats/gltf_file.h"

namespace talvek::host {

/// A list of vectors or single numbers. Every element that it counts is there.
class GltfAccessor {
  public:
    /// Throws Failure when its elements lie beyond their bytes, when it has not as many components as are wanted, or
    /// when it is a sparse one.
    GltfAccessor(const GltfFile& file, std::int64_t number, std::initializer_list<std::string_view> types);

    std::int64_t count() const { return count_; }
    std::size_t numComponents() const { return numComponents_; }

    /// With normalised whole numbers as what they stand for.
    double value(std::int64_t element, std::size_t component) const;
    /// A whole number, as an index is.
    std::uint32_t index(std::int64_t element) const { return static_cast<std::uint32_t>(plain(element, 0)); }
    bool isIndex() const;

  private:
    double plain(std::int64_t element, std::size_t component) const;

    /// Empty for one without bytes, whose elements are all 0.
    std::string_view bytes_;
    std::int64_t count_ = 0;
    std::int64_t componentType_ = 0;
    std::size_t numComponents_ = 1;
    std::size_t stride_ = 0;
    bool isNormalised_ = false;
};

}  // namespace talvek::host
