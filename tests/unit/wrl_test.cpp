// Reading VRML text.
#include "Vexo_Lib/wrl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "support/error_reports.h"
#include "support/mesh_file_writers.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

constexpr const char* kFourPoints = "Coordinate { point [ 0 0 0, 1 0 0, 0 1 0, 0 0 2 ] }\n";
constexpr const char* kTriangle = "coordIndex [ 0, 1, 2, -1 ]\n";

class WrlReader : public ::testing::Test {
  protected:
    std::unique_ptr<Object3D> read(const std::string& text) {
        writeFile(path_, text);
        CaughtReports reports;
        auto mesh = ReadWrlFile(path_.c_str(), true);
        reports_ = reports.lines();
        return mesh;
    }

    /// The faces of a mesh of four points whose index list is this text.
    Ints facesOf(const std::string& list) {
        const auto mesh = read(kFourPoints + ("coordIndex " + list));
        return mesh != nullptr ? Ints(mesh->faceSpan().begin(), mesh->faceSpan().end()) : Ints();
    }

    /// The positions of a mesh whose coordinate list is this text.
    Floats positionsOf(const std::string& list) {
        const auto mesh = read(kTriangle + ("Coordinate " + list));
        return mesh != nullptr ? Floats(mesh->vertexSpan().begin(), mesh->vertexSpan().end()) : Floats();
    }

    std::string reportText() const {
        std::string text;
        for (const std::string& line : reports_) {
            // Without the time.
            text += line.substr(line.find(' ') + 1) + "\n";
        }
        return text;
    }

    TempFolder folder_;
    std::string path_ = folder_.file("mesh.wrl");
    std::vector<std::string> reports_;
};

TEST_F(WrlReader, ReadsAMeshAndSaysWhatItFound) {
    const auto mesh = read(wrlTetrahedron());
    ASSERT_NE(mesh, nullptr);
    EXPECT_TRUE(std::ranges::equal(mesh->vertexSpan(), Tetrahedron::kVertices));
    EXPECT_TRUE(std::ranges::equal(mesh->faceSpan(), Tetrahedron::kFaces));
    EXPECT_EQ(reportText(), "wrl.cpp:479 >> File information: " + path_ +
                                "\n"
                                "wrl.cpp:480 >> NO TEXTURE ARRAY\n"
                                "wrl.cpp:481 >> NO TEXTURE INDEX\n"
                                "wrl.cpp:483 >> has vertex array\n"
                                "wrl.cpp:484 >> has vertex index\n");
    EXPECT_EQ(reports_[0].substr(0, 1), "(");
    EXPECT_EQ(reports_[0].substr(9, 1), ")");
}

TEST_F(WrlReader, SaysThatThereAreTexels) {
    const auto mesh = read(std::string(kFourPoints) + kTriangle +
                           "TextureCoordinate { point [ 0 0, 1 0, 0 1 ] } texCoordIndex [ 2 1 0 -1 ]");
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numTexels, 3);
    EXPECT_EQ(Floats(mesh->texels.get(), mesh->texels.get() + 6), (Floats{0, 0, 1, 0, 0, 1}));
    EXPECT_EQ(Ints(mesh->texelIndex.get(), mesh->texelIndex.get() + 3), (Ints{2, 1, 0}));
    EXPECT_NE(reportText().find("wrl.cpp:480 >> has texture array\nwrl.cpp:481 >> has texture index\n"),
              std::string::npos);
}

TEST_F(WrlReader, KnowsTheNamesOfTheOldVersion) {
    const auto mesh = read("Texture2 { filename \"marble.png\" } Coordinate3 [ 1 2 3 ] TextureCoordinate2 [ 4 5 ] " +
                           std::string("coordIndex [ 0 0 0 -1 ]"));
    ASSERT_NE(mesh, nullptr);
    EXPECT_STREQ(mesh->label, "marble.png");
    EXPECT_EQ(mesh->vertices[2], 3);
    EXPECT_EQ(mesh->texels[1], 5);
}

