#include "talvek/formats/gltf_accessor.h"

#include <algorithm>
#include <cstring>

#include "base/little_endian.h"

namespace talvek::host {

namespace {

enum ComponentType : std::int64_t {
    kByte = 5120,
    kUnsignedByte = 5121,
    kShort = 5122,
    kUnsignedShort = 5123,
    kUnsignedInt = 5125,
    kFloat = 5126,
};

std::size_t sizeOf(std::int64_t componentType) {
    switch (componentType) {
        case kByte:
        case kUnsignedByte:
            return 1;
        case kShort:
        case kUnsignedShort:
            return 2;
        case kUnsignedInt:
        case kFloat:
            return 4;
        default:
            return 0;
    }
}

std::uint16_t shortAt(const char* bytes) {
    return static_cast<std::uint16_t>(static_cast<unsigned char>(bytes[0]) | static_cast<unsigned char>(bytes[1]) << 8);
}

}  // namespace

GltfAccessor::GltfAccessor(const GltfFile& file, std::int64_t number, std::initializer_list<std::string_view> types) {
    const Json& accessor = file.element("accessors", number);
    const std::string name = "accessor " + std::to_string(number);
    const Json type = accessor.value("type", Json());
    const std::string typeName = type.is_string() ? type.get<std::string>() : "";
    componentType_ = gltfNumber(file, accessor, "componentType", 0);
    count_ = gltfNumber(file, accessor, "count", 0);
    isNormalised_ = accessor.value("normalized", Json()) == true;
    if (std::ranges::find(types, typeName) == types.end() || sizeOf(componentType_) == 0) {
        file.fail(name + " is not of the type that belongs in its place");
    }
    if (accessor.contains("sparse")) {
        file.fail(name + " is a sparse one, which is not read; export the mesh without sparse accessors");
    }
    numComponents_ = typeName == "SCALAR" ? 1 : static_cast<std::size_t>(typeName.back() - '0');
    const std::size_t size = numComponents_ * sizeOf(componentType_);
    stride_ = size;
    if (!accessor.contains("bufferView")) {
        file.fail(name + " has no bytes");
    }
    const std::int64_t view = gltfNumber(file, accessor, "bufferView", -1);
    bytes_ = file.bufferView(view);
    const auto stride = static_cast<std::size_t>(gltfNumber(file, file.element("bufferViews", view), "byteStride", 0));
    stride_ = stride == 0 ? size : stride;
    const auto offset = static_cast<std::size_t>(gltfNumber(file, accessor, "byteOffset", 0));
    // The last element need not be followed by what separates it from the next.
    const bool isInside =
        offset <= bytes_.size() && stride_ >= size &&
        (count_ == 0 || (bytes_.size() - offset >= size &&
                         static_cast<std::uint64_t>(count_ - 1) <= (bytes_.size() - offset - size) / stride_));
    if (!isInside) {
        file.fail(name + " lies beyond its bytes; the file is damaged");
    }
    bytes_.remove_prefix(offset);
}

bool GltfAccessor::isIndex() const {
    return componentType_ == kUnsignedByte || componentType_ == kUnsignedShort || componentType_ == kUnsignedInt;
}

double GltfAccessor::plain(std::int64_t element, std::size_t component) const {
    const char* at = bytes_.data() + static_cast<std::size_t>(element) * stride_ + component * sizeOf(componentType_);
    switch (componentType_) {
        case kByte:
            return static_cast<signed char>(*at);
        case kUnsignedByte:
            return static_cast<unsigned char>(*at);
        case kShort:
            return static_cast<std::int16_t>(shortAt(at));
        case kUnsignedShort:
            return shortAt(at);
        case kUnsignedInt:
            return fromLittleEndian<std::uint32_t>(at);
        default:
            return static_cast<double>(fromLittleEndian<float>(at));
    }
}

double GltfAccessor::value(std::int64_t element, std::size_t component) const {
    const double value = plain(element, component);
    if (!isNormalised_) {
        return value;
    }
    constexpr double kBytes = 255;
    constexpr double kShorts = 65535;
    switch (componentType_) {
        case kByte:
            return std::max(value / (kBytes / 2 - 0.5), -1.0);
        case kUnsignedByte:
            return value / kBytes;
        case kShort:
            return std::max(value / (kShorts / 2 - 0.5), -1.0);
        case kUnsignedShort:
            return value / kShorts;
        default:
            return value;
    }
}

}  // namespace talvek::host
