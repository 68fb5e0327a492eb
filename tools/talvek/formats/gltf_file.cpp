// The layout is that of the glTF 2.0 specification (Khronos Group, 2021), section 4 for GLB.
#include "talvek/formats/gltf_file.h"

#include <algorithm>
#include <array>

#include "base/little_endian.h"
#include "base/system.h"
#include "talvek/formats/sibling_file.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/whole_file.h"

namespace talvek::host {

namespace {

constexpr std::string_view kMagic = "glTF";
constexpr std::size_t kHeadSize = 12;
constexpr std::size_t kChunkHeadSize = 8;
constexpr std::uint32_t kVersion = 2;
constexpr std::uint32_t kJsonChunk = 0x4E4F534A;
constexpr std::uint32_t kBytesChunk = 0x004E4942;

/// What a file may require and is read all the same: nothing of it changes where a triangle lies.
constexpr std::string_view kHarmlessExtensions[] = {"KHR_mesh_quantization", "KHR_lights_punctual",
                                                    "KHR_texture_basisu", "EXT_texture_webp", "KHR_xmp_json_ld"};

std::string takeAll(MeshInput& input) {
    std::string bytes;
    for (std::string_view ahead = input.ahead(1); !ahead.empty(); ahead = input.ahead(1)) {
        bytes.append(ahead);
        input.pass(ahead.size());
    }
    return bytes;
}

int sextetOf(char c) {
    constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::size_t at = kDigits.find(c);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

/// RFC 4648, section 4. Ends at the first character that is none of it.
std::string fromBase64(std::string_view text) {
    std::string bytes;
    std::uint32_t bits = 0;
    int count = 0;
    for (const char c : text) {
        const int sextet = sextetOf(c);
        if (sextet < 0) {
            break;
        }
        bits = bits << 6 | static_cast<std::uint32_t>(sextet);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 0xFF);
        }
    }
    return bytes;
}

/// "a%20b" is "a b".
std::string withoutEscapes(std::string_view uri) {
    const auto hex = [](char c) {
        constexpr std::string_view kDigits = "0123456789abcdef";
        return kDigits.find(static_cast<char>(c >= 'A' && c <= 'F' ? c - 'A' + 'a' : c));
    };
    std::string text;
    for (std::size_t i = 0; i < uri.size(); ++i) {
        const bool isEscape = uri[i] == '%' && i + 2 < uri.size() && hex(uri[i + 1]) < 16 && hex(uri[i + 2]) < 16;
        text += isEscape ? static_cast<char>(16 * hex(uri[i + 1]) + hex(uri[i + 2])) : uri[i];
        i += isEscape ? 2 : 0;
    }
    return text;
}

}  // namespace

GltfFile::GltfFile(MeshInput& input) : path_(input.path()) {
    if (input.ahead(kMagic.size()).starts_with(kMagic)) {
        readChunks(input);
    } else {
        parse(takeAll(input));
    }
    const Json& asset = description_.contains("asset") ? description_["asset"] : Json();
    const std::string version =
        asset.is_object() ? asset.value("version", Json()).is_string() ? asset["version"] : "" : "";
    if (!version.starts_with("2.")) {
        fail(version.empty() ? "this is no glTF file" : "glTF of version " + version + " is not read, 2.0 is");
    }
    requireKnownExtensions();
    readBuffers();
}

std::uint64_t GltfFile::size() const {
    std::uint64_t size = descriptionSize_;
    for (const std::string& buffer : buffers_) {
        size += buffer.size();
    }
    return size;
}

void GltfFile::fail(const std::string& reason) const {
    throw Failure(kExitMesh, path_ + ": " + reason);
}

void GltfFile::readChunks(MeshInput& input) {
    const std::string_view head = input.ahead(kHeadSize);
    if (head.size() < kHeadSize || fromLittleEndian<std::uint32_t>(head.data() + kMagic.size()) != kVersion) {
        fail("this is no GLB file of version 2");
    }
    input.pass(kHeadSize);
    for (std::string_view ahead = input.ahead(kChunkHeadSize); ahead.size() >= kChunkHeadSize;
         ahead = input.ahead(kChunkHeadSize)) {
        const auto size = fromLittleEndian<std::uint32_t>(ahead.data());
        const auto kind = fromLittleEndian<std::uint32_t>(ahead.data() + sizeof size);
        input.pass(kChunkHeadSize);
        const std::string_view chunk = input.ahead(size);
        if (chunk.size() < size) {
            input.failAtByte("the file is too short for a part of " + std::to_string(size) + " bytes");
        }
        if (kind == kJsonChunk && description_.is_null()) {
            parse(chunk.substr(0, size));
        } else if (kind == kBytesChunk && ownBytes_.empty()) {
            ownBytes_ = chunk.substr(0, size);
        }
        input.pass(size);
    }
    if (description_.is_null()) {
        fail("the GLB file has no description");
    }
}

