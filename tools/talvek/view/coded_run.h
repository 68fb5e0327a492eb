// All surfaces of a run, read, measured and coded.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "mesh/object3d.h"
#include "talvek/results/epoch_figures.h"
#include "talvek/view/frame_codec.h"
#include "talvek/view/spool.h"

namespace talvek::host {

/// A block as it waits in the spool.
struct StoredBlock {
    std::uint32_t width = 0;
    std::uint32_t escapes = 0;
    Spool::Piece piece;
};

struct StoredFrame {
    /// Place among the surfaces of the run. References are places among those of the page.
    std::size_t surface = 0;
    CodedFrame coded;
    std::uint32_t checksum = 0;
    StoredBlock block;
};

struct CodedRun {
    std::int64_t vertices = 0;
    std::int64_t faces = 0;
    /// Of every surface of the run, whether or not the page holds it.
    std::vector<EpochFigures> figures;
    StoredBlock faceBlock;
    /// The class of each vertex, a byte each; absent where the run has no minerals.
    std::optional<StoredBlock> mineralBlock;
    /// In the order of coding.
    std::vector<StoredFrame> frames;

    bool isClosed() const { return figures.front().volume.has_value(); }
    std::uint64_t bytes() const;
};

/// Reads the surfaces of a run and codes them, every `step`-th one and the last. Throws Failure when one is missing or
/// does not fit the others.
class RunCoder {
  public:
    RunCoder(const RunSeries& series, const std::filesystem::path& folder);

    /// Codes every `step`-th surface, and the last one.
    CodedRun code(std::size_t step);

    Spool& blocks() { return blocks_; }

  private:
    void readSurfaces(const RunSeries& series);
    void take(const Object3D& mesh);
    void storeMinerals(const std::vector<std::int32_t>& minerals);
    StoredBlock store(const Block& block);
    Positions positionsAt(std::size_t surface);
    StoredFrame codeFrame(CodedFrame coded, std::span<const std::size_t> kept);

    Spool surfaces_;
    Spool blocks_;
    /// The positions before, for how far each surface has moved since then.
    std::vector<float> before_;
    std::vector<Spool::Piece> pieces_;
    /// How far the surface had moved by then, every vertex counting alike: the time by which surfaces are foretold.
    std::vector<double> movement_;
    CodedRun run_;
};

}  // namespace talvek::host
