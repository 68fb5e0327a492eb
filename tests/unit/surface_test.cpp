// The surface that a run moves, beside the mesh that was loaded.
#include "weathering/surface.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "mesh/normals.h"
#include "support/meshes.h"

namespace talvek::test {
namespace {

std::unique_ptr<Object3D> texturedSphere() {
    std::unique_ptr<Object3D> mesh = makeSphere(10, 2);
    layTexture(*mesh, 0.1F, 0.1F);
    return mesh;
}

std::vector<float> positionsOf(const Object3D& mesh) {
    return {mesh.vertexSpan().begin(), mesh.vertexSpan().end()};
}

std::vector<float> normalsOf(const Object3D& mesh) {
    return {mesh.normalSpan().begin(), mesh.normalSpan().end()};
}

TEST(WorkingCopy, SharesWhatARunDoesNotChange) {
    const auto mesh = texturedSphere();
    const std::unique_ptr<Object3D> copy = workingCopy(*mesh);
    EXPECT_EQ(copy->numVertices, mesh->numVertices);
    EXPECT_EQ(copy->numFaces, mesh->numFaces);
    EXPECT_EQ(copy->numTexels, mesh->numTexels);
    EXPECT_EQ(copy->vertexIndex.get(), mesh->vertexIndex.get());
    EXPECT_EQ(copy->texels.get(), mesh->texels.get());
    EXPECT_EQ(copy->texelIndex.get(), mesh->texelIndex.get());
    EXPECT_EQ(positionsOf(*copy), positionsOf(*mesh));
}

TEST(WorkingCopy, LeavesTheMeshAsItIsWhenItMoves) {
    const auto mesh = texturedSphere();
    mesh->updateNormals(true);
    const std::vector<float> positions = positionsOf(*mesh);
    const std::vector<float> normals = normalsOf(*mesh);
    {
        const std::unique_ptr<Object3D> copy = workingCopy(*mesh);
        moveAlongNormals(*copy, -1);
        copy->updateVertexNormals();
        EXPECT_NE(positionsOf(*copy), positions);
    }
    EXPECT_EQ(positionsOf(*mesh), positions);
    EXPECT_EQ(normalsOf(*mesh), normals);
    EXPECT_EQ(mesh->faceSpan().back(), makeSphere(10, 2)->faceSpan().back());
}

TEST(WorkingCopy, HasTheNormalsOfTheMesh) {
    const auto mesh = texturedSphere();
    mesh->vertexNormals = makeFilledArray(3 * std::int64_t{mesh->numVertices}, 0.5F);
    EXPECT_EQ(normalsOf(*workingCopy(*mesh)), normalsOf(*mesh));
    EXPECT_EQ(normalsOf(*withNormals(*mesh)), normalsOf(*mesh));
}

TEST(WorkingCopy, ComputesTheNormalsThatTheMeshHasNot) {
    const auto mesh = texturedSphere();
    const std::vector<float> copied = normalsOf(*workingCopy(*mesh));
    const std::vector<float> shown = normalsOf(*withNormals(*mesh));
    EXPECT_EQ(mesh->vertexNormals, nullptr);
    mesh->updateNormals(true);
    EXPECT_EQ(copied, normalsOf(*mesh));
    EXPECT_EQ(shown, normalsOf(*mesh));
}

TEST(WorkingCopy, OfAnEmptyMeshIsEmpty) {
    const Object3D mesh;
    const std::unique_ptr<Object3D> copy = workingCopy(mesh);
    EXPECT_EQ(copy->numVertices, 0);
    EXPECT_NE(copy->vertexNormals, nullptr);
    EXPECT_NE(withNormals(mesh)->vertexNormals, nullptr);
}

}  // namespace
}  // namespace talvek::test
