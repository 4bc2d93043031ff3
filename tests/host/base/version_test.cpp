#include "base/version.h"

#include <gtest/gtest.h>

TEST(Version, IsTheReleaseText) {
    EXPECT_STREQ(torvel::versionText(), "0.1.0");
}
