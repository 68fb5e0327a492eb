// Normals of faces and vertices, the mean edge length and the mean normal.
#include "mesh/normals.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "mesh/object3d.h"
#include "support/meshes.h"
#include "support/random_numbers.h"
#include "weathering/surface.h"

namespace talvek::test {
namespace {

using Floats = std::vector<float>;

Floats floats(const float* values, std::int64_t count) {
    return {values, values + count};
}

/// Equal to the last bit; one not-a-number is as good as another.
void expectSame(const Floats& got, const Floats& expected) {
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
        ASSERT_TRUE((std::isnan(got[i]) && std::isnan(expected[i])) ||
                    std::bit_cast<std::uint32_t>(got[i]) == std::bit_cast<std::uint32_t>(expected[i]))
            << i << ": " << got[i] << " instead of " << expected[i];
    }
}

/// The same results once more, written down as plainly as can be.
struct PlainNormals {
    Floats faces;
    Floats vertices;
    float meanEdge = 0;
    float mean[3] = {0, 0, 0};

    explicit PlainNormals(const Object3D& mesh) {
        for (int f = 0; f < mesh.numFaces; ++f) {
            addFace(mesh, f);
        }
        meanEdge = meanEdge / static_cast<float>(mesh.numFaces);
        for (float& m : mean) {
            m = m / static_cast<float>(mesh.numFaces);
        }
        mean[0] = mean[0] / std::sqrt(mean[0] * mean[0] + mean[1] * mean[1] + mean[2] * mean[2]);
        mean[1] = mean[1] / std::sqrt(mean[0] * mean[0] + mean[1] * mean[1] + mean[2] * mean[2]);
        mean[2] = mean[2] / std::sqrt(mean[0] * mean[0] + mean[1] * mean[1] + mean[2] * mean[2]);
        for (int v = 0; v < mesh.numVertices; ++v) {
            addVertex(mesh, v);
        }
    }

  private:
    static double edge(const float* p, const float* q) {
        double sum = 0;
        for (int k = 0; k < 3; ++k) {
            const double d = static_cast<double>(p[k]) - static_cast<double>(q[k]);
            sum = k == 0 ? d * d : sum + d * d;
        }
        return std::sqrt(sum);
    }

    void addFace(const Object3D& mesh, int f) {
        const float* corner[3];
        for (int k = 0; k < 3; ++k) {
            corner[k] =
                &mesh.vertices[static_cast<std::size_t>(3 * mesh.vertexIndex[static_cast<std::size_t>(3 * f + k)])];
        }
        float p[3];
        float q[3];
        for (int k = 0; k < 3; ++k) {
            p[k] = corner[0][k] - corner[1][k];
            q[k] = corner[1][k] - corner[2][k];
        }
        const float n[3] = {p[1] * q[2] - p[2] * q[1], p[2] * q[0] - p[0] * q[2], p[0] * q[1] - p[1] * q[0]};
        float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
        if (length <= 1.0e-7F) {
            length = 1;
        }
        for (int k = 0; k < 3; ++k) {
            faces.push_back(n[k] / length);
            mean[k] = mean[k] + n[k] / length;
        }
        const double perimeter = edge(corner[0], corner[1]) + edge(corner[1], corner[2]) + edge(corner[2], corner[0]);
        meanEdge = meanEdge + static_cast<float>(perimeter / 3.0);
    }

