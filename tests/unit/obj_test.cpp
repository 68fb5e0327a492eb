// Reading OBJ text.
#include "Vexo_Lib/obj.h"

#include <gtest/gtest.h>

#include "support/test_files.h"

namespace talvek::test {
namespace {

TEST(ObjReader, ReadsATriangle) {
    const TempFolder folder;
    writeFile(folder.file("a.obj"), "v 0 0 0\nv 1 0 0\nv 0 1 0.5\nf 1/1 2/2 3/3\n");
    const std::unique_ptr<Object3D> mesh = ReadObjFile(folder.file("a.obj").c_str(), true);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numVertices, 3);
    EXPECT_EQ(mesh->numFaces, 1);
    EXPECT_EQ(mesh->vertices[8], 0.5F);
    EXPECT_EQ(mesh->texelIndex[2], 2);
}

}  // namespace
}  // namespace talvek::test
