#include "weathering/random.h"

namespace talvek {

RandomGenerator& randomGenerator() {
    static RandomGenerator instance;
    return instance;
}

}  // namespace talvek
