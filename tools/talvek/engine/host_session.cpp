#include "talvek/engine/host_session.h"

#include <cstdio>

#include "talvek.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

/// Throws Failure with the message unless a function of the library has returned TALVEK_OK.
void require(std::int32_t resultCode, const std::string& message) {
    if (resultCode != TALVEK_OK) {
        throw Failure(static_cast<ExitStatus>(exitStatusOf(resultCode)), message);
    }
}

const char* reasonOf(std::int32_t result) {
    switch (result) {
        case TALVEK_ERROR_MESH:
            return "the mesh cannot be loaded or worked with";
        case TALVEK_ERROR_UNDEFINED_MODE:
            return "this library does not have the operating mode";
        case TALVEK_ERROR_UNDEFINED_MODEL:
            return "the weathering model is not defined in this operating mode";
        default:
            return "it had no parameters";
    }
}

/// The library finds a parameter file by the mesh's name, so for a moment the parameter file stands for the mesh.
/// Setters would narrow the numbers to single precision.
void readPlan(const std::string& plan) {
    require(talvekSetFileName(plan.c_str()), plan + ": the name is too long");
    const std::int32_t result = talvekReadParams();
    std::remove(plan.c_str());
    require(result, plan + ": the plan of the run cannot be read");
}

}  // namespace

int runSession(const SessionOrder& order) {
    readPlan(order.plan);
    require(talvekSetResults(order.keepInputFrame ? 1 : 0), "the results flag is out of range");
    require(talvekSetFileName(order.mesh.c_str()), order.mesh + ": the name is too long");
    if (order.saveConfig) {
        require(talvekSaveParams(), order.mesh + ": cannot write the parameter file beside it");
    }
    const std::int32_t result = talvekStart();
    talvekFree();
    require(result, order.mesh + ": the run was aborted; " + reasonOf(result));
    return kExitDone;
}

}  // namespace talvek::host
