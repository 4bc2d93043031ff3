#include <gtest/gtest.h>

#include "app/options.h"
#include "app/program.h"

namespace torvel {
namespace {

Options good(const std::vector<std::string>& arguments) {
    const ParsedOptions parsed = parseOptions(arguments);
    EXPECT_TRUE(parsed.run) << parsed.text;
    return parsed.options;
}

std::string refused(const std::vector<std::string>& arguments) {
    const ParsedOptions parsed = parseOptions(arguments);
    EXPECT_FALSE(parsed.run);
    EXPECT_EQ(parsed.code, 2);
    return parsed.text;
}

TEST(Options, NothingMeansAnEmptyDesktop) {
    const Options o = good({});
    EXPECT_FALSE(o.batch || o.noUi || o.noPlugin || o.trust || o.verify);
    EXPECT_TRUE(o.scene.empty() && o.steps.empty() && o.plugins.empty());
}

TEST(Options, ScriptsKeepTheOrderTheyAreGivenIn) {
    const Options o = good({"--python", "a", "--script", "b.py", "rig.ma", "--command", "c",
                            "--python=d", "--script", "e.mel"});
    ASSERT_EQ(o.steps.size(), 5u);
    const std::vector<std::string> texts = {"a", "b.py", "c", "d", "e.mel"};
    for (std::size_t i = 0; i < texts.size(); ++i)
        EXPECT_EQ(o.steps[i].text, texts[i]);
    EXPECT_EQ(o.steps[0].kind, ScriptStep::Kind::Python);
    EXPECT_EQ(o.steps[1].kind, ScriptStep::Kind::File);
    EXPECT_EQ(o.steps[2].kind, ScriptStep::Kind::Mel);
    EXPECT_EQ(o.scene, "rig.ma");
}

TEST(Options, TextsMayHoldBlanksQuotesAndBrackets) {
    const std::string text = "cmds.ls('a b', type=[\"joint\"]); x = [1, 2]";
    const Options o = good({"--python", text, "--python", "[1]"});
    ASSERT_EQ(o.steps.size(), 2u);
    EXPECT_EQ(o.steps[0].text, text);
    EXPECT_EQ(o.steps[1].text, "[1]");
}

TEST(Options, WhatFollowsTheBarBelongsToTheScripts) {
    const Options o = good({"--batch", "--script", "s.py", "--", "--verify", "-x", "--"});
    EXPECT_TRUE(o.batch);
    EXPECT_FALSE(o.verify);
    EXPECT_EQ(o.scriptArguments, (std::vector<std::string>{"--verify", "-x", "--"}));
}

TEST(Options, PluginsRepeat) {
    EXPECT_EQ(good({"--plugin", "a", "--plugin", "b.so", "--no-plugin"}).plugins,
              (std::vector<std::string>{"a", "b.so"}));
}

TEST(Options, WithoutUserInterfaceIsBatch) {
    EXPECT_TRUE(good({"--no-ui"}).batch);
}

TEST(Options, ThresholdsAreRead) {
    const Options o = good(
        {"--verify", "--verify-points", "0.5", "--verify-nodes", "3", "--verify-json", "out.json"});
    EXPECT_TRUE(o.verify);
    EXPECT_DOUBLE_EQ(o.limits.points, 0.5);
    EXPECT_EQ(o.limits.nodes, 3);
    EXPECT_EQ(o.limits.connections, -1);
    EXPECT_EQ(o.verifyJson, "out.json");
}

TEST(Options, WhatIsNotOfferedIsRefusedByName) {
    for (const char* name : {"--check", "--render", "--network"})
        EXPECT_NE(refused({"scene.ma", name, "x"}).find(std::string(name) + " is not offered"),
                  std::string::npos);
}

TEST(Options, WrongUsesAreRefused) {
    EXPECT_NE(refused({"--wrong"}).find("--wrong"), std::string::npos);
    EXPECT_NE(refused({"a.ma", "b.ma"}).find("b.ma"), std::string::npos);
    EXPECT_NE(refused({"--script", "notes.txt"}).find("notes.txt"), std::string::npos);
    refused({"--save"});
    refused({"--verify-points", "wide"});
}

TEST(Options, HelpAndVersionLeaveWithSuccess) {
    const ParsedOptions help = parseOptions({"--help"});
    EXPECT_FALSE(help.run);
    EXPECT_EQ(help.code, 0);
    EXPECT_NE(help.text.find("--verify-json"), std::string::npos);
    EXPECT_EQ(parseOptions({"--version"}).text.rfind("torvel-host ", 0), 0u);
}

TEST(PythonLiteral, EscapesWhatWouldEndTheText) {
    EXPECT_EQ(pythonLiteral("a'b\\c\nd"), "'a\\'b\\\\c\\nd'");
}

}  // namespace
}  // namespace torvel
