#include "cli/fixtures.h"

#include "cli/config_fixtures.h"
#include "cli/map_fixtures.h"
#include "support/mesh_file_writers.h"
#include "support/meshes.h"

namespace talvek::test {

namespace {

constexpr const char* kPlaneTexels = "vt 0.25 0.25\nvt 0.75 0.25\nvt 0.25 0.75\nvt 0.75 0.75\n";

/// Two triangles that fill a quarter of texture space.
std::string texturedPlane(bool isClockwise) {
    const std::string vertices = "v 0 0 0\nv 10 0 0\nv 0 10 0\nv 10 10 0\n";
    const std::string faces = isClockwise ? "f 1/1 4/4 2/2\nf 1/1 3/3 4/4\n" : "f 1/1 2/2 4/4\nf 1/1 4/4 3/3\n";
    return vertices + kPlaneTexels + faces;
}

void appendLittleEndian(std::string& bytes, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

constexpr std::uint32_t kSide = 4;
constexpr std::uint32_t kHeader = 54;

std::string bitmapHeaders(std::uint32_t pixelsAt, std::uint32_t bitsPerPixel) {
    const std::uint32_t imageSize = kSide * kSide * bitsPerPixel / 8;
    std::string bytes = "BM";
    appendLittleEndian(bytes, pixelsAt + imageSize, 4);
    appendLittleEndian(bytes, 0, 4);
    appendLittleEndian(bytes, pixelsAt, 4);
    appendLittleEndian(bytes, 40, 4);
    appendLittleEndian(bytes, kSide, 4);
    appendLittleEndian(bytes, kSide, 4);
    appendLittleEndian(bytes, 1, 2);
    appendLittleEndian(bytes, bitsPerPixel, 2);
    appendLittleEndian(bytes, 0, 4);
    appendLittleEndian(bytes, imageSize, 4);
    bytes.append(16, '\0');
    return bytes;
}

/// A bitmap of 4 x 4 pixels, the left half in one colour and the right half in the other (blue, green, red).
std::string bitmap(const std::string& left, const std::string& right) {
    std::string bytes = bitmapHeaders(kHeader, 24);
    for (std::uint32_t pixel = 0; pixel < kSide * kSide; ++pixel) {
        bytes += pixel % kSide < kSide / 2 ? left : right;
    }
    return bytes;
}

/// The same size with a table of 256 colours, all pixels in the last one, white.
std::string paletteBitmap() {
    constexpr std::uint32_t kTable = 1024;
    std::string bytes = bitmapHeaders(kHeader + kTable, 8);
    bytes.append(kTable - 4, '\0');
    bytes += std::string(3, '\xFF') + std::string(1, '\0');
    return bytes + std::string(kSide * kSide, '\xFF');
}

/// The left half white, the right half grey, as a PNG.
constexpr unsigned char kHalfPng[] = {
    0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00, 0x00,
    0x04, 0x00, 0x00, 0x00, 0x04, 0x08, 0x02, 0x00, 0x00, 0x00, 0x26, 0x93, 0x09, 0x29, 0x00, 0x00, 0x00, 0x11, 0x49,
    0x44, 0x41, 0x54, 0x78, 0xDA, 0x63, 0xF8, 0x0F, 0x06, 0x0D, 0x60, 0xC0, 0x40, 0x1C, 0x07, 0x00, 0xC9, 0xA9, 0x23,
    0xE9, 0xDE, 0x8D, 0x79, 0x52, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};

}  // namespace

namespace {

constexpr const char* kTextPly =
    "ply\nformat ascii 1.0\ncomment a square\nelement vertex 4\nproperty float x\nproperty float y\n"
    "property float z\nelement face 1\nproperty list uchar int vertex_index\nend_header\n"
    "0 0 0\n1 0 0\n1 1 0\n0 1 0\n4 0 1 2 3\n";
constexpr const char* kPlyIndexTooLarge =
    "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\nproperty float z\n"
    "element face 1\nproperty list uchar int vertex_indices\nend_header\n0 0 0\n1 0 0\n0 1 0\n3 0 1 7\n";

std::string words(std::initializer_list<std::uint32_t> values) {
    std::string bytes;
    for (const std::uint32_t value : values) {
        appendLittleEndian(bytes, value, 4);
    }
    return bytes;
}

/// One triangle in the oldest version: 3 vertices and 1 face, component by component.
std::string oldSas() {
    constexpr std::uint32_t kOne = 0x3F800000;
    return words({7777, 1, 3, 0, 20, 0, kOne, 0, 0, 0, kOne, 0, 0, 0, 0, 1, 2, 0, 0, 0, 0, 0, 0});
}

void writeBinaryFixtures(const TempFolder& folder) {
    constexpr std::uint32_t kMinusOne = 0xFFFFFFFF;
    writeFile(folder.file("old.sas"), oldSas());
    writeFile(folder.file("old-copy.sas"), oldSas());
    writeFile(folder.file("version.sas"), words({7776, 1, 3, 0, 20}));
    writeFile(folder.file("head.sas"), words({7778, 1}));
    writeFile(folder.file("cut.sas"), words({7778, 2, 6, 0, 20}) + std::string(40, '\0'));
    const std::string sound = binBytes({0, 0, 0, 90, 0, 0, 90, 90, 0, 0, 90, 0}, {0, 1, 2, 0, 2, 3});
    writeFile(folder.file("sound.bin"), sound);
    writeFile(folder.file("cut.bin"), sound.substr(0, sound.size() * 7 / 10));
    writeFile(folder.file("flipped.sas"), words({7778, 1, 6, 0, 20}) + std::string(144, '\0'));
    writeFile(folder.file("negative.bin"), words({3, kMinusOne}));
    writeFile(folder.file("channels.fim"), words({2, 2, 4}) + std::string(64, '\0'));
}

constexpr const char* kVrmlSquare =
    "Shape { geometry IndexedFaceSet { coord Coordinate { point [ 0 0 0, 10 0 0, 10 10 0, 0 10 0 ] }\n"
    "coordIndex [ 0, 1, 2, 3, -1 ] } }\n";
constexpr const char* kVrmlTriangle =
    "Shape { geometry IndexedFaceSet { coord Coordinate { point [ 0 0 0, 10 0 0, 10 20 0, 0 0 9 ] }\n"
    "coordIndex [ 0, 1, 2, -1 ] } }\n";

void writeVrmlFixtures(const TempFolder& folder) {
    const std::string head = "#VRML V2.0 utf8\n";
    const std::string square = kVrmlSquare;
    writeFile(folder.file("square.wrl"), head + square);
    writeFile(folder.file("scene.wrl"), head + square + kVrmlTriangle);
    writeFile(folder.file("box.wrl"), head +
                                          "Shape { geometry Box { size 1 1 1 } }\nDEF Box Transform { scale 2 2 2 }\n" +
                                          "Shape { geometry Sphere{ } }\nDEF A " + square + "USE A\n");
    std::string flood = head + square;
    for (int i = 0; i < 200; ++i) {
        flood += "color Color { color [ 1 1 1 ] }\n";
    }
    writeFile(folder.file("flood.wrl"), flood);
}

void writeObjFixtures(const TempFolder& folder) {
    const std::string square = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";
    writeFile(folder.file("relative.obj"), square + "f -3 -2 -1\n");
    writeFile(folder.file("quads.obj"), square + "f 1 2 3 4\nf 4 3 2 1\n");
    writeFile(folder.file("comment.obj"), "# the v component\n" + square + "f 1 2 3\nf 1 3 4\n");
    writeFile(folder.file("solid.obj"), "v 0 0 0\nv 30 0 0\nv 0 30 0\nv 0 0 10\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n");
    writeFile(folder.file("folded.obj"), "v 0 0 0\nv 20 0 0\nv 10 16 0\nv 10 14 1\nf 1 2 3\nf 2 1 4\n");
    writeFile(folder.file("pentagon.obj"), "v 0 0 0\nv 20 0 0\nv 20 10 0\nv 10 30 0\nv 0 10 0\nf 1 2 3\nf 1 3 4 5\n");
    writeFile(folder.file("short.obj"), "v 0 0 0\nv 1 0 0\nv 1 2\nv 0 1 0\nf 1 2 4\nf 1 3 2\n");
}

/// Faces one by one: without texels, whole, clockwise, without an area in texture space, outside of it, partly outside.
/// No texel for vertices 1 to 3, and none within texture space for 11 and 12.
constexpr const char* kPatchworkTexture =
    "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 2 0 0\nv 3 0 0\nv 2 1 0\nv 4 0 0\nv 5 0 0\nv 4 1 0\nv 6 0 0\nv 7 0 0\nv 6 1 0\n"
    "vt 0.1 0.1\nvt 0.9 0.1\nvt 0.1 0.9\nvt 1.5 0.1\nvt 2.5 0.1\nvt 1.5 0.9\n"
    "f 1 2 3\nf 4/1 5/2 6/3\nf 7/1 8/3 9/2\nf 4/1 5/1 6/2\nf 10/4 11/5 12/6\nf 10/2 11/4 12/6\n";

void writeTextureFixtures(const TempFolder& folder) {
    const std::string white(3, '\xFF');
    const std::string square = "v 0 0 0\nv 10 0 0\nv 0 10 0\nv 10 10 0\n";
    writeFile(folder.file("beyond.obj"), square + "vt 1 0\nvt 2 0\nvt 1 1\nvt 2 1\nf 1/1 2/2 4/4\nf 1/1 4/4 3/3\n");
    writeFile(folder.file("tiny.obj"),
              "v 1 0 0\nv 10 0 0\nv 0 10 0\nvt 5e-4 5e-4\nvt 1.5e-3 5e-4\nvt 5e-4 1.5e-3\nf 1/1 2/2 3/3\n");
    writeFile(folder.file("patchwork.obj"), kPatchworkTexture);
    writeFile(folder.file("patchwork.bmp"), bitmap(white, white));
    writeFile(folder.file("corners.obj"), square + kPlaneTexels + "vt 1.5 0.5\nf 1/1 2/2 4/4\nf 1/1 4/5 3/3\n");
    writeFile(folder.file("corners.bmp"), bitmap(white, white));
    const std::string faces = "f 1/1 2/2 4/4\nf 1/1 4/4 3/3\n";
    writeFile(folder.file("overlap.obj"), square + "vt 0 0\nvt 0.9 0\nvt 0 0.9\nvt 0.9 0.9\n" + faces + faces);
    writeFile(folder.file("edge.obj"), square + "vt 0 0\nvt 1 0\nvt 0 1\nvt 1 1\n" + faces);
    writeFile(folder.file("unnamed.obj"), square + kPlaneTexels + "f 1 2 4\nf 1 4 3\n");
    writeFile(folder.file("absent.obj"), square + "vt 0.5 0.5\nf 1/2 2/2 4/2\nf 1/2 4/2 3/2\n");
}

constexpr const char* kTetrahedron = "v 0 0 0\nv 9 0 0\nv 0 9 0\nv 0 0 9\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n";

void writeFiniteFixtures(const TempFolder& folder) {
    // Every face lies back to back with another one.
    const std::string doubled = std::string(kTetrahedron) + "f 2 3 1\nf 4 2 1\nf 3 4 1\nf 4 3 2\n";
    writeFile(folder.file("doubled.obj"), doubled);
    writeFile(folder.file("lost.obj"),
              doubled + "v 20 0 0\nv 29 0 0\nv 20 9 0\nv 20 0 9\nf 5 7 6\nf 5 6 8\nf 5 8 7\nf 6 7 8\n");
    writeFile(folder.file("torn.obj"), "v nan 0 0\nv 1 0 0\nv 0 1 0\nv 5 0 0\nv 6 0 0\nv 5 1 0\nf 1 2 3\nf 4 5 6\n");
    writeFile(folder.file("wide.obj"), "v 1e6 1e6 0\nv 1000009 1e6 0\nv 1e6 1000009 9\nf 1 2 3\n");
    writeFile(folder.file("unplaced.obj"), "v nan 0 0\nv 1 inf 0\nv 0 1 nan\nf 1 2 3\n");
}

void writePlyFixtures(const TempFolder& folder) {
    const std::string text = kTextPly;
    writeFile(folder.file("text.ply"), text);
    writeFile(folder.file("cut.ply"), text.substr(0, text.size() - 20));
    writeFile(folder.file("coded.ply"), "ply\nformat base64 1.0\nend_header\n");
    writeFile(folder.file("fake.ply"), "solid\n");
    writeFile(folder.file("index.ply"), kPlyIndexTooLarge);
}

void writeTableFixtures(const TempFolder& folder) {
    writeFile(folder.file("years.csv"),
              "\xEF\xBB\xBF# a station\r\nstart,end,so2_ug_m3,rain_mm,ph,note\r\n"
              "1990-01-01,1990-12-31,26,780,4.5,\"as measured, twice\"\r\n1991/01/01,31.01.1992,20,800,4.6,\r\n");
    writeFile(folder.file("german.csv"),
              "start;end;so2_ppb;ph\n01.01.1990;31.01.1990;10,5;4,5\n01.02.1990;28.02.1990;9;4,6\n");
    writeFile(folder.file("gap.csv"), "start,end\n1990-01-01,1990-01-31\n1990-02-03,1990-02-28\n");
    writeFile(folder.file("overlap.csv"), "start,end\n1990-01-01,1990-01-31\n1990-01-31,1990-02-28\n");
    writeFile(folder.file("holes.csv"), "days,so2_ppb\n10,5\n10,\n");
    writeFile(folder.file("marks.csv"), "days,so2_ppb\n10,5\n10,-999\n");
    writeFile(folder.file("unknown.csv"), "days,so2_pbb\n10,5\n");
    writeFile(folder.file("twice.csv"), "days,so2,so2_ppb\n10,1e-13,5\n");
    writeFile(folder.file("cells.csv"), "days,ph\n10,4,5\n");
    writeFile(folder.file("other.csv"), "days,so2\n10,10\n");
    writeFile(folder.file("words.csv"), "days,ph\n10,sour\n");
    writeFile(folder.file("sour.csv"), "days,ph\n10,15\n");
    writeFile(folder.file("timeless.csv"), "ph\n4.5\n");
    writeFile(folder.file("noday.csv"), "start,end\n1990-02-30,1990-03-31\n");
    writeFile(folder.file("bare.csv"), "days,ph\n");
    std::string rows = "days,ph\n";
    for (int i = 0; i < 4000; ++i) {
        rows += "1,4.5\n";
    }
    writeFile(folder.file("long.csv"), rows);
    writeFile(folder.file("longer.csv"), rows + "1,4.5\n");
}

}  // namespace

void writeFixtures(const TempFolder& folder) {
    const std::string white(3, '\xFF');
    const std::string grey(3, '\x80');
    const std::string unknown("\x01\x02\x03");
    writeFile(folder.file("plane.obj"), objText(*makePlane(2)));
    writeFile(folder.file("fine.obj"), objText(*makePlane(20)));
    writeFile(folder.file("huge.obj"), "v 0 0 0\nv 2e5 0 0\nv 0 2e5 0\nf 1 2 3\n");
    writeFile(folder.file("textured.obj"), texturedPlane(false));
    writeFile(folder.file("textured.bmp"), bitmap(white, grey));
    writeFile(folder.file("half.bmp"), bitmap(white, grey));
    writeFile(folder.file("half.png"), {reinterpret_cast<const char*>(kHalfPng), sizeof kHalfPng});
    writeFile(folder.file("palette.bmp"), paletteBitmap());
    writeFile(folder.file("eight.obj"), texturedPlane(false));
    writeFile(folder.file("eight.bmp"), paletteBitmap());
    writeFile(folder.file("fakemap.obj"), texturedPlane(false));
    writeFile(folder.file("fakemap.bmp"), "no bitmap");
    writeFile(folder.file("partly.obj"), texturedPlane(false));
    writeFile(folder.file("partly.bmp"), bitmap(white, unknown));
    writeFile(folder.file("Mixed.Obj"), texturedPlane(false));
    // A face without an area, three faces on one edge, a face turned against its neighbour, a vertex twice, one unused.
    writeFile(folder.file("faulty.obj"),
              "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 -1 0\nv 0 0 1\nv 0 0 1\nv 9 9 9\n"
              "f 1 2 3\nf 2 1 4\nf 1 2 5\nf 3 1 6\nf 1 2 2\n");
    writeFile(folder.file("clockwise.obj"), texturedPlane(true));
    writeFile(folder.file("clockwise.bmp"), bitmap(white, white));
    writeFile(folder.file("mapless.obj"), texturedPlane(false));
    writeFile(folder.file("white.bmp"), bitmap(white, white));
    writeFile(folder.file("unknown.bmp"), bitmap(unknown, unknown));
    writeFile(folder.file("far.obj"), "v 0 0 1e9\nv 100 0 1e9\nv 0 100 1e9\nf 1 2 3\n");
    writeFile(folder.file("vertices.obj"), "v 0 0 0\nv 1 0 0\n");
    writeFile(folder.file("broken.obj"), "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 9\n");
    writeFile(folder.file("digits.obj"), "v 0.1 1e-20 123456.789\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    writeFile(folder.file("seam.obj"),
              "v 0 0 0\nv 10 0 0\nv 0 10 0\nv 10 10 0\nvt 0 0\nvt 0.4 0\nvt 0.4 1\nvt 0.5 0\n"
              "vt 0.9 1\nvt 0.5 1\nf 1/1 2/2 4/3\nf 1/4 4/5 3/6\n");
    writeTextureFixtures(folder);
    writeFiniteFixtures(folder);
    writeConfigFixtures(folder);
    writePlyFixtures(folder);
    writeBinaryFixtures(folder);
    writeObjFixtures(folder);
    writeVrmlFixtures(folder);
    writeMapFixtures(folder);
    writeTableFixtures(folder);
    writeFile(folder.file("two.cfg"),
              "mode = 1;\nmodel = 1;\nmtl = 0.14, 0.11, 544.3, 312, 375, 2452, 100.9, 2.714;\nepcs = 2;\n"
              "epc_1 = 100, 4e-13, 1e-12, 1, 5;\nepc_2 = 200, 4e-13, 1e-12, 1, 5;\n");
}

}  // namespace talvek::test