TEST_F(WrlReader, MatchesWholeNamesOnly) {
    EXPECT_EQ(read("Coordinates [ 1 2 3 ] coordIndex [ 0 0 0 ]"), nullptr);
    EXPECT_EQ(read("coordinate [ 1 2 3 ] coordIndex [ 0 0 0 ]"), nullptr);
    EXPECT_EQ(read("{Coordinate [ 1 2 3 ] coordIndex [ 0 0 0 ]"), nullptr);
    EXPECT_NE(read("# Coordinate [ 1 2 3 ] \n# coordIndex [ 0 0 0 ]"), nullptr) << "comments are text like any other";
}

TEST_F(WrlReader, TakesTheTextureNameWithoutItsQuotes) {
    const std::string mesh = std::string(kFourPoints) + kTriangle;
    EXPECT_STREQ(read(mesh + "ImageTexture { url \"a.jpg\" }")->label, "a.jpg");
    EXPECT_STREQ(read(mesh + "ImageTexture { url \"\" }")->label, "");
    EXPECT_STREQ(read(mesh + "ImageTexture { url x }")->label, "") << "shorter than two quotes";
    EXPECT_STREQ(read(mesh + "ImageTexture { url")->label, "") << "the file ends before";
    EXPECT_STREQ(read(mesh + "ImageTexture { url 12 }")->label, "");
}

// Copying this empty name was undefined behaviour.
TEST_F(WrlReader, TakesAnEmptyNameForATokenOfOneCharacter) {
    const auto mesh = read(std::string(kFourPoints) + kTriangle + "Texture2 { x [");
    ASSERT_NE(mesh, nullptr);
    EXPECT_STREQ(mesh->label, "");
}

TEST_F(WrlReader, CutsALongTextureName) {
    const auto mesh =
        read(std::string(kFourPoints) + kTriangle + "ImageTexture { url \"" + std::string(100000, 'n') + "\" }");
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(std::string(mesh->label), std::string(255, 'n'));
}

