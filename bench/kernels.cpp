// The inner loops, each alone, for finding out what a change to one of them does.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <vector>

#include "base/number_text.h"
#include "bumpy_sphere.h"
#include "mesh/object3d.h"

namespace talvek::bench {
namespace {

constexpr std::int32_t kFewCuts = 50;
constexpr std::int32_t kManyCuts = 500;

std::unique_ptr<Object3D> bumpySphere(std::int32_t cuts) {
    const Surface surface = makeBumpySphere(cuts);
    auto mesh = std::make_unique<Object3D>();
    mesh->numVertices = static_cast<std::int32_t>(surface.positions.size() / 3);
    mesh->numFaces = static_cast<std::int32_t>(surface.faces.size() / 3);
    mesh->vertices = copyArray(surface.positions.data(), static_cast<std::int64_t>(surface.positions.size()));
    mesh->vertexIndex = copyArray(surface.faces.data(), static_cast<std::int64_t>(surface.faces.size()));
    mesh->updateNormals(true);
    return mesh;
}

void countVertices(benchmark::State& state, const Object3D& mesh) {
    state.SetItemsProcessed(state.iterations() * mesh.numVertices);
}

void formatCoordinates(benchmark::State& state) {
    const std::vector<float> values = makeBumpySphere(kFewCuts).positions;
    char text[kNumberTextSize];
    while (state.KeepRunning()) {
        for (const float value : values) {
            benchmark::DoNotOptimize(formatFixed6(text, value));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(values.size()));
}
BENCHMARK(formatCoordinates);

void parseCoordinates(benchmark::State& state) {
    std::vector<std::string> texts;
    for (const float value : makeBumpySphere(kFewCuts).positions) {
        char text[kNumberTextSize];
        texts.emplace_back(text, formatFixed6(text, value));
    }
    float value = 0;
    while (state.KeepRunning()) {
        for (const std::string& text : texts) {
            benchmark::DoNotOptimize(parseFloat(text, value));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(texts.size()));
}
BENCHMARK(parseCoordinates);

void normalUpdate(benchmark::State& state) {
    const std::unique_ptr<Object3D> mesh = bumpySphere(static_cast<std::int32_t>(state.range(0)));
    while (state.KeepRunning()) {
        mesh->updateVertexNormals();
        benchmark::ClobberMemory();
    }
    countVertices(state, *mesh);
}
BENCHMARK(normalUpdate)->Arg(kFewCuts)->Arg(kManyCuts)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace talvek::bench
