// Keeps the record of a run while it goes on.
#pragma once

#include <cstdint>
#include <string>

#include "mesh/object3d.h"
#include "talvek/plan/prepared_run.h"
#include "talvek/plan/run_options.h"
#include "talvek/results/run_record.h"

namespace talvek::host {

class RunRecorder {
  public:
    /// Takes down what is going to be done, and what of.
    RunRecorder(const PreparedRun& run, const RunOptions& options);

    const RunRecord& record() const { return record_; }

    /// Writes the record of a run that has not ended.
    void begin();
    /// Frame `number` is complete, and has been read as `surface`.
    void addFrame(std::int32_t number, const Object3D& surface);
    /// Takes down the remaining files and writes the record for good.
    void end(RunOutcome outcome);

  private:
    RecordedFile fileOf(const std::string& name) const;
    RecordedFile nameOfFile(const std::string& name) const;
    void addInputs(const RunOptions& options);

    const PreparedRun& run_;
    RunRecord record_;
};

}  // namespace talvek::host
