// The surfaces of one run, and what is known about the run.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "api/session/operating_modes.h"
#include "mesh/object3d.h"
#include "talvek/results/run_record.h"

namespace talvek::host {

/// The surface after an epoch, or with number 0 the one that the run began with.
struct SeriesSurface {
    std::int32_t epoch = 0;
    /// Since the beginning of the run.
    double days = 0;
    /// How far a homogeneous stone moves in this epoch, in millimetres; nothing where it differs from vertex to vertex.
    std::optional<double> delta;
    std::string file;
    /// SO2, NO2, Rv, RpH, or in mode 0 the prescribed offsets; nothing where the run does not say.
    std::optional<std::array<double, TALVEK_EPOCH_PARAMS>> values;
    /// The epoch's last day, "2001-12-31", where the run was told.
    std::string end;
};

class RunSeries {
  public:
    /// Finds the run of a mesh by what it has left beside it, or a run by the name of its record. Throws Failure where
    /// there is none.
    explicit RunSeries(const std::string& name);

    /// The mesh that the user weathered, the one that the library read (as a rule the same) and its mineral map.
    const std::string& source() const { return source_; }
    const std::string& mesh() const { return mesh_; }
    const std::string& mineralMap() const { return mineralMap_; }
    /// By time, the first surface first; epochs without a frame are left out.
    const std::vector<SeriesSurface>& surfaces() const { return surfaces_; }
    std::int32_t numEpochs() const { return numEpochs_; }
    /// Null where the run does not say.
    const OperatingMode* mode() const { return mode_; }
    const WeatheringModel* model() const { return model_; }
    /// Db, in grams per cubic centimetre.
    std::optional<double> density() const { return density_; }
    /// Where the origin of the library's mesh lies in the source, and how many millimetres its unit has.
    const std::array<double, 3>& offset() const { return offset_; }
    double unit() const { return unit_; }

    /// The surface of an epoch. Throws Failure where the run has none.
    const SeriesSurface& at(std::int32_t epoch) const;

    /// Reads a surface with its normals. Of a run in mode 2 the first surface is the mesh as it was resampled on the
    /// grid, so that all surfaces have the same vertices. Throws Failure.
    std::unique_ptr<Object3D> read(const SeriesSurface& surface) const;

    /// Throws Failure unless a surface has the vertices and faces of the first one.
    void requireSameFaces(const Object3D& first, const Object3D& mesh, const SeriesSurface& surface) const;

    /// How far each vertex of a surface has moved along its first normal, in millimetres. Throws as requireSameFaces
    /// does.
    std::vector<double> displacements(const Object3D& first, const Object3D& mesh, const SeriesSurface& surface) const;

    /// The mineral class of each vertex; empty but in mode 3, and where the map or the mesh cannot be read any more.
    std::vector<std::int32_t> minerals() const;

  private:
    void takeLog(const std::string& text);
    void takeRecord(const RunRecord& record, const std::string& path);

    std::string source_;
    std::string mesh_;
    std::string mineralMap_;
    std::vector<SeriesSurface> surfaces_;
    std::int32_t numEpochs_ = 0;
    const OperatingMode* mode_ = nullptr;
    const WeatheringModel* model_ = nullptr;
    std::optional<double> density_;
    std::array<double, 3> offset_{};
    double unit_ = 1;
};

}  // namespace talvek::host
