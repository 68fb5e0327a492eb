#include "talvek/export/point_cache.h"

#include <string_view>

#include "talvek/export/binary_rows.h"
#include "talvek/export/export_failure.h"

namespace talvek::host {

void writePointCache(const RunSeries& series, const std::string& path) {
    const std::unique_ptr<Object3D> first = series.read(series.at(0));
    OutputFile file(path.c_str());
    constexpr std::string_view kSignature("POINTCACHE2\0", 12);
    constexpr std::int32_t kVersion = 1;
    file.write(kSignature);
    writeNumber(file, kVersion);
    writeNumber(file, first->numVertices);
    constexpr float kFirstFrame = 0;
    constexpr float kFramesPerSample = 1;
    writeNumber(file, kFirstFrame);
    writeNumber(file, kFramesPerSample);
    writeNumber(file, static_cast<std::int32_t>(series.surfaces().size()));
    for (const SeriesSurface& surface : series.surfaces()) {
        if (surface.epoch == 0) {
            writeNumbers(file, std::span<const float>(first->vertexSpan()));
        } else {
            const std::unique_ptr<Object3D> mesh = series.read(surface);
            series.requireSameFaces(*first, *mesh, surface);
            writeNumbers(file, std::span<const float>(mesh->vertexSpan()));
        }
    }
    finishExport(file, path);
}

}  // namespace talvek::host
