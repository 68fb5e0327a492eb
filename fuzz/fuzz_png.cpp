// Fuzzes the decoding of pictures for mineral maps, and the bitmaps made of them.
#include <cstdlib>
#include <new>
#include <string>

#include "input_on_disk.h"
#include "talvek/mineral_map/bitmap_file.h"
#include "talvek/mineral_map/picture.h"
#include "talvek/support/exit_status.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    talvek::fuzz::writeInput("input.png", data, size);
    try {
        const talvek::host::Picture picture = talvek::host::decodePicture(bytes, "input.png");
        const std::string bitmap = talvek::host::plainBitmap(picture);
        if (talvek::host::bitmapKindOf(bitmap) != talvek::host::BitmapKind::kPlain ||
            talvek::host::isCutBitmap(bitmap)) {
            std::abort();
        }
        talvek::fuzz::countUse();
    } catch (const talvek::host::Failure&) {
        return 0;
    } catch (const std::bad_alloc&) {
        return 0;
    }
    return 0;
}
