// Compressed meshes: read as the file within, whole or not at all.
#include <zlib.h>

#include "formats/imports.h"

namespace talvek::test {

std::string gzipped(std::string_view bytes) {
    z_stream zlib{};
    EXPECT_EQ(deflateInit2(&zlib, 9, Z_DEFLATED, 16 + MAX_WBITS, 9, Z_DEFAULT_STRATEGY), Z_OK);
    std::string packed(deflateBound(&zlib, static_cast<uLong>(bytes.size())) + 64, '\0');
    std::string input(bytes);
    zlib.next_in = reinterpret_cast<Bytef*>(input.data());
    zlib.avail_in = static_cast<uInt>(input.size());
    zlib.next_out = reinterpret_cast<Bytef*>(packed.data());
    zlib.avail_out = static_cast<uInt>(packed.size());
    EXPECT_EQ(deflate(&zlib, Z_FINISH), Z_STREAM_END);
    packed.resize(zlib.total_out);
    deflateEnd(&zlib);
    return packed;
}

namespace {

const std::string kSquare = "OFF\n4 1 0\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n4 0 1 2 3\n";

TEST(CompressedMeshes, AreReadAsTheFileWithin) {
    const host::ImportedMesh mesh = importBytes("square.off.gz", gzipped(kSquare));
    EXPECT_EQ(mesh.numVertices(), 4);
    EXPECT_EQ(mesh.numTriangles(), 2);
}

TEST(CompressedMeshes, MayConsistOfSeveralMembers) {
    const std::string packed = gzipped(kSquare.substr(0, 20)) + gzipped(kSquare.substr(20));
    EXPECT_EQ(importBytes("square.off.gz", packed).numTriangles(), 2);
}

TEST(CompressedMeshes, CutOnesAreRefusedAtEveryPlace) {
    const std::string packed = gzipped(kSquare);
    for (std::size_t size = 2; size < packed.size(); ++size) {
        EXPECT_NE(refusalOf("square.off.gz", packed.substr(0, size)), "") << size;
    }
    EXPECT_EQ(refusalOf("square.off.gz", packed.substr(0, packed.size() - 1)),
              "square.off.gz: the compressed file ends too early; fetch it again");
}

TEST(CompressedMeshes, DamageIsFoundByTheChecksum) {
    std::string packed = gzipped(kSquare);
    packed[packed.size() - 6] = static_cast<char>(packed[packed.size() - 6] + 1);
    EXPECT_EQ(refusalOf("square.off.gz", packed), "square.off.gz: the compressed file is damaged; fetch it again");
}

TEST(CompressedMeshes, ExpandAHundredfoldAndNoFurther) {
    const std::string zeros(8 << 20, '\n');
    const std::string refusal = refusalOf("zeros.off.gz", gzipped(kSquare.substr(0, 4) + zeros + kSquare.substr(4)));
    EXPECT_NE(refusal.find("which no mesh of its size does"), std::string::npos) << refusal;
}

}  // namespace
}  // namespace talvek::test
