// The head of a PLY file: what its elements are called and consist of.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace talvek::host {

enum class PlyType : std::uint8_t { kInt8, kUint8, kInt16, kUint16, kInt32, kUint32, kFloat32, kFloat64 };

struct PlyProperty {
    std::string name;
    PlyType type = PlyType::kFloat32;
    /// The type of a list's length.
    PlyType countType = PlyType::kUint8;
    bool isList = false;
};

struct PlyElement {
    std::string name;
    std::int64_t count = 0;
    std::vector<PlyProperty> properties;

    /// The place of a property that has one of these names, -1 when there is none.
    int find(std::initializer_list<std::string_view> names) const;
};

struct PlyHeader {
    bool isBinary = false;
    std::vector<PlyElement> elements;
};

/// Reads the lines up to and with "end_header" and moves `rest` behind them. Throws Failure, its message beginning with
/// `path`, for what is no PLY file or of a kind that is not read.
PlyHeader readPlyHeader(std::string_view& rest, const std::string& path);

}  // namespace talvek::host
