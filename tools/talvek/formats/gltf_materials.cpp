#include "talvek/formats/gltf_materials.h"

namespace talvek::host {

namespace {

std::string textOf(const Json& owner, const char* key) {
    const Json text = owner.value(key, Json());
    return text.is_string() ? text.get<std::string>() : "";
}

void addPicture(const GltfFile& file, const Json& texture, MeshMaterial& material) {
    if (!texture.contains("source")) {
        return;
    }
    const Json& image = file.element("images", texture, "source");
    material.textureKind = textOf(image, "mimeType");
    if (image.contains("bufferView")) {
        material.textureBytes = file.bufferView(gltfNumber(file, image, "bufferView", -1));
    } else {
        // A picture within the text stays there, as a name that holds it.
        material.textureFile = textOf(image, "uri");
    }
}

}  // namespace

std::vector<MeshMaterial> gltfMaterials(const GltfFile& file) {
    std::vector<MeshMaterial> materials;
    for (std::size_t i = 0; i < gltfList(file, file.description(), "materials").size(); ++i) {
        const Json& described = file.element("materials", static_cast<std::int64_t>(i));
        MeshMaterial& material = materials.emplace_back();
        material.name = textOf(described, "name");
        const Json surface = described.value("pbrMetallicRoughness", Json::object());
        const Json& colour = gltfList(file, surface, "baseColorFactor");
        for (std::size_t k = 0; k < material.colour.size() && k < colour.size() && colour[k].is_number(); ++k) {
            material.colour[k] = colour[k].get<float>();
        }
        const Json picture = surface.is_object() ? surface.value("baseColorTexture", Json()) : Json();
        if (picture.is_object()) {
            addPicture(file, file.element("textures", picture, "index"), material);
        }
    }
    return materials;
}

}  // namespace talvek::host
