#include "weathering/epoch_log.h"

#include "api/session/log_lines.h"
#include "api/session/report.h"
#include "api/session/session.h"
#include "weathering/rates.h"

namespace talvek {

void reportNumEpochs(std::int32_t numEpochs) {
    report("\nEnvironmental parameters for %i epoch(s):\n", {numEpochs});
}

void reportEpochLength(std::int32_t number, const EpochRecord& epoch) {
    report("\n%s%i\tdays: %.0f\n", {kEpochLineStart, number, epoch.days()});
}

void reportEnvironment(const EpochRecord& epoch) {
    constexpr double kGasScale = 1.0e13F;
    report("SO2: %.2f\tNO2: %.2f\tRv: %.2f\tRpH: %.2f\n",
           {epoch.so2() * kGasScale, epoch.no2() * kGasScale, epoch.rv(), epoch.rph()});
}

void reportOffsetPerDay(const EpochRecord& epoch) {
    report("offset per day: %.6f\n", {epoch.constantOffset()});
}

void reportDelta(double delta) {
    report("delta = %.4f\n", {delta});
}

double computeAndReportDelta(const EpochRecord& epoch) {
    const double delta = weatheringDelta(*session().materialParams, epoch, session().model);
    reportDelta(delta);
    return delta;
}

}  // namespace talvek
