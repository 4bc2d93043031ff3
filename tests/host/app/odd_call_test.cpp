#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "app/host_setup.h"
#include "files/scene_files.h"
#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

// A session with the commands of every room and both languages, and a small scene for each call.
class OddCalls : public testing::Test {
  protected:
    OddCalls() { setUpSession(host.session()); }

    std::vector<std::string> names() {
        std::vector<std::string> all;
        for (const auto& entry : host.session().commands())
            all.push_back(entry.first);
        return all;
    }
    void begin() {
        newScene(host.session());
        host.make("transform", "a");
        host.make("locator", "aShape", "a");
        host.make("transform", "b", "a");
        host.make("joint", "joint1", "b");
        host.call("polyCube", {}, {flag("n", {"box"})});
    }
    // No crash, and a text for every failure but that of `error`, which is the caller's.
    void survives(const std::string& command, const TestScene::Args& args,
                  const TestScene::Flags& flags) {
        begin();
        const Status status = host.run(command, args, flags);
        EXPECT_TRUE(status.isOk() || !status.text().empty() || command == "error") << command;
    }

    TestScene host;
};

const char* const kModes[] = {"", "query", "edit"};

TEST_F(OddCalls, AreRefusedWithATextAndDoNoHarm) {
    const TestScene::Args kArguments[] = {{},
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
    for (const std::string& command : names())
        for (const TestScene::Args& args : kArguments)
            for (const char* mode : kModes)
                survives(command, args,
                         mode[0] ? TestScene::Flags{flag(mode)} : TestScene::Flags{});
    EXPECT_GT(names().size(), 130u);
}

TEST_F(OddCalls, EveryFlagCanStandAlone) {
    for (const std::string& name : names()) {
        const Command& command = *host.session().findCommand(name);
        for (std::size_t i = 0; i < command.flagCount; ++i)
            for (const char* mode : kModes) {
                TestScene::Flags flags{flag(command.flags[i].longName)};
                if (mode[0])
                    flags.push_back(flag(mode));
                for (const TestScene::Args& args :
                     {TestScene::Args{"a"}, TestScene::Args{"box"}, TestScene::Args{}})
                    survives(name, args, flags);
            }
    }
}

template <class Failure>
Status throwOne(const CommandCall&, Value&) {
    throw Failure();
}
struct Odd : std::exception {
    const char* what() const noexcept override { return "odd"; }
};
struct TooLong : std::length_error {
    TooLong() : std::length_error("long") {}
};

TEST_F(OddCalls, WhatACommandThrowsIsAFailureInEveryLanguage) {
    static const Command kThrowers[] = {{"throwsMemory", nullptr, 0, throwOne<std::bad_alloc>},
                                        {"throwsLength", nullptr, 0, throwOne<TooLong>},
                                        {"throwsOdd", nullptr, 0, throwOne<Odd>}};
    const char* const kErrors[] = {"throwsMemory: Out of memory.", "throwsLength: Out of memory.",
                                   "throwsOdd: odd"};
    Session& session = host.session();
    ASSERT_TRUE(session.addCommands({kThrowers, 3}));
    for (std::size_t i = 0; i < 3; ++i) {
        const std::string name = kThrowers[i].name;
        Value ignored;
        EXPECT_EQ(host.error(name), kErrors[i]);
        for (const Status& status :
             {session.mel->run(name, ignored),
              session.python->run("import maya.cmds; maya.cmds." + name + "()", ignored)})
            EXPECT_NE(status.text().find(kErrors[i]), std::string::npos) << status.text();
    }
}

TEST_F(OddCalls, ASecondRowOfANameIsRefused) {
    static const Command kRows[] = {{"ls", nullptr, 0, throwOne<Odd>},
                                    {"onlyHere", nullptr, 0, throwOne<Odd>}};
    const Command* first = host.session().findCommand("ls");
    for (const LogLine& line : host.lines())
        EXPECT_NE(line.channel, Channel::Error) << line.text;
    EXPECT_FALSE(host.session().addCommands({kRows, 2}));
    EXPECT_EQ(host.session().findCommand("ls"), first);
    EXPECT_EQ(host.session().findCommand("onlyHere"), &kRows[1]);
    ASSERT_FALSE(host.lines().empty());
    EXPECT_EQ(host.lines().back().text,
              "The command 'ls' has a row already; another one is refused.");
}

}  // namespace
