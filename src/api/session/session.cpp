#include "api/session/session.h"

namespace talvek {

TalvekSession& session() {
    static TalvekSession instance;
    return instance;
}

}  // namespace talvek
