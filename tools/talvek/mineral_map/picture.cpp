#include "talvek/mineral_map/picture.h"

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>

#include "talvek/mineral_map/bitmap_file.h"
#include "talvek/mineral_map/png_check.h"
#include "talvek/mineral_map/stb_settings.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

using Pixels = std::unique_ptr<stbi_uc, void (*)(void*)>;

/// What would be decoded into something else than was drawn, or not at all.
void requireIntactPicture(std::string_view bytes, const std::string& name) {
    const bool isBitmap = bitmapKindOf(bytes) != BitmapKind::kNone;
    if (!isBitmap && !isPng(bytes)) {
        throw Failure(kExitRefused, name + ": only PNG and BMP are read; save the map as PNG (JPEG changes colours)");
    }
    if (isBitmap ? isCutBitmap(bytes) : !isIntactPng(bytes)) {
        throw Failure(kExitRefused,
                      name + ": the " + (isBitmap ? "bitmap" : "PNG") + " is damaged or cut short; export it again");
    }
}

[[noreturn]] void refuseTooLarge(const std::string& name) {
    throw Failure(kExitRefused, name + ": the picture is too large to be converted; scale the map down");
}

[[noreturn]] void refuseUndecoded(std::string_view bytes, const std::string& name) {
    const char* reported = stbi_failure_reason();
    const std::string_view reason = reported != nullptr ? reported : "";
    if (reason == "too large" || reason == "outofmem") {
        refuseTooLarge(name);
    }
    throw Failure(kExitRefused, name + (isPng(bytes) ? ": the PNG is damaged or cut short; export it again"
                                                     : ": this kind of bitmap is not read; save the map as PNG"));
}

/// A drawn map shrinks to a hundredth. What expands a thousandfold is blank, and would fill memory and disk from a
/// small file.
void requireProportion(std::string_view bytes, const std::string& name) {
    constexpr std::uint64_t kLargestExpansion = 1000;
    constexpr std::uint64_t kFreeSize = 32 << 20;
    int width = 0;
    int height = 0;
    int channels = 0;
    const bool isKnown = stbi_info_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()),
                                               static_cast<int>(bytes.size()), &width, &height, &channels) != 0;
    const std::uint64_t size =
        kColours * static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(std::abs(height));
    if (isKnown && size > kFreeSize + kLargestExpansion * bytes.size()) {
        throw Failure(kExitRefused, name + ": a picture of " + std::to_string(width) + " x " + std::to_string(height) +
                                        " pixels in " + std::to_string(bytes.size()) +
                                        " bytes is blank; if it is a map, scale it down");
    }
}

}  // namespace

Picture decodePicture(std::string_view bytes, const std::string& name) {
    requireIntactPicture(bytes, name);
    if (bytes.size() > std::numeric_limits<int>::max()) {
        refuseTooLarge(name);
    }
    requireProportion(bytes, name);
    Picture picture;
    int channels = 0;
    const Pixels pixels(
        stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()), static_cast<int>(bytes.size()),
                              &picture.width, &picture.height, &channels, static_cast<int>(kColours)),
        stbi_image_free);
    if (pixels == nullptr) {
        refuseUndecoded(bytes, name);
    }
    const std::size_t count =
        kColours * static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    picture.colours.assign(pixels.get(), pixels.get() + count);
    return picture;
}

}  // namespace talvek::host