    void addVertex(const Object3D& mesh, int v) {
        float sum[3] = {0, 0, 0};
        int uses = 0;
        for (std::size_t corner = 0; corner < mesh.faceSpan().size(); ++corner) {
            if (mesh.vertexIndex[corner] == v) {
                ++uses;
                for (std::size_t k = 0; k < 3; ++k) {
                    sum[k] = sum[k] + faces[corner / 3 * 3 + k];
                }
            }
        }
        for (float& s : sum) {
            s = uses == 0 ? 0 : s / static_cast<float>(uses);
        }
        const float length = std::sqrt(sum[0] * sum[0] + sum[1] * sum[1] + sum[2] * sum[2]);
        for (const float s : sum) {
            vertices.push_back(length == 0 ? 0 : s / length);
        }
    }
};

void expectPlainNormals(Object3D& mesh) {
    mesh.updateNormals(true);
    const PlainNormals plain(mesh);
    expectSame(floats(mesh.faceNormals.get(), 3 * mesh.numFaces), plain.faces);
    expectSame(floats(mesh.vertexNormals.get(), 3 * mesh.numVertices), plain.vertices);
    expectSame({mesh.meanEdgeLength}, {plain.meanEdge});
    expectSame(floats(mesh.meanNormal, 3), floats(plain.mean, 3));
    expectSame(floats(computeVertexNormals(mesh).get(), 3 * mesh.numVertices), plain.vertices);
    expectSame(floats(computeVertexNormalsPortably(mesh).get(), 3 * mesh.numVertices), plain.vertices);
}

std::unique_ptr<Object3D> randomSoup(RandomNumbers& numbers, float size, int numVertices, int numFaces) {
    Floats vertices;
    std::vector<std::int32_t> faces;
    for (int i = 0; i < 3 * numVertices; ++i) {
        vertices.push_back(numbers.coordinate(size));
    }
    for (int i = 0; i < 3 * numFaces; ++i) {
        faces.push_back(static_cast<std::int32_t>(numbers.below(static_cast<std::uint32_t>(numVertices))));
    }
    return makeMesh(vertices, faces);
}

TEST(Normals, OfACounterClockwiseFacePointOutwards) {
    const auto mesh = makeMesh({0, 0, 0, 2, 0, 0, 0, 2, 0}, {0, 1, 2});
    mesh->updateNormals(true);
    EXPECT_EQ(floats(mesh->faceNormals.get(), 3), (Floats{0, 0, 1}));
    EXPECT_EQ(floats(mesh->vertexNormals.get(), 9), (Floats{0, 0, 1, 0, 0, 1, 0, 0, 1}));
    EXPECT_EQ(floats(mesh->meanNormal, 2), (Floats{0, 0}));
    EXPECT_EQ(mesh->meanNormal[2], 1);
}

TEST(Normals, OfAKnownSolidAreBitForBitThePlainOnes) {
    for (const float size : {1.0e-6F, 0.37F, 1.0F, 12345.678F}) {
        expectPlainNormals(*makeCube(size));
        expectPlainNormals(*makeSphere(size, 2));
        expectPlainNormals(*makePlane(7));
    }
}

TEST(Normals, OfARandomSoupAreBitForBitThePlainOnes) {
    RandomNumbers numbers;
    for (const float size : {1.0e-4F, 1.0F, 1000.0F, 1.0e20F}) {
        expectPlainNormals(*randomSoup(numbers, size, 100, 500));
    }
}

// Several vectors are worked on at a time, and any number can be left over.
TEST(Normals, OfAnyNumberOfFacesAndVerticesAreBitForBitThePlainOnes) {
    RandomNumbers numbers;
    for (int numVertices = 1; numVertices < 10; ++numVertices) {
        for (int numFaces = 0; numFaces < 10; ++numFaces) {
            expectPlainNormals(*randomSoup(numbers, 1, numVertices, numFaces));
        }
    }
}

TEST(Normals, OfPositionsThatAreNotNumbersAreAlikeOnMachinesWithoutVectors) {
    RandomNumbers numbers;
    for (int i = 0; i < 200; ++i) {
        const auto mesh = randomSoup(numbers, 1, 20, 40);
        for (int k = 0; k < 10; ++k) {
            mesh->vertices[numbers.below(60)] = numbers.anyFloat();
        }
        expectPlainNormals(*mesh);
        const HeapArray<float> fast = computeVertexNormals(*mesh);
        const HeapArray<float> portable = computeVertexNormalsPortably(*mesh);
        EXPECT_EQ(std::memcmp(fast.get(), portable.get(), 60 * sizeof(float)), 0);
    }
}

// Beyond 2^24 a single-precision counter no longer counts.
TEST(Normals, OfMoreFacesThanAFloatCanCountAreDividedByTheirNumber) {
    constexpr std::int32_t kNumFaces = 6000000;
    Object3D mesh;
    mesh.numVertices = 3;
    mesh.numFaces = kNumFaces;
    mesh.vertices = makeZeroedArray<float>(9);
    mesh.vertices[3] = 1;
    mesh.vertices[7] = 1;
    mesh.vertexIndex = makeZeroedArray<std::int32_t>(3 * std::int64_t{kNumFaces});
    // Degenerate faces add nothing but to the count. Divided by the right count the tiny product of the last face has a
    // square that vanishes; divided by 2^24 it has not.
    const std::size_t last = 3 * (std::size_t{kNumFaces} - 1);
    mesh.vertexIndex[last + 1] = 1;
    mesh.vertexIndex[last + 2] = 2;
    for (const float size : {1.0F, 2.15e-8F}) {
        mesh.vertices[3] = size;
        mesh.vertices[7] = size;
        const auto count = static_cast<float>(3 * kNumFaces - 2);
        const float z = (size <= 1.0e-7F ? size * size : 1.0F) / count;
        const float length = std::sqrt(z * z);
        const float expected = length == 0 ? 0 : z / length;
        EXPECT_EQ(computeVertexNormals(mesh)[2], expected) << size;
        EXPECT_EQ(computeVertexNormalsPortably(mesh)[2], expected) << size;
    }
}

TEST(Normals, CanBeHadForTheVerticesAlone) {
    const auto mesh = makeSphere(3, 2);
    mesh->updateVertexNormals();
    EXPECT_EQ(mesh->faceNormals, nullptr);
    EXPECT_EQ(mesh->faceColours, nullptr);
    EXPECT_EQ(mesh->meanEdgeLength, 0);
    const Floats alone = floats(mesh->vertexNormals.get(), 3 * mesh->numVertices);
    mesh->updateNormals(true);
    expectSame(floats(mesh->vertexNormals.get(), 3 * mesh->numVertices), alone);
}

TEST(Normals, AreNotNeededToMeasureTheFaces) {
    const auto mesh = makeSphere(3, 2);
    mesh->measureFaces();
    EXPECT_EQ(mesh->faceNormals, nullptr);
    EXPECT_EQ(mesh->vertexNormals, nullptr);
    const auto whole = makeSphere(3, 2);
    whole->updateNormals(true);
    EXPECT_EQ(mesh->meanEdgeLength, whole->meanEdgeLength);
    expectSame(floats(mesh->meanNormal, 3), floats(whole->meanNormal, 3));
}

TEST(Normals, OfAPointAreZero) {
    const auto mesh = makeMesh({1, 2, 3, 1, 2, 3, 1, 2, 3}, {0, 1, 2});
    mesh->updateNormals(true);
    EXPECT_EQ(floats(mesh->faceNormals.get(), 3), (Floats{0, 0, 0}));
    EXPECT_EQ(floats(mesh->vertexNormals.get(), 9), Floats(9, 0));
    EXPECT_EQ(mesh->meanEdgeLength, 0);
}

TEST(Normals, OfADegenerateFaceAreItsTinyCrossProduct) {
    const auto mesh = makeMesh({0, 0, 0, 1.0e-4F, 0, 0, 0, 1.0e-4F, 0}, {0, 1, 2});
    mesh->updateNormals(true);
    EXPECT_EQ(mesh->faceNormals[2], 1.0e-4F * 1.0e-4F);
    EXPECT_EQ(mesh->vertexNormals[2], 1) << "a vertex normal is normalised all the same";
}

TEST(Normals, ALengthOfTheSmallestUnitCountsAsDegenerate) {
    const auto mesh = makeMesh({0, 0, 0, 1.0e-7F, 0, 0, 0, 1, 0}, {0, 1, 2});
    mesh->updateNormals(true);
    EXPECT_EQ(mesh->faceNormals[2], 1.0e-7F);
    const auto larger = makeMesh({0, 0, 0, std::nextafter(1.0e-7F, 1.0F), 0, 0, 0, 1, 0}, {0, 1, 2});
    larger->updateNormals(true);
    EXPECT_EQ(larger->faceNormals[2], 1);
}

TEST(Normals, OfAVertexWithoutFacesAreZero) {
    const auto mesh = makeMesh({9, 9, 9, 0, 0, 0, 1, 0, 0, 0, 1, 0}, {1, 2, 3});
    mesh->updateNormals(true);
    EXPECT_EQ(floats(mesh->vertexNormals.get(), 3), (Floats{0, 0, 0}));
}

TEST(Normals, ThatCancelAreZero) {
    const auto mesh = makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2, 0, 2, 1});
    mesh->updateNormals(true);
    EXPECT_EQ(floats(mesh->vertexNormals.get(), 9), Floats(9, 0));
    EXPECT_TRUE(std::isnan(mesh->meanNormal[0]));
}

