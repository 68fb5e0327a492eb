// Measures files of one mebibyte that are made to take long against ordinary ones of that size, and prints the ratio of
// their processor times: for loading alone, and for loading and weathering once. Files that promise more than they hold
// are measured against an ordinary one of the size they promise. Ends with 1 when a ratio is above ten.
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "Vexo_Lib/load3d.h"
#include "measure.h"
#include "support/use_mesh.h"
#include "talvek.h"
#include "weathering/mineral_map.h"

namespace talvek::bench {
namespace {

constexpr std::size_t kSize = std::size_t{1} << 20;
constexpr double kLargestRatio = 10;

std::string repeated(const std::string& piece, const std::string& before = "", std::size_t size = kSize) {
    std::string text = before;
    while (text.size() + piece.size() <= size) {
        text += piece;
    }
    return text;
}

std::string ints(std::initializer_list<std::int64_t> values) {
    std::string bytes;
    for (const std::int64_t value : values) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes += static_cast<char>(value >> shift & 0xFF);
        }
    }
    return bytes;
}

std::string filled(std::string bytes, char with = '\0', std::size_t size = kSize) {
    bytes.resize(std::max(size, bytes.size()), with);
    return bytes;
}

/// A wavy sheet of vertices and faces in some notation.
struct Sheet {
    std::int32_t side;

    std::int32_t numVertices() const { return side * side; }
    std::int32_t numFaces() const { return 2 * (side - 1) * (side - 1); }

    template <typename Take>
    void forEachVertex(Take take) const {
        for (std::int32_t i = 0; i < numVertices(); ++i) {
            const std::int32_t row = i / side;
            take(static_cast<float>(i % side) + 0.123456F, static_cast<float>(row) + 0.654321F,
                 static_cast<float>(i * 7 % 13) * 0.01F);
        }
    }

    template <typename Take>
    void forEachFace(Take take) const {
        for (std::int32_t y = 0; y + 1 < side; ++y) {
            for (std::int32_t x = 0; x + 1 < side; ++x) {
                const std::int32_t corner = y * side + x;
                take(corner, corner + 1, corner + side + 1);
                take(corner, corner + side + 1, corner + side);
            }
        }
    }
};

