// Where a mesh lies: its unit, its offset, and what narrowing to single precision does to it.
#include <cmath>
#include <random>

#include "base/number_text.h"
#include "formats/imports.h"
#include "talvek/formats/coordinate_text.h"
#include "talvek/formats/mesh_file.h"

namespace talvek::test {
namespace {

std::string off(const std::vector<std::string>& coordinates) {
    std::string text = "OFF\n" + std::to_string(coordinates.size()) + " 1 0\n";
    for (const std::string& coordinate : coordinates) {
        text += coordinate + "\n";
    }
    return text + "3 0 1 2\n";
}

std::vector<float> narrowed(const host::ImportedMesh& mesh) {
    const auto narrow = host::narrowMesh(mesh);
    return {narrow->vertexSpan().begin(), narrow->vertexSpan().end()};
}

/// As a photogrammetry program writes a façade in metres of a national grid, to a tenth of a millimetre.
TEST(Places, AMillimetreInNationalCoordinatesIsRightToAMicrometre) {
    const std::string bytes =
        off({"512345.6789 5412345.6789 312.0001", "512346.6789 5412345.6799 312", "512345 5412346.6 312"});
    host::ImportOptions options;
    options.unit = 1000;
    const host::ImportedMesh mesh = importBytes("t.off", bytes, options);
    EXPECT_EQ(mesh.place.offset, (std::array<double, 3>{512346, 5412346, 312}));
    const std::vector<float> vertices = narrowed(mesh);
    const double expected[] = {-321.1, -321.1, 0.1, 678.9, -320.1, 0};
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_NEAR(static_cast<double>(vertices[i]), expected[i], 1e-3) << i;
        // Put back, it is what the file said.
        const double back = static_cast<double>(vertices[i]) / mesh.place.unit + mesh.place.offset[i % 3];
        EXPECT_NEAR(back, mesh.positions[i], 1e-6) << i;
    }
}

TEST(Places, NearMeshesStayWhereTheyAre) {
    const host::ImportedMesh mesh = importBytes("t.off", off({"100 200 300", "101 200 300", "100 201.5 300"}));
    EXPECT_TRUE(mesh.place.isPlain());
    EXPECT_EQ(narrowed(mesh)[7], 201.5F);
    // A mesh as large as its distance gains nothing.
    EXPECT_TRUE(importBytes("t.off", off({"-1e6 0 0", "1e6 0 0", "0 1e6 0"})).place.isPlain());
}

TEST(Places, RecentringIsDoneOrLeftAsAsked) {
    host::ImportOptions options;
    options.recentre = true;
    const std::string near = off({"100.25 200 300", "101 200 300", "100 201.5 300"});
    EXPECT_EQ(importBytes("t.off", near, options).place.offset, (std::array<double, 3>{101, 201, 300}));
    options.recentre = false;
    EXPECT_TRUE(importBytes("t.off", off({"1e7 0 0", "10000001 0 0", "1e7 1 0"}), options).place.isPlain());
}

/// Writes numbers close to the middle between two floats, on both sides of it, with more digits than a double keeps.
TEST(Places, CoordinatesAreRoundedOnce) {
    std::mt19937 random(7);
    int differsFromDouble = 0;
    for (int i = 0; i < 300000; ++i) {
        const auto bits = (random() & 0x807FFFFF) | ((random() % 40 + 97) << 23);
        const float below = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
        const double middle = (static_cast<double>(below) + static_cast<double>(std::nextafter(below, INFINITY))) / 2;
        char text[kNumberTextSize + 8];
        // All digits of the middle, exactly; a last one puts the number beside it.
        int length = std::snprintf(text, sizeof text, "%.60f", middle);
        if (i % 3 != 0) {
            text[length++] = '1';
        }
        if (i % 3 == 2) {
            // The digit before the zeros at the end is never 0.
            int last = length - 2;
            while (text[last] == '0') {
                text[last--] = '9';
            }
            --text[last];
        }
        double coordinate = 0;
        float once = 0;
        double twice = 0;
        const std::string_view number(text, static_cast<std::size_t>(length));
        ASSERT_EQ(host::parseCoordinate(number, coordinate), number.size());
        parseFloat(number, once);
        parseDouble(number, twice);
        ASSERT_EQ(static_cast<float>(coordinate), once) << number;
        ASSERT_LE(std::fabs(coordinate - twice), std::fabs(twice) * 2.3e-16);
        differsFromDouble += static_cast<float>(twice) != once ? 1 : 0;
    }
    // The test bites only where rounding twice goes wrong.
    EXPECT_GT(differsFromDouble, 50000);
}

TEST(Places, WeldingTakesTheFirstVertexWithinReach) {
    host::ImportOptions options;
    options.weld = 0.1;
    const std::string bytes = "OFF\n6 2 0\n0 0 0\n1 0 0\n0 1 0\n0.05 0 0.05\n1 0.2 0\n0 1 0\n3 0 1 2\n3 3 4 5\n";
    const host::ImportedMesh mesh = importBytes("t.off", bytes, options);
    EXPECT_EQ(mesh.counts.weldedVertices, 2);
    EXPECT_EQ(mesh.corners, (std::vector<std::int32_t>{0, 1, 2, 0, 3, 2}));
    EXPECT_EQ(mesh.positions, (std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 0.2, 0}));
    // Without being asked nothing is joined in a format that can share vertices, equal or not.
    EXPECT_EQ(importBytes("t.off", bytes).numVertices(), 6);
}

TEST(Places, WeldingManyVerticesOfAFewPlacesTakesNoLongerThanReading) {
    std::string bytes = "OFF\n200000 1 0\n";
    for (int i = 0; i < 200000; ++i) {
        bytes += i % 3 == 0 ? "nan 0 0\n" : "1 2 3\n";
    }
    host::ImportOptions options;
    options.weld = 1;
    EXPECT_EQ(importBytes("t.off", bytes + "3 0 1 2\n", options).counts.weldedVertices, 133332);
}

}  // namespace
}  // namespace talvek::test