TEST(Normals, AVertexThatAFaceNamesTwiceCountsTwice) {
    const auto mesh = makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 1, 2, 0, 3, 1, 0, 0, 3});
    expectPlainNormals(*mesh);
}

TEST(Normals, AreNotWeightedByArea) {
    const auto mesh = makeMesh({0, 0, 0, 100, 0, 0, 0, 100, 0, 0, 0, 1}, {0, 1, 2, 0, 3, 1});
    mesh->updateNormals(true);
    EXPECT_EQ(mesh->vertexNormals[1], mesh->vertexNormals[2]);
    EXPECT_FLOAT_EQ(mesh->vertexNormals[1], std::sqrt(0.5F));
}

TEST(Normals, OfHugeFacesAreWhatTheArithmeticGives) {
    const auto mesh = makeMesh({0, 0, 0, 1.0e30F, 0, 0, 0, 1.0e30F, 0}, {0, 1, 2});
    mesh->updateNormals(true);
    EXPECT_TRUE(std::isnan(mesh->faceNormals[2])) << "infinity divided by infinity";
}

// The sign used to be that of the first or the second operand, as the compiler liked, so that frames of such meshes
// differed from build to build.
TEST(Normals, ThatAreNotNumbersHaveOneSign) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto mesh = makeMesh({inf, nan, inf, nan, -nan, -inf, 3, nan, -nan}, {0, 1, 2});
    mesh->updateNormals(true);
    moveAlongNormals(*mesh, 1);
    for (std::size_t i = 0; i < 9; ++i) {
        EXPECT_TRUE(std::isnan(mesh->vertexNormals[i]) && std::signbit(mesh->vertexNormals[i])) << i;
        EXPECT_TRUE(std::isnan(mesh->vertices[i]) && std::signbit(mesh->vertices[i])) << i;
    }
}

