#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>

#include "files/scene_files.h"
#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

struct Refusal {
    const char* command;
    TestScene::Args args;
    TestScene::Flags flags;
    const char* error;
};

TEST(Limits, AreToldByNameAndTheSceneIsKept) {
    const int many = 2000000000;
    const Refusal refusals[] = {
        {"polyCube",
         {},
         {flag("sx", {100000}), flag("sy", {100000})},
         "polyCube: More than 4000000 faces cannot be made."},
        {"polyPlane",
         {},
         {flag("sx", {many})},
         "polyPlane: More than 4000000 faces cannot be made."},
        {"polyCylinder",
         {},
         {flag("sx", {many}), flag("sz", {many})},
         "polyCylinder: More than 4000000 faces cannot be made."},
        {"circle", {}, {flag("s", {many})}, "circle: A circle has at most 100000 sections."},
    };
    TestScene scene;
    const std::vector<NodeHandle> before = scene.scene().allNodes();
    for (const Refusal& one : refusals)
        EXPECT_EQ(scene.error(one.command, one.args, one.flags), one.error);
    EXPECT_EQ(scene.scene().allNodes(), before);
}

TEST(Limits, AMakerBeyondItsLimitIsNotDrawn) {
    TestScene scene;
    scene.call("polyCube", {}, {flag("n", {"box"})});
    for (const double count : {2e9, 1e300, std::numeric_limits<double>::infinity()}) {
        scene.clearLines();
        scene.scene().setNumber(scene.plug("polyCube1.sw"), count);
        EXPECT_EQ(scene.call("polyEvaluate", {"box"}, {flag("v")}).integer(), 0) << count;
        ASSERT_EQ(scene.lines().size(), 1u);
        EXPECT_EQ(scene.lines()[0].text,
                  "'polyCube1' makes more than 4000000 faces and is not drawn.");
    }
    scene.scene().setNumber(scene.plug("polyCube1.sw"), std::nan(""));
    EXPECT_EQ(scene.call("polyEvaluate", {"box"}, {flag("v")}).integer(), 8);
    scene.call("circle", {}, {flag("n", {"ring"})});
    scene.scene().setNumber(scene.plug("makeNurbCircle1.s"), 1e300);
    EXPECT_EQ(scene.number("ringShape.spans"), 100000);
}

// Each level doubles the paths of what stands below it.
TEST(Limits, InstancesDoubleUpToALimit) {
    TestScene scene;
    std::string refused;
    int level = 0;
    scene.make("transform", "n0");
    for (; level < 24 && refused.empty(); ++level) {
        const std::string below = "n" + std::to_string(level), twin = "t" + std::to_string(level),
                          above = "n" + std::to_string(level + 1);
        scene.make("transform", above);
        scene.make("transform", twin, above);
        scene.make("transform", "m" + std::to_string(level), above);
        scene.call("parent", {below, twin});
        const Status status =
            scene.run("parent", {below, "m" + std::to_string(level)}, {flag("addObject")});
        refused = status.isOk() ? "" : status.text();
    }
    EXPECT_EQ(level, 15);
    EXPECT_EQ(refused, "parent: A node can have 16384 paths at most: n14");
}

TEST(Limits, CompoundsNestUpToALimit) {
    TestScene scene;
    scene.make("transform", "a");
    Status status;
    int level = 0;
    for (; level < 100 && status; ++level) {
        TestScene::Flags flags{flag("ln", {"c" + std::to_string(level)}), flag("at", {"compound"}),
                               flag("nc", {1})};
        if (level)
            flags.push_back(flag("p", {"c" + std::to_string(level - 1)}));
        status = scene.run("addAttr", {"a"}, flags);
    }
    EXPECT_EQ(level, 65);
    EXPECT_NE(status.text().find("'c64' is nested in more than 63 attributes"), std::string::npos)
        << status.text();
}

// What a file says of a mesh is checked before anything is done with it.
TEST(Limits, ABrokenMeshIsKeptAndNotDrawn) {
    const struct {
        const char *edges, *face, *fault;
    } kMeshes[] = {
        {"0 1 0 1 2 0 2 0 0", "f 3 0 1 2", ""},
        {"0 1 0 1 99999999 0 2 0 0", "f 3 0 1 2", "face 0"},
        {"0 1 0 1 -2 0 2 0 0", "f 3 0 1 2", "face 0"},
        {"0 1 0 1 2 0 2 0 0", "f 3 0 1 9999999", "face 0"},
        {"0 1 0 1 2 0 2 0 0", "f 3 0 1 -2147483648", "face 0"},
    };
    for (const auto& mesh : kMeshes) {
        TestScene scene;
        const std::string path = testing::TempDir() + "broken_mesh.ma";
        std::ofstream(path) << "//Maya ASCII 2024 scene\ncreateNode transform -n \"t\";\n"
                               "createNode mesh -n \"m\" -p \"t\";\n"
                               "setAttr -s 3 \".vt[0:2]\" 0 0 0 1 0 0 1 1 0;\n"
                               "setAttr -s 3 \".ed[0:2]\" "
                            << mesh.edges << ";\nsetAttr -s 1 \".fc[0]\" -type \"polyFaces\" "
                            << mesh.face << ";\n";
        ASSERT_TRUE(openScene(scene.session(), path));
        scene.clearLines();
        const bool whole = mesh.fault[0] == '\0';
        EXPECT_EQ(scene.call("polyEvaluate", {"m"}, {flag("wa")}).number(), whole ? 0.5 : 0.0);
        EXPECT_EQ(scene.call("polyEvaluate", {"m"}, {flag("v")}).integer(), 3);
        for (const char* command : {"move", "rotate", "scale"})
            EXPECT_EQ(scene.error(command, {2, 2, 2, "m.f[0]"}, {flag("r")}) == "ok", whole);
        EXPECT_EQ(scene.error("xform", {"m.f[0]"}, {flag("q"), flag("t")}) == "ok", whole);
        ASSERT_EQ(scene.lines().size(), whole ? 0u : 1u) << mesh.face;
        EXPECT_TRUE(whole || scene.lines()[0].text.find(mesh.fault) != std::string::npos);
    }
}

TEST(Limits, WhatWentEarlierInACallIsPassedOver) {
    for (const bool all : {true, false}) {
        TestScene scene;
        scene.call("polyCube", {}, {flag("n", {"box"})});
        scene.call("circle", {}, {flag("n", {"ring"})});
        if (all)
            scene.call("delete", {}, {flag("all"), flag("ch")});
        else
            scene.call("delete", {scene.call("ls")}, {flag("ch")});
        EXPECT_FALSE(scene.exists("polyCube1"));
        EXPECT_FALSE(scene.exists("makeNurbCircle1"));
        EXPECT_EQ(scene.call("polyEvaluate", {"box"}, {flag("v")}).integer(), 8);
        scene.call("hilite", {"box"});
        scene.call("delete", {"box"});
        EXPECT_TRUE(textsOf(scene.call("ls", {}, {flag("hl")})).empty());
    }
}

}  // namespace
