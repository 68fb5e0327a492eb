// Whatever is done to a file, it is imported with every index in place, or refused with a reason.
#include <new>

#include "formats/imports.h"
#include "formats/samples.h"
#include "support/hostile_bytes.h"

namespace talvek::test {
namespace {

class HostileMeshes : public testing::TestWithParam<Sample> {};

int readings;

void importDamaged(const std::string& path, const std::string& bytes) {
    writeFile(path, bytes);
    try {
        const host::ImportedMesh mesh = host::importMesh(path);
        for (const std::int32_t corner : mesh.corners) {
            ASSERT_TRUE(corner >= 0 && corner < mesh.numVertices());
        }
        for (const std::int32_t texel : mesh.cornerTexels) {
            ASSERT_TRUE(texel >= -1 && texel < static_cast<std::int32_t>(mesh.texels.size() / 2));
        }
        ASSERT_TRUE(mesh.cornerTexels.empty() || mesh.cornerTexels.size() == mesh.corners.size());
        ASSERT_TRUE(mesh.colours.empty() || mesh.colours.size() / 4 == mesh.positions.size() / 3);
        ++readings;
    } catch (const host::Failure& failure) {
        ASSERT_TRUE(std::string(failure.what()).starts_with(path)) << failure.what();
    }
}

TEST_P(HostileMeshes, EveryPrefix) {
    const TempFolder folder;
    readings = 0;
    forEachPrefix(GetParam().bytes,
                  [&](const std::string& bytes) { importDamaged(folder.file(GetParam().name), bytes); });
    EXPECT_GT(readings, 0);
}

TEST_P(HostileMeshes, EveryByte) {
    const TempFolder folder;
    readings = 0;
    forEachChangedByte(GetParam().bytes,
                       [&](const std::string& bytes) { importDamaged(folder.file(GetParam().name), bytes); });
    EXPECT_GT(readings, 0);
}

INSTANTIATE_TEST_SUITE_P(Formats, HostileMeshes, testing::ValuesIn(samples()),
                         [](const auto& given) { return given.param.title; });

}  // namespace
}  // namespace talvek::test
