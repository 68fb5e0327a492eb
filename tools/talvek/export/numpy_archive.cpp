#include "talvek/export/numpy_archive.h"

#include <span>

#include "base/little_endian.h"
#include "talvek/export/export_failure.h"
#include "talvek/export/zip_writer.h"
#include "talvek/results/displacement.h"

namespace talvek::host {

namespace {

/// The head of a .npy file of version 1, padded so that the numbers begin at a multiple of 64 bytes.
std::string npyHead(const std::string& type, const std::string& shape) {
    constexpr std::size_t kAlignment = 64;
    constexpr std::size_t kFixed = 10;
    std::string text = "{'descr': '<" + type + "', 'fortran_order': False, 'shape': " + shape + ", }";
    while ((kFixed + text.size() + 1) % kAlignment != 0) {
        text += ' ';
    }
    text += '\n';
    std::string head("\x93NUMPY\x01\x00", 8);
    head += {static_cast<char>(text.size() & 0xFF), static_cast<char>(text.size() >> 8)};
    return head + text;
}

template <typename T>
std::string bytesOfNumbers(std::span<const T> values) {
    std::string bytes(values.size() * sizeof(T), '\0');
    char* out = bytes.data();
    for (const T value : values) {
        out = toLittleEndian(out, value);
    }
    return bytes;
}

std::string shapeOf(std::size_t count) {
    return "(" + std::to_string(count) + ",)";
}

template <typename T>
void writeArray(ZipWriter& zip, const std::string& name, const std::string& type, std::span<const T> values) {
    const std::string head = npyHead(type, shapeOf(values.size()));
    zip.begin(name + ".npy", head.size() + values.size_bytes());
    zip.write(head);
    zip.write(bytesOfNumbers(values));
    zip.end();
}

using Measure = std::vector<double> (*)(const Object3D& first, const Object3D& mesh);

/// One row for each surface. The surfaces are read once for each such table: all at once need not fit into memory.
void writeTable(ZipWriter& zip, const std::string& name, const RunSeries& series, Measure measure) {
    const std::unique_ptr<Object3D> first = series.read(series.at(0));
    const auto numVertices = static_cast<std::size_t>(first->numVertices);
    const std::size_t rows = series.surfaces().size();
    const std::string head = npyHead("f4", "(" + std::to_string(rows) + ", " + std::to_string(numVertices) + ")");
    zip.begin(name + ".npy", head.size() + rows * numVertices * sizeof(float));
    zip.write(head);
    for (const SeriesSurface& surface : series.surfaces()) {
        std::vector<float> row(numVertices, 0.0F);
        if (surface.epoch > 0) {
            const std::unique_ptr<Object3D> mesh = series.read(surface);
            series.requireSameFaces(*first, *mesh, surface);
            const std::vector<double> values = measure(*first, *mesh);
            row.assign(values.begin(), values.end());
        }
        zip.write(bytesOfNumbers(std::span<const float>(row)));
    }
    zip.end();
}

}  // namespace

void writeNumpyArchive(const RunSeries& series, const std::string& path) {
    std::vector<std::int32_t> epochs;
    std::vector<float> days;
    for (const SeriesSurface& surface : series.surfaces()) {
        epochs.push_back(surface.epoch);
        days.push_back(static_cast<float>(surface.days));
    }
    OutputFile file(path.c_str());
    ZipWriter zip(file);
    writeArray(zip, "epoch", "i4", std::span<const std::int32_t>(epochs));
    writeArray(zip, "days", "f4", std::span<const float>(days));
    const std::vector<std::int32_t> minerals = series.minerals();
    if (!minerals.empty()) {
        writeArray(zip, "mineral", "i4", std::span<const std::int32_t>(minerals));
    }
    writeTable(zip, "displacement_mm", series, normalDisplacements);
    writeTable(zip, "distance_mm", series, distances);
    zip.finish();
    finishExport(file, path);
}

}  // namespace talvek::host
