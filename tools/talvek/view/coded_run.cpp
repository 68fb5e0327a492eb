#include "talvek/view/coded_run.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>

#include "talvek/formats/mesh_file.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

std::unique_ptr<Object3D> readSurface(const std::string& path) {
    requireReadable(path);
    std::unique_ptr<Object3D> mesh = readUnchecked(path);
    if (mesh == nullptr || mesh->numVertices == 0 || firstBadCorner(*mesh) >= 0) {
        throw Failure(kExitFrame, path + ": the surface does not load; run again");
    }
    return mesh;
}

/// The mean step of a coordinate, not counting those that are not finite.
double meanStep(std::span<const float> before, std::span<const float> after) {
    double sum = 0;
    for (std::size_t i = 0; i < before.size(); ++i) {
        const double step = std::abs(static_cast<double>(after[i]) - static_cast<double>(before[i]));
        sum += std::isfinite(step) ? step : 0;
    }
    return before.empty() ? 0 : sum / static_cast<double>(before.size());
}

std::vector<std::size_t> everyNth(std::size_t count, std::size_t step) {
    std::vector<std::size_t> kept;
    for (std::size_t i = 0; i < count; i += step) {
        kept.push_back(i);
    }
    if (kept.back() != count - 1) {
        kept.push_back(count - 1);
    }
    return kept;
}

}  // namespace

std::uint64_t CodedRun::bytes() const {
    return std::accumulate(frames.begin(), frames.end(),
                           faceBlock.piece.size + (mineralBlock ? mineralBlock->piece.size : 0),
                           [](std::uint64_t sum, const StoredFrame& frame) { return sum + frame.block.piece.size; });
}

RunCoder::RunCoder(const RunSeries& series, const std::filesystem::path& folder) : surfaces_(folder), blocks_(folder) {
    readSurfaces(series);
}

void RunCoder::take(const Object3D& mesh) {
    const Positions positions = positionsOf(mesh.vertexSpan());
    pieces_.push_back(
        surfaces_.append({reinterpret_cast<const std::uint8_t*>(positions.data()), 4 * positions.size()}));
    const double before = movement_.empty() ? 0 : movement_.back();
    movement_.push_back(before + meanStep(before_, mesh.vertexSpan()));
    before_.assign(mesh.vertexSpan().begin(), mesh.vertexSpan().end());
}

void RunCoder::storeMinerals(const std::vector<std::int32_t>& minerals) {
    if (!minerals.empty()) {
        const Bytes classes(minerals.begin(), minerals.end());
        run_.mineralBlock = StoredBlock{1, 0, blocks_.append(compress(classes, Redundancy::kRepetitions))};
    }
}

void RunCoder::readSurfaces(const RunSeries& series) {
    const SurfaceGauge gauge(series);
    run_.vertices = gauge.first().numVertices;
    run_.faces = gauge.first().numFaces;
    run_.faceBlock = store(encodeFaces(gauge.first().faceSpan()));
    storeMinerals(gauge.minerals());
    for (const SeriesSurface& surface : series.surfaces()) {
        if (surface.epoch == 0) {
            take(gauge.first());
            run_.figures.push_back(gauge.measure(surface, gauge.first()));
        } else {
            const std::unique_ptr<Object3D> mesh = readSurface(surface.file);
            run_.figures.push_back(gauge.measure(surface, *mesh));
            take(*mesh);
        }
    }
    before_ = {};
}

StoredBlock RunCoder::store(const Block& block) {
    return {block.width, block.escapes, blocks_.append(block.bytes)};
}

Positions RunCoder::positionsAt(std::size_t surface) {
    Positions positions(pieces_[surface].size / sizeof(std::uint32_t));
    surfaces_.read(pieces_[surface], {reinterpret_cast<std::uint8_t*>(positions.data()), 4 * positions.size()});
    return positions;
}

StoredFrame RunCoder::codeFrame(CodedFrame coded, std::span<const std::size_t> kept) {
    const Positions positions = positionsAt(kept[coded.frame]);
    StoredFrame stored;
    stored.surface = kept[coded.frame];
    stored.checksum = checksumOfPositions(positions);
    if (coded.references.empty()) {
        stored.coded = std::move(coded);
        stored.block = store(encodeFirst(positions));
        return stored;
    }
    std::vector<Positions> held;
    for (const Reference& reference : coded.references) {
        held.push_back(positionsAt(kept[reference.frame]));
    }
    std::vector<const Positions*> references;
    std::ranges::transform(held, std::back_inserter(references), [](const Positions& each) { return &each; });
    std::vector<double> times;
    std::ranges::transform(kept, std::back_inserter(times), [this](std::size_t each) { return movement_[each]; });
    // Where the movement is even, the two neighbours alone foretell with less noise.
    CodedFrame near = coded;
    near.references.resize(std::min<std::size_t>(2, coded.references.size()));
    setWeights(near, times);
    setWeights(coded, times);
    const std::span<const Positions* const> nearReferences(references.data(), near.references.size());
    if (foretellingError(near, positions, nearReferences) <= foretellingError(coded, positions, references)) {
        coded = std::move(near);
    }
    stored.block = store(encodeFrame(coded, positions, {references.data(), coded.references.size()}));
    stored.coded = std::move(coded);
    return stored;
}

CodedRun RunCoder::code(std::size_t step) {
    const std::vector<std::size_t> kept = everyNth(pieces_.size(), step);
    CodedRun run = run_;
    for (CodedFrame& coded : codingOrder(kept.size())) {
        run.frames.push_back(codeFrame(std::move(coded), kept));
    }
    return run;
}

}  // namespace talvek::host
