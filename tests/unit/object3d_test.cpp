// The mesh record: its start values, copies and measures.
#include "mesh/object3d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <type_traits>

#include "support/meshes.h"

namespace talvek::test {
namespace {

void setName(Object3D& mesh, const std::string& name) {
    name.copy(mesh.name, Object3D::kTextSize);
}

/// A mesh with every array, each filled with values of its own.
std::unique_ptr<Object3D> fullMesh() {
    std::unique_ptr<Object3D> mesh = makeCube(2);
    mesh->updateNormals(true);
    const std::int64_t corners = 3 * std::int64_t{mesh->numFaces};
    mesh->numTexels = 5;
    mesh->texels = makeFilledArray(10, 0.25F);
    mesh->texelIndex = makeFilledArray<std::int32_t>(corners, 4);
    mesh->faceColours = makeFilledArray(corners, 0.5F);
    mesh->vertexColours = makeFilledArray(3 * std::int64_t{mesh->numVertices}, 0.75F);
    mesh->vertexWeights = makeFilledArray(mesh->numVertices, 3.0F);
    mesh->auxiliary = makeFilledArray(1, 9.0F);
    mesh->minimumCurvature = makeFilledArray(mesh->numVertices, 1.0F);
    mesh->curvatureReserve = makeFilledArray(mesh->numVertices, 1.0F);
    setName(*mesh, "stone.obj");
    std::string("a label").copy(mesh->label, Object3D::kTextSize);
    return mesh;
}

TEST(MeshRecord, StartsEmpty) {
    const Object3D mesh;
    EXPECT_EQ(mesh.numFaces, 0);
    EXPECT_EQ(mesh.numVertices, 0);
    EXPECT_EQ(mesh.numTexels, 0);
    EXPECT_EQ(mesh.vertices, nullptr);
    EXPECT_EQ(mesh.vertexIndex, nullptr);
    EXPECT_EQ(mesh.texelIndex, nullptr);
    EXPECT_EQ(mesh.vertexNormals, nullptr);
    EXPECT_EQ(mesh.meanCurvature, nullptr);
    EXPECT_EQ(mesh.vertexWeights, nullptr);
    EXPECT_EQ(mesh.meanEdgeLength, 0);
    EXPECT_EQ(mesh.reserved, 0);
    EXPECT_EQ(mesh.flag, 1);
    EXPECT_EQ(mesh.scale[0], 1);
    EXPECT_EQ(mesh.scale[2], 1);
    EXPECT_EQ(nameOf(mesh), "");
    EXPECT_EQ(mesh.label[0], '\0');
}

TEST(MeshRecord, IsBuiltFromCurvatureAndWeights) {
    EXPECT_TRUE((std::is_base_of_v<ObjCurvature, Object3D>));
    EXPECT_TRUE((std::is_base_of_v<ObjVertexWeight, Object3D>));
    EXPECT_FALSE(std::is_polymorphic_v<ObjCurvature>);
    EXPECT_FALSE(std::is_polymorphic_v<ObjVertexWeight>);
    EXPECT_TRUE(std::has_virtual_destructor_v<Object3D>);
}

TEST(MeshRecord, ANameMayFillItsFieldWithoutATerminator) {
    Object3D mesh;
    setName(mesh, std::string(300, 'n'));
    EXPECT_EQ(nameOf(mesh), std::string(256, 'n'));
}

TEST(MeshClone, HoldsPositionsFacesAndTexts) {
    const std::unique_ptr<Object3D> mesh = fullMesh();
    const std::unique_ptr<Object3D> clone = cloneMesh(*mesh);
    EXPECT_EQ(clone->numFaces, 12);
    EXPECT_EQ(clone->numVertices, 8);
    EXPECT_NE(clone->vertices.get(), mesh->vertices.get());
    EXPECT_TRUE(std::ranges::equal(clone->vertexSpan(), mesh->vertexSpan()));
    EXPECT_TRUE(std::ranges::equal(clone->faceSpan(), mesh->faceSpan()));
    EXPECT_EQ(nameOf(*clone), "stone.obj (clone)");
    EXPECT_STREQ(clone->label, "a label");
}

TEST(MeshClone, HoldsNothingElse) {
    const std::unique_ptr<Object3D> clone = cloneMesh(*fullMesh());
    EXPECT_EQ(clone->numTexels, 0);
    EXPECT_EQ(clone->texels, nullptr);
    EXPECT_EQ(clone->texelIndex, nullptr);
    EXPECT_EQ(clone->faceNormals, nullptr);
    EXPECT_EQ(clone->vertexNormals, nullptr);
    EXPECT_EQ(clone->faceColours, nullptr);
    EXPECT_EQ(clone->vertexColours, nullptr);
    EXPECT_EQ(clone->vertexWeights, nullptr);
    EXPECT_EQ(clone->minimumCurvature, nullptr);
    EXPECT_EQ(clone->auxiliary, nullptr);
    EXPECT_EQ(clone->meanEdgeLength, 0);
}

TEST(MeshClone, AddsToTheNameWhatFits) {
    const auto cloneName = [](std::size_t length) {
        Object3D mesh;
        mesh.vertices = makeArray<float>(0);
        mesh.vertexIndex = makeArray<std::int32_t>(0);
        setName(mesh, std::string(length, 'n'));
        return std::string(nameOf(*cloneMesh(mesh)));
    };
    EXPECT_EQ(cloneName(247), std::string(247, 'n') + " (clone)");
    EXPECT_EQ(cloneName(248), std::string(248, 'n') + " (clone");
    EXPECT_EQ(cloneName(254), std::string(254, 'n') + " ");
    EXPECT_EQ(cloneName(255), std::string(255, 'n'));
    EXPECT_EQ(cloneName(256), std::string(256, 'n'));
}

// Copying no bytes from a null pointer used to be undefined.
TEST(MeshClone, OfAnEmptyRecordIsEmpty) {
    const std::unique_ptr<Object3D> clone = cloneMesh(Object3D());
    EXPECT_EQ(clone->numVertices, 0);
    EXPECT_EQ(nameOf(*clone), " (clone)");
}

TEST(MeshCopy, HoldsTexelsColoursNormalsAndWeights) {
    const std::unique_ptr<Object3D> mesh = fullMesh();
    const std::unique_ptr<Object3D> copy = copyMesh(*mesh);
    EXPECT_EQ(nameOf(*copy), "stone.obj (clone)");
    EXPECT_EQ(copy->numTexels, 5);
    EXPECT_EQ(copy->texels[9], 0.25F);
    EXPECT_EQ(copy->texelIndex[35], 4);
    EXPECT_EQ(copy->faceColours[35], 0.5F);
    EXPECT_EQ(copy->vertexColours[23], 0.75F);
    EXPECT_EQ(copy->vertexWeights[7], 3.0F);
    EXPECT_TRUE(std::ranges::equal(copy->normalSpan(), mesh->normalSpan()));
    EXPECT_EQ(copy->faceNormals[35], mesh->faceNormals[35]);
    EXPECT_NE(copy->vertexNormals.get(), mesh->vertexNormals.get());
}

TEST(MeshCopy, HoldsNeitherCurvatureNorMeans) {
    const std::unique_ptr<Object3D> copy = copyMesh(*fullMesh());
    EXPECT_EQ(copy->minimumCurvature, nullptr);
    EXPECT_EQ(copy->curvatureReserve, nullptr);
    EXPECT_EQ(copy->auxiliary, nullptr);
    EXPECT_EQ(copy->meanEdgeLength, 0);
}

TEST(MeshCopy, LeavesAbsentWhatIsAbsent) {
    std::unique_ptr<Object3D> mesh = makeCube(1);
    mesh->numTexels = 7;
    const std::unique_ptr<Object3D> copy = copyMesh(*mesh);
    EXPECT_EQ(copy->numTexels, 7);
    EXPECT_EQ(copy->texels, nullptr);
    EXPECT_EQ(copy->texelIndex, nullptr);
    EXPECT_EQ(copy->vertexNormals, nullptr);
    EXPECT_EQ(copy->faceNormals, nullptr);
    EXPECT_EQ(copy->vertexWeights, nullptr);
}

TEST(MeshCopy, GivesASharedTexelIndexABlockOfItsOwn) {
    std::unique_ptr<Object3D> mesh = makeCube(1);
    mesh->texelIndex = borrowArray(mesh->vertexIndex);
    std::unique_ptr<Object3D> copy = copyMesh(*mesh);
    EXPECT_NE(copy->texelIndex.get(), copy->vertexIndex.get());
    EXPECT_NE(copy->texelIndex.get(), mesh->texelIndex.get());
    mesh.reset();
    EXPECT_EQ(copy->texelIndex[1], 2);
    copy.reset();
}

TEST(MeshMeasures, ABoxHoldsAllVertices) {
    const BoundingBox box = boundingBox(*makeMesh({1, -2, 3, -4, 5, -6, 0, 0, 7}, {}));
    EXPECT_EQ(box.xmin, -4);
    EXPECT_EQ(box.xmax, 1);
    EXPECT_EQ(box.ymin, -2);
    EXPECT_EQ(box.ymax, 5);
    EXPECT_EQ(box.zmin, -6);
    EXPECT_EQ(box.zmax, 7);
}

TEST(MeshMeasures, TheBoxOfOneVertexIsAPoint) {
    const BoundingBox box = boundingBox(*makeMesh({1, 2, 3}, {}));
    EXPECT_EQ(box.xmin, 1);
    EXPECT_EQ(box.xmax, 1);
    EXPECT_EQ(box.ymin, 2);
    EXPECT_EQ(box.zmax, 3);
}

TEST(MeshMeasures, TheBoxOfNothingIsZero) {
    const BoundingBox box = boundingBox(Object3D());
    EXPECT_EQ(box.xmin, 0);
    EXPECT_EQ(box.zmax, 0);
}

TEST(MeshMeasures, NotANumberNeitherShrinksNorGrowsABox) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const BoundingBox box = boundingBox(*makeMesh({0, nan, 1, nan, 5, 2}, {}));
    EXPECT_EQ(box.xmin, 0);
    EXPECT_EQ(box.xmax, 0);
    EXPECT_TRUE(std::isnan(box.ymin)) << "the first vertex stands until something is smaller";
    EXPECT_EQ(box.zmax, 2);
}

TEST(MeshMeasures, TheCentreIsTheMeanOfTheVertices) {
    double centre[4] = {0, 0, 0, 77};
    centreOfMass(*makeMesh({1, 2, 3, 4, 6, 8, 7, 10, 16}, {}), centre);
    EXPECT_EQ(centre[0], 4);
    EXPECT_EQ(centre[1], 6);
    EXPECT_EQ(centre[2], 9);
    EXPECT_EQ(centre[3], 77) << "not the centre's";
}

TEST(MeshMeasures, TheCentreIsSummedInDoublePrecision) {
    double centre[3];
    centreOfMass(*makeMesh({16777216, 0, 0, 1, 0, 0, 1, 0, 0}, {}), centre);
    EXPECT_EQ(centre[0], 16777218.0 / 3);
}

TEST(MeshMeasures, TheCentreOfNothingIsNotANumber) {
    double centre[3];
    centreOfMass(Object3D(), centre);
    EXPECT_TRUE(std::isnan(centre[0]));
    EXPECT_TRUE(std::isnan(centre[2]));
}

TEST(MeshMeasures, TheCentreNeedNotBeTakenAway) {
    centreOfMass(*makeCube(1), nullptr);
}

TEST(MeshMeasures, TheLargestCoordinateHasNoSign) {
    EXPECT_EQ(largestAbsoluteCoordinate(*makeMesh({-3, 2, 1, 0, 2.5F, -1}, {})), 3);
    EXPECT_EQ(largestAbsoluteCoordinate(Object3D()), 0);
}

TEST(MeshMeasures, NotANumberIsNotTheLargestCoordinate) {
    EXPECT_EQ(largestAbsoluteCoordinate(*makeMesh({std::numeric_limits<float>::quiet_NaN(), 2, 1}, {})), 2);
}

}  // namespace
}  // namespace talvek::test
