#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "app/host_setup.h"
#include "commands/host/coverage.h"
#include "script/session.h"

namespace torvel {
namespace {

std::string written() {
    std::ostringstream text;
    text << std::ifstream(TORVEL_SOURCE_DIR "/docs/coverage.md").rdbuf();
    return text.str();
}

TEST(Coverage, ThePageIsUpToDate) {
    Session session;
    setUpSession(session);
    EXPECT_TRUE(coverageText(session) == written())
        << "docs/coverage.md is out of date: run tools/generate/coverage.py";
}

TEST(Coverage, TellsWhatIsComputedAndWhatIsKept) {
    Session session;
    setUpSession(session);
    const std::string text = coverageText(session);
    for (const char* row :
         {"| multiplyDivide | dependNode | evaluated |", "| camera | shape | data |",
          "| blendShape | geometryFilter | evaluated |", "| dagPose | dependNode | data |",
          "| currentTime | Gets and sets the time. | update (u) |"})
        EXPECT_NE(text.find(row), std::string::npos) << row;
    EXPECT_EQ(text.find("\n| deformableShape |"), std::string::npos);
}

}  // namespace
}  // namespace torvel
