// Pictures of stones: what is seen where, and in which colour.
#include "talvek/mineral_map/picture.h"

#include <gtest/gtest.h>

#include <cmath>

#include "cli/fixtures.h"
#include "cli/program.h"
#include "talvek/picture/legend.h"
#include "talvek/picture/shading.h"
#include "talvek/picture/text.h"
#include "talvek/picture/view.h"
#include "talvek/picture/visible_surface.h"

namespace talvek::test {
namespace {

using Vector = Vector3<double>;

TEST(PictureView, AxesAreOrthogonalAndRightHanded) {
    for (const char* name : {"corner", "front", "back", "left", "right", "top", "bottom", "30,20"}) {
        for (const char up : {'x', 'y', 'z'}) {
            const host::View view = host::viewOf(name, up);
            const Vector towards = cross(view.right, view.up);
            EXPECT_NEAR(length(towards - view.towards), 0, 1e-12) << name << up;
            EXPECT_NEAR(length(view.right), 1, 1e-12) << name << up;
            EXPECT_NEAR(length(view.up), 1, 1e-12) << name << up;
        }
    }
}

TEST(PictureView, NamesSayWhereTheEyeIs) {
    const auto expectTowards = [](const char* name, char up, const Vector& eye) {
        EXPECT_NEAR(length(host::viewOf(name, up).towards - eye), 0, 1e-12) << name << up;
    };
    expectTowards("front", 'z', {0, -1, 0});
    expectTowards("right", 'z', {1, 0, 0});
    expectTowards("top", 'z', {0, 0, 1});
    expectTowards("front", 'y', {0, 0, 1});
    expectTowards("top", 'y', {0, 1, 0});
    expectTowards("top", 'x', {1, 0, 0});
}

TEST(VisibleSurface, NearerFaceIsSeen) {
    const std::vector<host::ScreenPoint> points = {{0, 0, 1}, {10, 0, 1}, {0, 10, 1}, {0, 0, 5}, {4, 0, 5}, {0, 4, 5}};
    const std::vector<std::int32_t> corners = {0, 1, 2, 3, 4, 5};
    host::VisibleSurface surface(12, 12);
    surface.draw(corners, points);
    EXPECT_EQ(surface.face(0, 0), 1);
    EXPECT_EQ(surface.face(5, 2), 0);
    EXPECT_EQ(surface.face(8, 8), -1);
    EXPECT_FLOAT_EQ(surface.depth(0, 0), 5);
}

TEST(VisibleSurface, FacesOutsideOrNotFiniteAreLeftOut) {
    const float nan = std::nanf("");
    const std::vector<host::ScreenPoint> points = {{-50, -50, 0}, {-9, -50, 0}, {-50, -9, 0}, {nan, 0, 0}, {90, 0, 0}};
    const std::vector<std::int32_t> corners = {0, 1, 2, 3, 4, 1};
    host::VisibleSurface surface(8, 8);
    surface.draw(corners, points);
    for (int i = 0; i < 64; ++i) {
        EXPECT_EQ(surface.face(i % 8, i / 8), -1);
    }
}

TEST(Shading, FlatGroundSeesTheWholeSkyAndAPitDoesNot) {
    const Vector3<float> up = {0, 0, 1};
    const std::vector<host::ScreenPoint> flat = {{-99, -99, 0}, {300, -99, 0}, {-99, 300, 0}};
    host::VisibleSurface ground(60, 60);
    ground.draw(std::vector<std::int32_t>{0, 1, 2}, flat);
    EXPECT_FLOAT_EQ(host::opennessAt(ground, 30, 30, up, 20), 1);

    const std::vector<host::ScreenPoint> walls = {{-99, -99, 0}, {300, -99, 0}, {-99, 300, 0},
                                                  {33, -99, 15}, {300, 30, 15}, {33, 300, 15},
                                                  {27, -99, 15}, {27, 300, 15}, {-200, 30, 15}};
    host::VisibleSurface pit(60, 60);
    pit.draw(std::vector<std::int32_t>{0, 1, 2, 3, 4, 5, 6, 7, 8}, walls);
    EXPECT_LT(host::opennessAt(pit, 30, 30, up, 20), 0.8F);
}

TEST(PictureText, WordsOfAllSortsHaveTheirWidthAndFaultyBytesAMark) {
    const host::Type type{20, host::Weight::kRegular, {}};
    EXPECT_GT(host::textWidth("Köln µm", type), host::textWidth("Köln", type));
    EXPECT_NEAR(host::textWidth("nn", type), 2 * host::textWidth("n", type), 1e-9);
    EXPECT_EQ(host::textWidth("\xFF", type), host::textWidth("\xEF\xBF\xBD", type));
    EXPECT_EQ(host::textWidth("\xC3", type), host::textWidth("\xEF\xBF\xBD", type));
    EXPECT_EQ(host::textWidth("石", type), host::textWidth("\xEF\xBF\xBD", type));
}

class DrawnPicture : public ::testing::Test {
  protected:
    void SetUp() override {
        writeFixtures(folder_);
        std::filesystem::current_path(folder_.path());
    }
    void TearDown() override { std::filesystem::current_path(std::filesystem::temp_directory_path()); }

    static host::Picture draw(const std::string& command) {
        const ProgramResult result = runProgram(splitArguments(command));
        EXPECT_EQ(result.end.code, 0U) << result.output;
        return host::decodePicture(readFile("a.png"), "a.png");
    }

    static std::array<int, 3> colourAt(const host::Picture& picture, int x, int y) {
        const std::size_t at = 3 * static_cast<std::size_t>(y * picture.width + x);
        return {picture.colours.at(at), picture.colours.at(at + 1), picture.colours.at(at + 2)};
    }

    TempFolder folder_;
};

/// Under the left half of the map is a mineral that weathers, under the right half one that does not.
TEST_F(DrawnPicture, LostStoneIsVioletAndKeptStoneIsPale) {
    ASSERT_EQ(runProgram({"run", "textured.obj", "--mode", "3", "--days", "36500"}).end.code, 0U);
    const host::Picture picture = draw("picture textured.obj -o a.png --view top --size 600x500");
    ASSERT_EQ(picture.width, 600);
    // The square reaches from about 121 to 548. Between its vertices the change goes over into nothing.
    const auto lost = colourAt(picture, 126, 230);
    const auto kept = colourAt(picture, 544, 230);
    EXPECT_GT(lost[2], lost[1] + 50);
    EXPECT_GT(lost[0], lost[1] + 30);
    EXPECT_NEAR(kept[0], kept[1], 12);
    EXPECT_GT(kept[0], 150);
    const auto background = colourAt(picture, 599, 0);
    EXPECT_NEAR(background[0], background[2], 15);
    EXPECT_GT(background[2], 200);
}

TEST_F(DrawnPicture, RangeSetsTheColours) {
    ASSERT_EQ(runProgram({"run", "plane.obj", "--days", "3650"}).end.code, 0U);
    const host::Picture strong = draw("picture plane.obj -o a.png --view top --size 600x500 --range 0,0.17");
    const host::Picture weak = draw("picture plane.obj -o a.png --view top --size 600x500 --range 0,100");
    EXPECT_LT(colourAt(strong, 340, 230)[1], 80);
    EXPECT_GT(colourAt(weak, 340, 230)[1], 150);
}

}  // namespace
}  // namespace talvek::test
