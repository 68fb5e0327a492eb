// The two parts of a glTF file: its description and its bytes.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "talvek/formats/mesh_input.h"

namespace talvek::host {

using Json = nlohmann::json;

class GltfFile {
  public:
    /// Reads GLB or glTF, whichever it is by its content, and all files beside it that it names. Throws Failure.
    explicit GltfFile(MeshInput& input);

    const Json& description() const { return description_; }
    const std::string& path() const { return path_; }

    /// An element of one of the description's lists. Throws Failure when there is none of this number.
    const Json& element(const char* list, std::int64_t number) const;
    /// The same by the number that `owner` has under `key`.
    const Json& element(const char* list, const Json& owner, const char* key) const;

    /// The bytes of a buffer view, all of which are there.
    std::string_view bufferView(std::int64_t number) const;

    /// The bytes of the description and of all buffers.
    std::uint64_t size() const;

    [[noreturn]] void fail(const std::string& reason) const;

  private:
    void readChunks(MeshInput& input);
    void parse(std::string_view text);
    void requireKnownExtensions() const;
    void readBuffers();
    std::string bytesOf(const std::string& uri, std::uint64_t size) const;

    std::string path_;
    std::string ownBytes_;
    std::vector<std::string> buffers_;
    Json description_;
    std::size_t descriptionSize_ = 0;
};

/// A whole number, not negative, under a key; `otherwise` where there is none. Throws Failure for what is no such
/// number.
std::int64_t gltfNumber(const GltfFile& file, const Json& owner, const char* key, std::int64_t otherwise);

/// A list under a key; an empty one where there is none. Throws Failure for what is no list.
const Json& gltfList(const GltfFile& file, const Json& owner, const char* key);

}  // namespace talvek::host