void GltfFile::parse(std::string_view text) {
    descriptionSize_ = text.size();
    // What no exporter nests as deep would make this program's own stack the limit.
    constexpr int kDeepest = 64;
    const auto isShallow = [this](int depth, Json::parse_event_t /*event*/, const Json& /*parsed*/) {
        if (depth > kDeepest) {
            fail("the description is nested too deep to be one");
        }
        return true;
    };
    try {
        description_ = Json::parse(text, isShallow);
    } catch (const Json::exception&) {
        fail("the description is no JSON; the file is damaged or of another format");
    }
    if (!description_.is_object()) {
        fail("this is no glTF file");
    }
}

void GltfFile::requireKnownExtensions() const {
    for (const Json& extension : gltfList(*this, description_, "extensionsRequired")) {
        const std::string name = extension.is_string() ? extension.get<std::string>() : "";
        if (name == "KHR_draco_mesh_compression") {
            fail("the mesh is compressed with Draco, which is not read; export it without compression");
        }
        const bool isHarmless = name.starts_with("KHR_materials_") ||
                                std::ranges::find(kHarmlessExtensions, name) != std::end(kHarmlessExtensions);
        if (!isHarmless) {
            fail("the file requires " + name.substr(0, 60) + ", which is not read; export it without");
        }
    }
}

void GltfFile::readBuffers() {
    for (const Json& buffer : gltfList(*this, description_, "buffers")) {
        const std::int64_t size = gltfNumber(*this, buffer, "byteLength", 0);
        const Json uri = buffer.is_object() ? buffer.value("uri", Json()) : Json();
        std::string bytes = uri.is_string()
                                ? bytesOf(uri.get_ref<const std::string&>(), static_cast<std::uint64_t>(size))
                            : buffers_.empty() ? std::exchange(ownBytes_, {})
                                               : "";
        if (bytes.size() < static_cast<std::uint64_t>(size)) {
            fail("buffer " + std::to_string(buffers_.size()) + " has " + std::to_string(bytes.size()) + " bytes of " +
                 std::to_string(size) + "; the file is cut short");
        }
        buffers_.push_back(std::move(bytes));
    }
}

std::string GltfFile::bytesOf(const std::string& uri, std::uint64_t size) const {
    if (uri.starts_with("data:")) {
        const std::size_t comma = uri.find(";base64,");
        if (comma == std::string::npos) {
            fail("a buffer within the file is not coded as base64");
        }
        return fromBase64(std::string_view(uri).substr(comma + 8));
    }
    const std::string path = siblingFile(path_, withoutEscapes(uri));
    if (path.empty()) {
        fail("the buffer " + uri.substr(0, 60) + " is not beside the file; only files in its folder are read");
    }
    if (system::kindOf(path.c_str()) != system::FileKind::kRegular) {
        fail("there is no file " + path + ", in which the mesh's numbers are");
    }
    return readBeginning(path, size, kExitMesh);
}

const Json& GltfFile::element(const char* list, std::int64_t number) const {
    const Json& all = gltfList(*this, description_, list);
    if (number < 0 || static_cast<std::uint64_t>(number) >= all.size() ||
        !all[static_cast<std::size_t>(number)].is_object()) {
        fail("there is no element " + std::to_string(number) + " of " + list);
    }
    return all[static_cast<std::size_t>(number)];
}

const Json& GltfFile::element(const char* list, const Json& owner, const char* key) const {
    return element(list, gltfNumber(*this, owner, key, -1));
}

std::string_view GltfFile::bufferView(std::int64_t number) const {
    const Json& view = element("bufferViews", number);
    const std::int64_t buffer = gltfNumber(*this, view, "buffer", -1);
    const std::int64_t offset = gltfNumber(*this, view, "byteOffset", 0);
    const std::int64_t size = gltfNumber(*this, view, "byteLength", 0);
    if (buffer < 0 || static_cast<std::uint64_t>(buffer) >= buffers_.size()) {
        fail("there is no buffer " + std::to_string(buffer));
    }
    const std::string& bytes = buffers_[static_cast<std::size_t>(buffer)];
    if (static_cast<std::uint64_t>(offset) > bytes.size() ||
        static_cast<std::uint64_t>(size) > bytes.size() - static_cast<std::uint64_t>(offset)) {
        fail("buffer view " + std::to_string(number) + " lies beyond its buffer");
    }
    return std::string_view(bytes).substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(size));
}

std::int64_t gltfNumber(const GltfFile& file, const Json& owner, const char* key, std::int64_t otherwise) {
    if (!owner.is_object() || !owner.contains(key)) {
        return otherwise;
    }
    const Json& number = owner[key];
    constexpr std::uint64_t kMost = std::uint64_t{1} << 48;
    if (!number.is_number_unsigned() || number.get<std::uint64_t>() > kMost) {
        file.fail(std::string(key) + " is no whole number");
    }
    return number.get<std::int64_t>();
}

const Json& gltfList(const GltfFile& file, const Json& owner, const char* key) {
    static const Json kNone = Json::array();
    if (!owner.is_object() || !owner.contains(key)) {
        return kNone;
    }
    if (!owner[key].is_array()) {
        file.fail(std::string(key) + " is no list");
    }
    return owner[key];
}

}  // namespace talvek::host
