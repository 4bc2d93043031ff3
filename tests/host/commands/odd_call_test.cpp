#include <gtest/gtest.h>

#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

std::vector<TestScene::Args> oddArguments() {
    return {{},
            {""},
            {"nothing"},
            {"|"},
            {"a.", ".", "a.b.c"},
            {"time1"},
            {"aShape"},
            {"a", "a"},
            {"a", "b", "joint1"},
            {1, 2, 3},
            {1e300, -1, "a"},
            {"a.t", "b.worldMatrix[-1]"},
            {"b.t[0]", "a.worldMatrix[3]"},
            {"a.vtx[0:99999]"},
            {"box.vtx[999]", "box.f[*]"},
            {"a.message", 5},
            {"*"},
            {"*.*"},
            {Value(), Value()}};
}

// Every command has to survive what scripts throw at it: no crash, and a text for every failure.
TEST(OddCalls, AreRefusedWithATextAndDoNoHarm) {
    TestScene names;
    std::vector<std::string> commands;
    for (const auto& entry : names.session().commands())
        commands.push_back(entry.first);
    for (const std::string& command : commands) {
        for (const TestScene::Args& args : oddArguments()) {
            for (const char* mode : {"", "query", "edit"}) {
                TestScene scene;
                scene.make("transform", "a");
                scene.make("locator", "aShape", "a");
                scene.make("transform", "b", "a");
                scene.make("joint", "joint1", "b");
                scene.call("polyCube", {}, {flag("n", {"box"})});
                const TestScene::Flags flags =
                    mode[0] ? TestScene::Flags{flag(mode)} : TestScene::Flags{};
                const Status status = scene.run(command, args, flags);
                EXPECT_TRUE(status.isOk() || !status.text().empty() || command == "error")
                    << command;
            }
        }
    }
}

TEST(OddCalls, EveryFlagCanStandAlone) {
    TestScene rows;
    for (const auto& [name, command] : rows.session().commands()) {
        for (std::size_t i = 0; i < command->flagCount; ++i) {
            for (const char* mode : {"query", "edit", ""}) {
                TestScene scene;
                scene.make("joint", "a");
                scene.call("polyCube", {}, {flag("n", {"box"})});
                TestScene::Flags flags{flag(command->flags[i].longName)};
                if (mode[0])
                    flags.push_back(flag(mode));
                for (const TestScene::Args& args :
                     {TestScene::Args{"a"}, TestScene::Args{"box"}, TestScene::Args{}}) {
                    const Status status = scene.run(name, args, flags);
                    EXPECT_TRUE(status.isOk() || !status.text().empty() || name == "error")
                        << name << " -" << command->flags[i].longName;
                }
            }
        }
    }
}

}  // namespace
