#include <gtest/gtest.h>

#include "ui/desktop/log_text.h"
#include "ui/desktop/script_editor.h"

namespace torvel {
namespace {

TEST(LogText, InfoLinesStayAsTheyAre) {
    EXPECT_EQ(shownLine({Channel::Info, "Plugin has been initialized", false}),
              "Plugin has been initialized");
    EXPECT_EQ(shownLine({Channel::Result, "joint1", false}), "joint1");
}

TEST(LogText, WarningsAndErrorsAreMarkedOnce) {
    EXPECT_EQ(shownLine({Channel::Warning, "slow", false}), "# Warning: slow");
    EXPECT_EQ(shownLine({Channel::Error, "broken", false}), "# Error: broken");
    EXPECT_EQ(shownLine({Channel::Error, "# Error: broken", true}), "# Error: broken");
    EXPECT_EQ(shownLine({Channel::Error, "// Error: broken //", true}), "// Error: broken //");
}

TEST(LogText, ResultsReadAsOneLine) {
    EXPECT_EQ(resultText(Value()), "");
    EXPECT_EQ(resultText(Value(true)), "True");
    EXPECT_EQ(resultText(Value(7)), "7");
    EXPECT_EQ(resultText(Value(0.5)), "0.5");
    EXPECT_EQ(resultText(Value(Value::List{"hip", "knee"})), "[hip, knee]");
    EXPECT_EQ(resultText(Value(Value::List{})), "[]");
    EXPECT_EQ(resultText(Value(Value::Tuple{{1.0, 2.0, 3.0}})), "[1, 2, 3]");
}

}  // namespace
}  // namespace torvel
