#include <cstdio>

#include "base/version.h"

int main() {
    std::printf("torvel-host %s\n", torvel::versionText());
    return 0;
}
