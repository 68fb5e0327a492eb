// The head of a PLY file: what its elements are called and consist of.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "talvek/formats/mesh_input.h"

namespace talvek::host {

enum class PlyType : std::uint8_t { kInt8, kUint8, kInt16, kUint16, kInt32, kUint32, kFloat32, kFloat64 };

/// In a binary file.
std::size_t sizeOf(PlyType type);

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

    /// The place of a property that has one of these names and is a list or not, -1 when there is none.
    int find(std::initializer_list<std::string_view> names, bool isList) const;
};

enum class PlyEncoding : std::uint8_t { kText, kLittleEndian, kBigEndian };

struct PlyHeader {
    PlyEncoding encoding = PlyEncoding::kText;
    std::vector<PlyElement> elements;
    /// The pictures that comments name, in the order in which faces count them.
    std::vector<std::string> textureFiles;
};

/// Reads the lines up to and with "end_header". Throws Failure for what is no PLY file.
PlyHeader readPlyHeader(MeshInput& input);

}  // namespace talvek::host
