#include "api/session/stores.h"

#include "api/session/session.h"

namespace talvek {

void createMissingStores() {
    TalvekSession& current = session();
    if (current.materialParams == nullptr) {
        current.materialParams = createMaterialRecord(current.mode);
    }
    if (!current.epochTable) {
        current.epochTable = createEpochTable(current.numEpochs, current.epochDays, current.mode);
    }
}

void releaseStores() {
    session().materialParams.reset();
    session().epochTable = {};
}

}  // namespace talvek