/// The bits of a float.
std::int64_t bitsOf(float value) {
    std::int32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

std::string vertexBytes(const Sheet& sheet) {
    std::string bytes;
    sheet.forEachVertex([&](float x, float y, float z) { bytes += ints({bitsOf(x), bitsOf(y), bitsOf(z)}); });
    return bytes;
}

std::string faceBytes(const Sheet& sheet) {
    std::string bytes;
    sheet.forEachFace([&](std::int32_t a, std::int32_t b, std::int32_t c) { bytes += ints({a, b, c}); });
    return bytes;
}

std::string ordinaryBin(const Sheet& sheet) {
    return ints({sheet.numVertices(), sheet.numFaces()}) + vertexBytes(sheet) + faceBytes(sheet);
}

std::string ordinarySas(const Sheet& sheet) {
    const std::string perFace(24 * static_cast<std::size_t>(sheet.numFaces()), '\1');
    return ints({7778, sheet.numFaces(), sheet.numVertices(), 0, 20}) + vertexBytes(sheet) + faceBytes(sheet) + perFace;
}

std::string coordinates(float x, float y, float z) {
    char text[200];
    std::snprintf(text, sizeof text, "%.6f %.6f %.6f", static_cast<double>(x), static_cast<double>(y),
                  static_cast<double>(z));
    return text;
}

std::string corners(std::int32_t a, std::int32_t b, std::int32_t c, const char* between) {
    return std::to_string(a) + between + std::to_string(b) + between + std::to_string(c);
}

std::string ordinaryObj(const Sheet& sheet) {
    std::string text;
    sheet.forEachVertex([&](float x, float y, float z) { text += "v " + coordinates(x, y, z) + "\n"; });
    sheet.forEachFace([&](int a, int b, int c) { text += "f " + corners(a + 1, b + 1, c + 1, " ") + "\n"; });
    return text;
}

std::string ordinaryWrl(const Sheet& sheet) {
    std::string text = "#VRML V2.0 utf8\nCoordinate { point [ ";
    sheet.forEachVertex([&](float x, float y, float z) { text += coordinates(x, y, z) + ",\n"; });
    text += "] }\ncoordIndex [ ";
    sheet.forEachFace([&](int a, int b, int c) { text += corners(a, b, c, ", ") + ", -1,\n"; });
    return text + "]\n";
}

std::string fimHeader(std::int64_t width, std::int64_t height, std::int64_t channels) {
    return ints({width, height, channels});
}

std::string bitmapHeader(std::int64_t width, std::int64_t height, std::int64_t bits) {
    return "BM" + ints({0, 0, 54, 40, width, height, 1 | bits << 16, 0, 0, 0, 0, 0, 0});
}

struct HostileFile {
    const char* what;
    std::string bytes;
};

struct Format {
    const char* fileName;
    std::string ordinary;
    std::vector<HostileFile> hostile;
};

std::vector<Format> textFormats() {
    const std::string digits(kSize / 4, '7');
    return {
        {"hostile.obj",
         ordinaryObj({130}),
         {{"keywords alone", repeated("v ")},
          {"faces alone", repeated("f ")},
          {"texels of words", repeated("vt x ")},
          {"one vertex, all faces", repeated("f 1 1 1\n", "v 0 0 0\n")},
          {"a fan around one vertex", repeated("f 1 2 3\nf 1 3 2\n", "v 0 0 0\nv 1 0 0\nv 0 1 0\n")},
          {"separators", repeated("\n")},
          {"one token", repeated("x")},
          {"long numbers", "v 1." + digits + " 0." + digits + " ." + digits + "e9"},
          {"long words behind v", repeated("v " + std::string(65000, 'x') + " ")},
          {"numbers glued together", repeated("v" + std::string(" 1") + repeated("+1", "", 60000) + " ")},
          {"denormal numbers", repeated("v 1e-45 1e-310 4.9e-324\n")}}},
        {"hostile.wrl",
         ordinaryWrl({125}),
         {{"mismatched colours", repeated("Color [ ] ", "Coordinate [ 1 2 3 ] coordIndex [ 0 0 0 ] ")},
          {"mismatched texel indices", repeated("texCoordIndex [ ] ", "Coordinate [ 1 2 3 ] coordIndex [ 0 0 0 ] ")},
          {"short lists", repeated("Coordinate [ 1 2 3 ] ", "coordIndex [ 0 0 0 ] ")},
          {"lists never opened", repeated("Coordinate ")},
          {"texture names", repeated("Texture2 a b c ")},
          {"one polygon", repeated("0 ", "Coordinate [ 1 2 3 ] coordIndex [ ")},
          {"texel indices to the end", repeated("0 ", "Coordinate [ 1 2 3 ] coordIndex [ 0 0 0 ] texCoordIndex [ ")},
          {"one token", repeated("x")},
          {"separators", repeated(",")}}},
    };
}

std::vector<Format> binaryFormats() {
    const Sheet sheet{170};
    const Sheet sasSheet{110};
    const std::string allOnes(4, '\1');
    return {
        {"hostile.bin",
         ordinaryBin(sheet),
         {{"one vertex, all faces", filled(ints({1, (kSize - 32) / 12}))},
          {"vertices alone", filled(ints({(kSize - 32) / 12, 0}), '\1')},
          {"texels alone", filled(ints({0, 0}) + std::string(19, 'x') + "\xFF" + ints({(kSize - 32) / 8}))},
          {"bytes that mean nothing", filled(ints({0, 0}))},
          {"counts that cannot be", filled(ints({1 << 30, 1 << 30}))}}},
        {"hostile.sas",
         ordinarySas(sasSheet),
         {{"one vertex, all faces", filled(ints({7778, (kSize - 32) / 36, 1, 0, 20}))},
          {"vertices alone", filled(ints({7779, 0, (kSize - 32) / 20, 0, 20}))},
          {"counts that cannot be", filled(ints({7777, 1 << 30, 1 << 30, 0, 20}))}}},
        {"hostile.fim",
         filled(fimHeader(295, 295, 3), '\77'),
         {{"holes", filled(fimHeader(295, 295, 3))},
          {"two columns", filled(fimHeader(2, 43690, 3), '\77')},
          {"two rows", filled(fimHeader(43690, 2, 3), '\77')},
          {"one column", filled(fimHeader(1, 87380, 3), '\77')},
          {"no row", filled(fimHeader(0x7FFFFFFF, 0, 3))},
          {"not-a-number", filled(fimHeader(295, 295, 3), '\xFF')},
          {"one channel", filled(fimHeader(512, 511, 1), '\77')}}},
    };
}

/// Promises of 255 MiB in files of one, against ordinary files of 256 MiB.
std::vector<Format> promisingFiles() {
    const Sheet sheet{2700};
    constexpr std::int64_t kPromised = (std::int64_t{255} << 20) / 12;
    return {{"promising.bin",
             ordinaryBin(sheet),
             {{"vertices", filled(ints({kPromised, 1}))},
              {"faces", filled(ints({1, kPromised}))},
              {"texels",
               filled(ints({1, 1}) + ints({0, 0, 0, 0, 0, 0}) + std::string(19, 'x') + "\xFF" + ints({kPromised}))}}}};
}

/// Reading parameters and maps, which leaves nothing to weather.
Format parameterFiles() {
    return {"hostile.cfg",
            repeated("epc_1 = 365, 4.09e-13, 1.023e-12, 1.13, 4.5;\n", "epcs = 4000;\n"),
            {{"keys alone", repeated("epc_0\n", "epcs = 4000;\n")},
             {"one line", repeated("x")},
             {"lists without a comma", repeated("mtl=" + std::string(60000, '1') + "\n")},
             {"lists of commas", repeated("mtl=" + std::string(60000, ',') + "\n")},
             {"every key at once", repeated("epc_01=\n", "epcs = 4000;\n")},
             {"empty lines", repeated("\n")}}};
}

Format bitmaps() {
    return {"hostile.bmp",
            filled(bitmapHeader(590, 591, 24)),
            {{"no column", filled(bitmapHeader(0, 0x7FFFFFFF, 24))},
             {"no row", filled(bitmapHeader(0x7FFFFFFF, 0, 24))},
             {"one column", filled(bitmapHeader(1, (kSize - 54) / 4, 8))},
             {"two bytes a pixel", filled(bitmapHeader(512, 1022, 16))},
             {"pixels far behind", filled(bitmapHeader(1, 1, 24))}}};
}

void write(const std::string& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// The smallest processor time of some rounds.
double secondsOf(const std::function<void()>& work, int rounds) {
    double best = 1e9;
    for (int i = 0; i < rounds; ++i) {
        const double before = processorSeconds();
        work();
        best = std::min(best, processorSeconds() - before);
    }
    return best;
}

using Reading = std::function<void(const std::string& path)>;

bool compare(std::FILE* table, const Format& format, const char* how, const Reading& reading, int rounds) {
    const std::string path = std::string("/dev/shm/talvek-") + format.fileName;
    const auto seconds = [&](const std::string& bytes) {
        write(path, bytes);
        return secondsOf([&] { reading(path); }, rounds);
    };
    const double ordinary = seconds(format.ordinary);
    std::fprintf(table, "%-14s %-8s ordinary, %zu bytes: %.2f ms\n", format.fileName, how, format.ordinary.size(),
                 1000 * ordinary);
    bool isFine = true;
    for (const HostileFile& file : format.hostile) {
        const double ratio = seconds(file.bytes) / ordinary;
        std::fprintf(table, "    %-28s %6.2f%s\n", file.what, ratio, ratio > kLargestRatio ? "  TOO SLOW" : "");
        isFine = isFine && ratio <= kLargestRatio;
    }
    std::fflush(table);
    std::remove(path.c_str());
    return isFine;
}

void load(const std::string& path) {
    LoadMeshFile(path.c_str());
}

void loadAndWeather(const std::string& path) {
    const auto mesh = LoadMeshFile(path.c_str());
    if (mesh != nullptr) {
        test::weatherOnce(*mesh);
    }
}

void readParameters(const std::string& path) {
    talvekSetFileName(path.c_str());
    talvekReadParams();
}

int compareAll(std::FILE* table) {
    constexpr int kRounds = 5;
    bool isFine = true;
    std::vector<Format> formats = textFormats();
    for (Format& format : binaryFormats()) {
        formats.push_back(std::move(format));
    }
    for (const Format& format : formats) {
        isFine = compare(table, format, "loading", load, kRounds) && isFine;
        isFine = compare(table, format, "all", loadAndWeather, kRounds) && isFine;
    }
    isFine = compare(table, parameterFiles(), "reading", readParameters, kRounds) && isFine;
    isFine = compare(
                 table, bitmaps(), "reading", [](const std::string& path) { readMineralMap(path.c_str()); }, kRounds) &&
             isFine;
    for (const Format& format : promisingFiles()) {
        isFine = compare(table, format, "loading", load, 1) && isFine;
    }
    return isFine ? 0 : 1;
}

}  // namespace
}  // namespace talvek::bench

int main() {
    // What the library says is part of the work, but not of the table.
    std::FILE* table = ::fdopen(::dup(1), "w");
    if (table == nullptr || std::freopen("/dev/null", "w", stderr) == nullptr ||
        std::freopen("/dev/null", "w", stdout) == nullptr) {
        return 2;
    }
    return talvek::bench::compareAll(table);
}
