#include "base/version.h"

namespace torvel {

const char* versionText() {
    return TORVEL_VERSION;
}

}  // namespace torvel