TEST_F(WrlReader, FansPolygons) {
    EXPECT_EQ(facesOf("[ 0 1 2 3 -1 ]"), (Ints{0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(facesOf("[ 0 1 2 3 0 -1 1 2 3 -1 ]"), (Ints{0, 1, 2, 0, 2, 3, 0, 3, 0, 1, 2, 3}));
}

TEST_F(WrlReader, EndsAnIndexListAtABracketBehindATriangle) {
    EXPECT_EQ(facesOf("[ 0 1 2 -1] 0 1 3 -1 ]"), (Ints{0, 1, 2}));
    EXPECT_EQ(facesOf("[ 0 1 2 ] 0 1 3 -1 ]"), (Ints{0, 1, 2}));
    EXPECT_EQ(facesOf("[ 0 1 2 3] 0 1 3 -1 ]"), (Ints{0, 1, 2})) << "the glued corner is dropped";
}

TEST_F(WrlReader, PassesOverABracketBehindALongerPolygon) {
    EXPECT_EQ(facesOf("[ 0 1 2 3 -1] 1 2 3 -1 ] 0 0 0"), (Ints{0, 1, 2, 0, 2, 3, 1, 2, 3}));
    EXPECT_EQ(facesOf("[ 0 1 2 3 ] 1 2 3 ] 0 0 0"), (Ints{0, 1, 2, 0, 2, 3, 1, 2, 3}));
    EXPECT_EQ(facesOf("[ 0 1 2 3 -1] } 2"), (Ints{0, 1, 2, 0, 2, 3})) << "what follows makes no triangle";
}

TEST_F(WrlReader, TakesAGluedBracketForPartOfTheFirstThreeCorners) {
    EXPECT_EQ(facesOf("[ 0] 1] 2] -1 ]"), (Ints{0, 1, 2}));
    EXPECT_EQ(facesOf("[ 0 1 ] -1 ]"), (Ints{0, 1, 0}));
}

TEST_F(WrlReader, KeepsWholeTrianglesOfAnIndexListThatTheFileEnds) {
    EXPECT_EQ(facesOf("[ 0 1 2 -1 1 2"), (Ints{0, 1, 2}));
    EXPECT_EQ(facesOf("[ 0 1 2"), (Ints{0, 1, 2}));
    EXPECT_EQ(facesOf("[ 0 1 2 3"), (Ints{0, 1, 2, 0, 2, 3}));
}

TEST_F(WrlReader, OpensAListOnlyAtALoneBracket) {
    EXPECT_EQ(facesOf("[0 1 2 -1 ] [ 3 2 1 -1 ]"), (Ints{3, 2, 1}));
    EXPECT_EQ(read(std::string(kFourPoints) + "coordIndex [0 1 2 -1 ]"), nullptr);
    EXPECT_EQ(facesOf("USE it { [ 0 1 2 ]"), (Ints{0, 1, 2}));
}

TEST_F(WrlReader, TakesCommasAndEqualsSignsForBlanks) {
    EXPECT_EQ(positionsOf("{ point [ 1,2,3, 4,5,6 ] }"), (Floats{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(positionsOf(std::string("=[=1,,\t2\r\n3=4\0005,6,]", 19)), (Floats{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(positionsOf("[ 1\v2 3 4 ]"), (Floats{1, 3, 4})) << "a vertical tab separates nothing";
}

TEST_F(WrlReader, EndsANumberListAtABracketThatIsGluedToTheLastOfAGroup) {
    EXPECT_EQ(positionsOf("[ 1 2 3 4 5 6] 7 8 9 ]"), (Floats{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(positionsOf("[ 1] 2] 3 4 5 6 ]"), (Floats{1, 2, 3, 4, 5, 6})) << "not to the others";
    EXPECT_EQ(positionsOf("[ 1 2 ] 3 4 5 ]"), (Floats{1, 2, 0})) << "a lone one in the last place too";
    EXPECT_EQ(positionsOf("[ 1 ] 3 4 5 6 ]"), (Floats{1, 0, 3, 4, 5, 6})) << "in the middle it is a number";
}

TEST_F(WrlReader, KeepsWholeGroupsOfANumberListThatTheFileEnds) {
    EXPECT_EQ(positionsOf("[ 1 2 3 4 5"), (Floats{1, 2, 3}));
}

TEST_F(WrlReader, ReadsNumbersThroughDoublePrecision) {
    // Halfway between two floats, but for a digit that double precision rounds away.
    EXPECT_EQ(positionsOf("[ 1.00000017881393432617187499999 0x10 1e99 ]"),
              (Floats{1.00000011920928955078125F + 0x1p-23F, 16, std::numeric_limits<float>::infinity()}));
    EXPECT_EQ(positionsOf("[ word 1.5x -.5e1 ]"), (Floats{0, 1.5F, -5}));
}

TEST_F(WrlReader, LetsTheLastListOfAKindCount) {
    const auto mesh = read(std::string(kFourPoints) + "coordIndex [ 0 1 2 -1 1 2 3 -1 ] coordIndex [ 3 2 1 -1 ] " +
                           "Coordinate [ 9 9 9 8 8 8 7 7 7 6 6 6 ]");
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numFaces, 1);
    EXPECT_EQ(mesh->vertexIndex[0], 3);
    EXPECT_EQ(mesh->numVertices, 4);
    EXPECT_EQ(mesh->vertices[11], 6);
}

TEST_F(WrlReader, LeavesAListThatIsNeverOpenedAsItWas) {
    const auto mesh = read(std::string(kFourPoints) + kTriangle + "TextureCoordinate [ 1 2 ] Coordinate {");
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numVertices, 4);
    EXPECT_EQ(mesh->vertices[3], 1);
    EXPECT_EQ(mesh->numTexels, 1);
}

TEST_F(WrlReader, ReportsCoordinatesThatDoNotMatchTheColours) {
    const auto mesh = read(std::string("Color [ 1 0 0, 0 1 0 ] ") + kFourPoints + kTriangle);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numVertices, 2) << "the colours came first";
    ASSERT_EQ(reports_.size(), 8);
    expectReportBlock({reports_.begin(), reports_.begin() + 3}, "wrl.cpp",
                      "WRL ERROR: Number of vertices does not match number of vertex color values.");
}

TEST_F(WrlReader, ReportsColoursThatDoNotMatchTheCoordinates) {
    const auto mesh = read(std::string(kFourPoints) + "Color [ 0.5 0 0 ] " + kTriangle);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numVertices, 4);
    ASSERT_EQ(reports_.size(), 8);
    expectReportBlock({reports_.begin(), reports_.begin() + 3}, "wrl.cpp",
                      "WRL ERROR: Number of vertex color values does not match number of vertices.");
    EXPECT_EQ(Floats(mesh->vertexColours.get(), mesh->vertexColours.get() + 12),
              (Floats{0.5F, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(WrlReader, FillsShorterCoordinatesWithZeros) {
    const auto mesh = read(std::string(kFourPoints) + kTriangle + "Coordinate [ 7 7 7 ]");
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(Floats(mesh->vertexSpan().begin(), mesh->vertexSpan().end()),
              (Floats{7, 7, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(WrlReader, PutsVerticesWithoutCoordinatesIntoTheOrigin) {
    const auto mesh = read(std::string("Color [ 1 0 0 0 1 0 0 0 1 ] ") + kTriangle);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numVertices, 3);
    EXPECT_TRUE(std::ranges::all_of(mesh->vertexSpan(), [](float value) { return value == 0; }));
    EXPECT_NE(reportText().find("wrl.cpp:483 >> NO VERTEX ARRAY\n"), std::string::npos);
}

TEST_F(WrlReader, KeepsATexelIndexOfAnotherLengthButSaysSo) {
    ::testing::internal::CaptureStdout();
    const auto before = read(std::string("texCoordIndex [ 0 1 2 -1 ] ") + kFourPoints + kTriangle);
    EXPECT_EQ(withoutCarriageReturns(::testing::internal::GetCapturedStdout()),
              "WRL ERROR: Texture index has not equal size with vertex index!\n");
    ASSERT_NE(before, nullptr);
    EXPECT_EQ(before->texelIndex[2], 2);
    ::testing::internal::CaptureStdout();
    const auto shorter = read(std::string(kFourPoints) + "coordIndex [ 0 1 2 -1 0 2 3 -1 ] texCoordIndex [ 0 1 2 -1 ]");
    EXPECT_NE(::testing::internal::GetCapturedStdout(), "");
    ASSERT_NE(shorter, nullptr);
    EXPECT_EQ(Ints(shorter->texelIndex.get(), shorter->texelIndex.get() + 6), (Ints{0, 1, 2, -1, -1, -1}))
        << "corners beyond the list have no texel";
    ::testing::internal::CaptureStdout();
    EXPECT_NE(read(std::string(kFourPoints) + kTriangle + "texCoordIndex [ 2 1 0 -1 ]"), nullptr);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST_F(WrlReader, RefusesAFileWithoutPolygons) {
    for (const char* text : {"", "#VRML V2.0 utf8\n", kFourPoints, kTriangle, "Coordinate [ ] coordIndex [ 0 0 0 ]"}) {
        EXPECT_EQ(read(text), nullptr) << text;
        expectReportBlock(reports_, "wrl.cpp", "The file " + path_ + " doesn't have polygons ");
    }
}

TEST_F(WrlReader, ReportsAFileThatIsNotThere) {
    CaughtReports reports;
    EXPECT_EQ(ReadWrlFile(path_.c_str(), true), nullptr);
    expectReportBlock(reports.lines(), "wrl.cpp", "cannot open " + path_ + " for reading ");
}

TEST_F(WrlReader, DoesNotSplitLongTokens) {
    const std::string zeros(70000, '0');
    EXPECT_EQ(positionsOf("[ " + zeros + "1 2 3 ]").size(), 3) << "one number, whatever is left of it";
    EXPECT_EQ(positionsOf("[ 1" + std::string(300, '0') + "e-300 2 3 ]"), (Floats{1, 2, 3}));
}

// A report is about 200 characters long.
TEST_F(WrlReader, MakesThousandsOfReportsInTheirOrder) {
    std::string text = kFourPoints;
    for (int i = 0; i < 2000; ++i) {
        text += i % 2 == 0 ? "Coordinate [ 0 0 0 ]\n" : "Color [ 0 0 0 ]\n";
    }
    read(text + kTriangle);
    ASSERT_EQ(reports_.size(), 3 * 2000 + 5);
    EXPECT_NE(reports_[2].find("Number of vertices"), std::string::npos);
}

}  // namespace
}  // namespace talvek::test
