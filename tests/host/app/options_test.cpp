#include <gtest/gtest.h>

#include "app/options.h"
#include "app/rig_check.h"

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
    EXPECT_FALSE(o.batch || o.noUi || o.noPlugin || o.trust || o.verify || o.saveAnyway);
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

TEST(Options, CheckingARigIsBatchAndNeedsOne) {
    const Options o = good({"--check", "rig.ma", "--check-json", "found.json"});
    EXPECT_TRUE(o.check && o.batch);
    EXPECT_EQ(o.scene, "rig.ma");
    EXPECT_EQ(o.checkJson, "found.json");
    EXPECT_NE(refused({"--check"}).find("needs a scene"), std::string::npos);
}

TEST(Options, APictureHasAViewASizeAndFrames) {
    const Options plain = good({"--batch", "--render", "a.png"});
    EXPECT_EQ(plain.render, "a.png");
    EXPECT_EQ(plain.view, "persp");
    EXPECT_EQ(plain.frames, "");
    const Options o = good(
        {"--render", "a.png", "--view", "side", "--size", "64x48", "--frames", "-2:9", "--wire"});
    EXPECT_EQ(o.view, "side");
    EXPECT_EQ(o.size, "64x48");
    EXPECT_EQ(o.frames, "-2:9");
    EXPECT_TRUE(o.wire);
    EXPECT_NE(refused({"--render", "a.jpg"}).find("a .png file, not a.jpg"), std::string::npos);
    EXPECT_NE(refused({"--render", "a.png", "--size", "64"}).find("--size takes WxH"),
              std::string::npos);
    EXPECT_NE(refused({"--render", "a.png", "--frames", "9:1"}).find("--frames takes A:B"),
              std::string::npos);
    EXPECT_NE(refused({"--render", "a.png", "--view", "back"}).find("back"), std::string::npos);
}

TEST(Options, TheNetworkIsClosedUnlessAskedFor) {
    EXPECT_FALSE(good({"--batch"}).network);
    EXPECT_TRUE(good({"--batch", "--network"}).network);
}

TEST(Options, AnswersStandInTheirOrder) {
    EXPECT_EQ(good({"--answer", "Yes", "--answer", "OK=an arm"}).answers,
              (std::vector<std::string>{"Yes", "OK=an arm"}));
}

TEST(Options, WrongUsesAreRefused) {
    const struct {
        std::vector<std::string> arguments;
        const char* told;
    } rows[] = {
        {{"--wrong"}, "--wrong"},
        {{"a.ma", "b.ma"}, "b.ma"},
        {{"--script", "notes.txt"}, "notes.txt"},
        {{"--save"}, "--save"},
        {{"--verify-points", "wide"}, "--verify-points"},
        {{""}, "the name is empty"},
        {{"--save", ""}, "--save: the name is empty"},
        {{"--trace", ""}, "--trace: the name is empty"},
        {{"--save", "a.mb"}, "name a .ma file instead of a.mb"},
        {{"--render", "a.png", "--frames", "1:1000000000"}, "at most 100000 frames"},
        {{"--render", "a.png", "--frames", "-2147483648:2147483647"}, "at most 100000 frames"},
        {{"a.ma", "--trace", "./a.ma"}, "./a.ma is the scene"},
        {{"--script", "b.py", "--trace", "b.py"}, "b.py is a script"},
    };
    for (const auto& row : rows)
        EXPECT_NE(refused(row.arguments).find(row.told), std::string::npos) << row.told;
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
