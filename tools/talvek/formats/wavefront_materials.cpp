#include "talvek/formats/wavefront_materials.h"

#include "base/system.h"
#include "talvek/formats/mesh_input.h"
#include "talvek/formats/sibling_file.h"
#include "talvek/formats/text_words.h"

namespace talvek::host {

namespace {

/// The file's name stands behind options, each of which begins with "-" and has numbers or a word behind it.
std::string textureFileOf(TextWords words) {
    if (!words.rest().starts_with('-')) {
        std::string_view name = words.rest();
        while (!name.empty() && isBlank(name.back())) {
            name.remove_suffix(1);
        }
        return std::string(name);
    }
    std::string_view last;
    while (!words.isAtEnd()) {
        last = words.next();
    }
    return std::string(last);
}

}  // namespace

std::int32_t WavefrontMaterials::numberOf(std::string_view name) {
    const auto found = numbers_.find(name);
    if (found != numbers_.end()) {
        return found->second;
    }
    const auto number = static_cast<std::int32_t>(materials_.size());
    materials_.emplace_back().name = name;
    numbers_.emplace(name, number);
    return number;
}

void WavefrontMaterials::readLine(std::string_view line) {
    TextWords words(line);
    const std::string_view keyword = words.next();
    if (keyword == "newmtl") {
        current_ = numberOf(words.rest());
        return;
    }
    if (current_ < 0) {
        return;
    }
    MeshMaterial& material = materials_[static_cast<std::size_t>(current_)];
    double value = 0;
    if (keyword == "Kd") {
        for (std::size_t k = 0; k < 3 && words.nextCoordinate(value); ++k) {
            material.colour[k] = static_cast<float>(value);
        }
    } else if (keyword == "d" && words.nextCoordinate(value)) {
        material.colour[3] = static_cast<float>(value);
    } else if (keyword == "map_Kd") {
        material.textureFile = textureFileOf(words);
    }
}

void WavefrontMaterials::read(const std::string& mesh, std::string_view library) {
    const std::string path = siblingFile(mesh, library);
    if (path.empty() || system::kindOf(path.c_str()) != system::FileKind::kRegular) {
        return;
    }
    current_ = -1;
    MeshInput input(path);
    std::string_view line;
    while (input.nextLine(line)) {
        readLine(line);
    }
}

}  // namespace talvek::host
