#include "talvek/results/run_events.h"

#include <cstdio>

#include "talvek/results/run_record_json.h"

namespace talvek::host {

namespace {

constexpr int kEventsVersion = 1;

Json eventOf(const char* name) {
    return {{"schema", "talvek-run-events"}, {"version", kEventsVersion}, {"event", name}};
}

void print(const Json& event) {
    std::printf("%s\n", event.dump(-1, ' ', false, Json::error_handler_t::replace).c_str());
    // Whoever reads on the other side of a pipe wants to know now.
    std::fflush(stdout);
}

/// Moves members of the record over.
void take(Json& event, const Json& record, std::initializer_list<const char*> members) {
    for (const char* const member : members) {
        if (record.contains(member)) {
            event[member] = record[member];
        }
    }
}

}  // namespace

void RunEvents::plan(const RunRecord& record, const PreparedRun& run) const {
    if (!areWanted_) {
        return;
    }
    Json event = eventOf("plan");
    take(event, jsonOf(record),
         {"program", "source", "engineMesh", "mineralMap", "parameterFile", "epochTable", "unit", "offset", "mode",
          "model", "material", "epochs", "figuresBefore"});
    event["record"] = run.files.record;
    event["bytesNeeded"] = run.bytesNeeded;
    print(event);
}

void RunEvents::epoch(const RunRecord& record, std::int32_t number) const {
    if (!areWanted_) {
        return;
    }
    Json event = eventOf("epoch");
    const auto index = static_cast<std::size_t>(number) - 1;
    event.update(jsonOf(record.epochs[index], index + 1, record.mode == TALVEK_MODE_OFFSETTING));
    event["of"] = record.epochs.size();
    print(event);
}

void RunEvents::results(const RunRecord& record, const std::string& recordPath) const {
    if (!areWanted_) {
        return;
    }
    Json event = eventOf("results");
    take(event, jsonOf(record),
         {"outcome", "inputFrame", "firstSurface", "lastSurface", "log", "figuresBefore", "figures", "warnings"});
    event["record"] = recordPath;
    print(event);
}

void RunEvents::failure(int status, const std::string& message) const {
    if (!areWanted_) {
        return;
    }
    Json event = eventOf("failure");
    event["status"] = status;
    event["message"] = message;
    print(event);
}

}  // namespace talvek::host
