#include "nodes/core/rows.h"

#include <cstdio>
#include <cstdlib>

namespace torvel {

void noSuchAttribute(const char* type, const char* attr) {
    std::fprintf(stderr, "Node type table: '%s' has no attribute '%s'.\n", type, attr);
    std::abort();
}

}  // namespace torvel
