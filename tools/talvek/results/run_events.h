// What `talvek run --json` prints: one JSON object a line, as things happen. docs/json.md describes them.
#pragma once

#include <cstdint>
#include <string>

#include "talvek/plan/prepared_run.h"
#include "talvek/results/run_record.h"

namespace talvek::host {

/// Prints nothing unless it is asked to.
class RunEvents {
  public:
    explicit RunEvents(bool areWanted) : areWanted_(areWanted) {}

    /// What is going to be done.
    void plan(const RunRecord& record, const PreparedRun& run) const;
    /// An epoch has ended, and its frame is there.
    void epoch(const RunRecord& record, std::int32_t number) const;
    void results(const RunRecord& record, const std::string& recordPath) const;
    void failure(int status, const std::string& message) const;

  private:
    bool areWanted_;
};

}  // namespace talvek::host