TEST(Normals, OfAMeshWithoutFacesDivideByZero) {
    const auto mesh = makeMesh({1, 2, 3}, {});
    mesh->updateNormals(true);
    EXPECT_TRUE(std::isnan(mesh->meanEdgeLength));
    EXPECT_TRUE(std::isnan(mesh->meanNormal[0]));
    EXPECT_NE(mesh->faceNormals, nullptr);
    EXPECT_EQ(floats(mesh->vertexNormals.get(), 3), (Floats{0, 0, 0}));
}

TEST(Normals, OfAnEmptyMeshExistAndAreEmpty) {
    Object3D mesh;
    mesh.updateNormals(true);
    EXPECT_NE(mesh.faceNormals, nullptr);
    EXPECT_NE(mesh.vertexNormals, nullptr);
    EXPECT_NE(mesh.faceColours, nullptr);
    EXPECT_TRUE(std::isnan(mesh.meanEdgeLength));
}

TEST(Normals, WithoutVertexNormalsTheOldOnesStay) {
    const auto mesh = makeCube(1);
    mesh->updateNormals(false);
    EXPECT_EQ(mesh->vertexNormals, nullptr);
    EXPECT_NE(mesh->faceNormals, nullptr);
    mesh->vertexNormals = makeFilledArray(24, 7.0F);
    const float* before = mesh->vertexNormals.get();
    mesh->updateNormals(false);
    EXPECT_EQ(mesh->vertexNormals.get(), before);
    EXPECT_EQ(mesh->vertexNormals[23], 7);
    mesh->updateNormals(true);
    EXPECT_NE(mesh->vertexNormals[23], 7);
}

TEST(Normals, FaceColoursAreWhiteUnlessTheyAreThere) {
    const auto mesh = makeCube(1);
    mesh->updateNormals(true);
    EXPECT_EQ(floats(mesh->faceColours.get(), 36), Floats(36, 1));
    mesh->faceColours[5] = 0.25F;
    mesh->updateNormals(true);
    EXPECT_EQ(mesh->faceColours[5], 0.25F);
}

TEST(MeanEdgeLength, CountsEveryFace) {
    const auto mesh = makeMesh({0, 0, 0, 3, 0, 0, 0, 4, 0}, {0, 1, 2});
    mesh->updateNormals(true);
    EXPECT_EQ(mesh->meanEdgeLength, 4) << "a third of 3 + 4 + 5";
}

TEST(MeanEdgeLength, AddsTheFormerMeanAtEveryUpdate) {
    const auto mesh = makePlane(1);
    mesh->updateNormals(true);
    const float once = mesh->meanEdgeLength;
    const Floats normals = floats(mesh->vertexNormals.get(), 12);
    mesh->updateNormals(true);
    const auto perFace = static_cast<float>((1.0 + 1.0 + std::sqrt(2.0)) / 3.0);
    EXPECT_EQ(mesh->meanEdgeLength, (once + perFace + perFace) / 2);
    expectSame(floats(mesh->vertexNormals.get(), 12), normals);
    const float twice = mesh->meanEdgeLength;
    mesh->updateNormals(false);
    EXPECT_EQ(mesh->meanEdgeLength, (twice + perFace + perFace) / 2);
}

TEST(MeanNormal, IsNormalisedComponentByComponent) {
    const auto mesh = makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 1, 2, 0, 2, 3, 0, 3, 1});
    mesh->updateNormals(true);
    const float third = 1.0F / 3;
    const float x = third / std::sqrt(third * third + third * third + third * third);
    const float y = third / std::sqrt(x * x + third * third + third * third);
    const float z = third / std::sqrt(x * x + y * y + third * third);
    expectSame(floats(mesh->meanNormal, 3), {x, y, z});
}

}  // namespace
}  // namespace talvek::test
