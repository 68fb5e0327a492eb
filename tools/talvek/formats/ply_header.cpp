#include "talvek/formats/ply_header.h"

#include <algorithm>
#include <charconv>
#include <sstream>

namespace talvek::host {

namespace {

struct TypeName {
    std::string_view name;
    PlyType type;
};

constexpr TypeName kTypeNames[] = {
    {"char", PlyType::kInt8},      {"int8", PlyType::kInt8},       {"uchar", PlyType::kUint8},
    {"uint8", PlyType::kUint8},    {"short", PlyType::kInt16},     {"int16", PlyType::kInt16},
    {"ushort", PlyType::kUint16},  {"uint16", PlyType::kUint16},   {"int", PlyType::kInt32},
    {"int32", PlyType::kInt32},    {"uint", PlyType::kUint32},     {"uint32", PlyType::kUint32},
    {"float", PlyType::kFloat32},  {"float32", PlyType::kFloat32}, {"double", PlyType::kFloat64},
    {"float64", PlyType::kFloat64}};

struct EncodingName {
    std::string_view name;
    PlyEncoding encoding;
};

constexpr EncodingName kEncodingNames[] = {{"ascii", PlyEncoding::kText},
                                           {"binary_little_endian", PlyEncoding::kLittleEndian},
                                           {"binary_big_endian", PlyEncoding::kBigEndian}};

/// A head of more lines is none.
constexpr std::int64_t kMostLines = 10000;

class HeaderReader {
  public:
    explicit HeaderReader(MeshInput& input) : input_(input) {}

    PlyHeader read() {
        if (nextLine() != "ply") {
            input_.failAtLine("this is no PLY file");
        }
        for (std::string line = nextLine(); line != "end_header"; line = nextLine()) {
            readStatement(line);
        }
        return std::move(header_);
    }

  private:
    std::string nextLine() {
        // A file of bytes may have no line end for a long way.
        constexpr std::size_t kLongestLine = 65536;
        const std::string_view ahead = input_.ahead(kLongestLine);
        std::string_view line;
        const bool hasEnd = ahead.find('\n') != std::string_view::npos;
        if (!hasEnd || input_.lineNumber() == kMostLines || !input_.nextLine(line)) {
            input_.failAtLine(input_.lineNumber() == 0 ? "this is no PLY file" : "the file ends within its head");
        }
        return std::string(line);
    }

    void readStatement(const std::string& line) {
        std::istringstream words(line);
        std::string keyword;
        words >> keyword;
        if (keyword == "format") {
            readFormat(words);
        } else if (keyword == "element") {
            readElement(words);
        } else if (keyword == "property") {
            readProperty(words);
        } else if (keyword == "comment") {
            readComment(words);
        }
    }

    void readFormat(std::istringstream& words) {
        std::string format;
        words >> format;
        const auto* const found = std::ranges::find(kEncodingNames, format, &EncodingName::name);
        if (found == std::end(kEncodingNames)) {
            input_.failAtLine("the format " + format + " is not read; text and binary are");
        }
        header_.encoding = found->encoding;
    }

    void readElement(std::istringstream& words) {
        PlyElement& element = header_.elements.emplace_back();
        std::string count;
        words >> element.name >> count;
        const auto [end, error] = std::from_chars(count.data(), count.data() + count.size(), element.count);
        if (error != std::errc() || end != count.data() + count.size() || element.count < 0) {
            input_.failAtLine("an element without a count");
        }
    }

    void readProperty(std::istringstream& words) {
        if (header_.elements.empty()) {
            input_.failAtLine("a property before the first element");
        }
        PlyProperty& property = header_.elements.back().properties.emplace_back();
        std::string type;
        words >> type;
        property.isList = type == "list";
        if (property.isList) {
            words >> type;
            property.countType = typeOf(type);
            words >> type;
        }
        property.type = typeOf(type);
        words >> property.name;
    }

    /// As MeshLab and others name the pictures.
    void readComment(std::istringstream& words) {
        std::string keyword;
        words >> keyword >> std::ws;
        if (keyword == "TextureFile") {
            std::getline(words, header_.textureFiles.emplace_back());
        }
    }

    PlyType typeOf(const std::string& name) const {
        const auto* const found = std::ranges::find(kTypeNames, name, &TypeName::name);
        if (found == std::end(kTypeNames)) {
            input_.failAtLine("a property of unknown type " + name);
        }
        return found->type;
    }

    MeshInput& input_;
    PlyHeader header_;
};

}  // namespace

std::size_t sizeOf(PlyType type) {
    switch (type) {
        case PlyType::kInt8:
        case PlyType::kUint8:
            return 1;
        case PlyType::kInt16:
        case PlyType::kUint16:
            return 2;
        case PlyType::kFloat64:
            return 8;
        default:
            return 4;
    }
}

int PlyElement::find(std::initializer_list<std::string_view> names, bool isList) const {
    for (std::size_t i = 0; i < properties.size(); ++i) {
        if (properties[i].isList == isList && std::ranges::find(names, properties[i].name) != names.end()) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

PlyHeader readPlyHeader(MeshInput& input) {
    return HeaderReader(input).read();
}

}  // namespace talvek::host
