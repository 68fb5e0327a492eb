#include "cli/map_fixtures.h"

#include "support/bitmaps.h"
#include "support/png.h"

namespace talvek::test {

namespace {

constexpr int kSide = 4;

/// White below, grey above; row 0 is the lower one.
Bitmap twoRows() {
    return paintedBitmap(kSide, kSide, [](int, int y) { return y < kSide / 2 ? kWhite : kGrey; });
}

std::string topDown() {
    Bitmap bitmap = paintedBitmap(kSide, kSide, [](int, int y) { return y < kSide / 2 ? kGrey : kWhite; });
    bitmap.height = -kSide;
    return bitmapBytes(bitmap);
}

/// The same byte for all channels of the lower pixels, another one for those of the upper, and what follows each pixel.
std::string lowerAndUpper(std::size_t channels, const std::string& behind, char lower, char upper) {
    std::string pixels;
    for (int pixel = 0; pixel < kSide * kSide; ++pixel) {
        pixels += std::string(channels, pixel < kSide * kSide / 2 ? lower : upper) + behind;
    }
    return pixels;
}

std::string bits32() {
    Bitmap bitmap{.width = kSide, .height = kSide, .bitsPerPixel = 32, .gap = {}, .pixels = {}};
    bitmap.pixels = lowerAndUpper(3, std::string(1, '\0'), '\xFF', '\x80');
    return bitmapBytes(bitmap);
}

/// Black and white, all of it white.
std::string mono() {
    Bitmap bitmap{.width = kSide, .height = kSide, .bitsPerPixel = 1, .gap = {}, .pixels = {}};
    bitmap.pixelOffset = 62;
    bitmap.gap = std::string(4, '\0') + std::string(3, '\xFF') + '\0';
    for (int row = 0; row < kSide; ++row) {
        bitmap.pixels += std::string("\xF0\0\0\0", 4);
    }
    return bitmapBytes(bitmap);
}

std::string eightBits(bool isCompressed) {
    Bitmap bitmap{.width = kSide, .height = kSide, .bitsPerPixel = 8, .gap = {}, .pixels = {}};
    bitmap.pixelOffset = 54 + 1024;
    bitmap.gap = std::string(1024, '\xFF');
    bitmap.pixels = std::string(kSide * kSide, '\xFF');
    std::string bytes = bitmapBytes(bitmap);
    bytes[30] = isCompressed ? 1 : 0;
    return bytes;
}

/// A header of 12 bytes, with sizes of 2 bytes each.
std::string core() {
    const std::string head("BM\x4A\0\0\0\0\0\0\0\x1A\0\0\0\x0C\0\0\0\x04\0\x04\0\x01\0\x18\0", 26);
    return head + lowerAndUpper(3, "", '\xFF', '\x80');
}

/// From the top: grey, then white.
std::string png(const PngHeader& header, const std::string& palette, const std::string& grey,
                const std::string& white) {
    std::string rows;
    for (int row = 0; row < kSide; ++row) {
        rows += '\0';
        for (int column = 0; column < kSide; ++column) {
            rows += row < kSide / 2 ? grey : white;
        }
    }
    return pngBytes(header, palette, rows);
}

std::string withChangedByte(std::string bytes, std::size_t at) {
    bytes[at] = static_cast<char>(bytes[at] ^ 1);
    return bytes;
}

void writeBitmaps(const TempFolder& folder) {
    const std::string rows = bitmapBytes(twoRows());
    const std::string palette = eightBits(false);
    writeFile(folder.file("rows.bmp"), rows);
    writeFile(folder.file("topdown.bmp"), topDown());
    writeFile(folder.file("bits32.bmp"), bits32());
    writeFile(folder.file("core.bmp"), core());
    writeFile(folder.file("cut.bmp"), rows.substr(0, rows.size() - 1));
    writeFile(folder.file("cut8.bmp"), palette.substr(0, palette.size() - 1));
    writeFile(folder.file("rle.bmp"), eightBits(true));
    writeFile(folder.file("top.bmp"), topDown());
    writeFile(folder.file("bits.bmp"), bits32());
    writeFile(folder.file("mono.bmp"), mono());
    writeFile(folder.file("cutmap.bmp"), rows.substr(0, rows.size() - 1));
}

void writePngs(const TempFolder& folder) {
    const std::string grey(3, '\x80');
    const std::string white(3, '\xFF');
    const std::string half = readFile(folder.file("half.png"));
    writeFile(folder.file("alpha.png"), png({kSide, kSide, 8, 6}, "", grey + '\0', white + '\0'));
    writeFile(folder.file("palette.png"), png({kSide, kSide, 8, 3}, grey + white, std::string(1, '\0'), "\x01"));
    writeFile(folder.file("deep.png"), png({kSide, kSide, 16, 2}, "", grey + grey, white + white));
    writeFile(folder.file("huge.png"), png({65536, 65536, 8, 2}, "", grey, white));
    writeFile(folder.file("cut.png"), half.substr(0, half.size() - 20));
    writeFile(folder.file("crc.png"), withChangedByte(half, 50));
    writeFile(folder.file("pngmap.bmp"), half);
}

}  // namespace

void writeMapFixtures(const TempFolder& folder) {
    writeBitmaps(folder);
    writePngs(folder);
    writeFile(folder.file("photo.jpg"), "\xFF\xD8\xFF\xE0");
    std::filesystem::create_directory(folder.file("folder.bmp"));
    for (const char* name : {"top.obj", "bits.obj", "mono.obj", "cutmap.obj", "pngmap.obj", "folder.obj"}) {
        std::filesystem::copy_file(folder.file("textured.obj"), folder.file(name));
    }
}

}  // namespace talvek::test
