#include "talvek/formats/ply_header.h"

#include <algorithm>
#include <charconv>
#include <sstream>

#include "talvek/support/exit_status.h"

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

class HeaderReader {
  public:
    HeaderReader(std::string_view& rest, const std::string& path) : rest_(rest), path_(path) {}

    PlyHeader read() {
        if (nextLine() != "ply") {
            fail("this is no PLY file");
        }
        for (std::string line = nextLine(); line != "end_header"; line = nextLine()) {
            readStatement(line);
        }
        return header_;
    }

  private:
    [[noreturn]] void fail(const std::string& reason) const {
        throw Failure(kExitMesh, path_ + ": line " + std::to_string(lineNumber_) + ": " + reason);
    }

    std::string nextLine() {
        ++lineNumber_;
        const std::size_t end = rest_.find('\n');
        if (end == std::string_view::npos) {
            fail("the file ends within its head");
        }
        std::string line(rest_.substr(0, end));
        rest_.remove_prefix(end + 1);
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        return line;
    }

    void readStatement(const std::string& line) {
        std::istringstream words(line);
        std::string keyword;
        words >> keyword;
        if (keyword == "format") {
            readFormat(words);
        } else if (keyword == "element") {
            PlyElement& element = header_.elements.emplace_back();
            std::string count;
            words >> element.name >> count;
            const auto [end, error] = std::from_chars(count.data(), count.data() + count.size(), element.count);
            if (error != std::errc() || end != count.data() + count.size() || element.count < 0) {
                fail("an element without a count");
            }
        } else if (keyword == "property") {
            readProperty(words);
        }
    }

    void readFormat(std::istringstream& words) {
        std::string format;
        words >> format;
        if (format != "ascii" && format != "binary_little_endian") {
            fail("the format " + format + " is not read; text and little-endian binary are");
        }
        header_.isBinary = format != "ascii";
    }

    void readProperty(std::istringstream& words) {
        if (header_.elements.empty()) {
            fail("a property before the first element");
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

    PlyType typeOf(const std::string& name) const {
        const auto* const found = std::ranges::find(kTypeNames, name, &TypeName::name);
        if (found == std::end(kTypeNames)) {
            fail("a property of unknown type " + name);
        }
        return found->type;
    }

    std::string_view& rest_;
    const std::string& path_;
    PlyHeader header_;
    int lineNumber_ = 0;
};

}  // namespace

int PlyElement::find(std::initializer_list<std::string_view> names) const {
    for (std::size_t i = 0; i < properties.size(); ++i) {
        if (std::ranges::find(names, properties[i].name) != names.end()) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

PlyHeader readPlyHeader(std::string_view& rest, const std::string& path) {
    return HeaderReader(rest, path).read();
}

}  // namespace talvek::host
