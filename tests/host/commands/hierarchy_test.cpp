#include <gtest/gtest.h>

#include <cmath>

#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

class Hierarchy : public testing::Test {
  protected:
    // A joint without help of the joint command, so that its links are the test's own.
    void joint(const std::string& name, const std::string& parent = {}) {
        scene.make("joint", name, parent);
    }
    std::string parent(const TestScene::Args& args, const TestScene::Flags& flags = {}) {
        return scene.text("parent", args, flags);
    }
    TestScene scene;
};

TEST_F(Hierarchy, JointKeepsItsPlaceByTranslateAndOrient) {
    scene.make("transform", "G");
    scene.set("G.t", 5, 0, 0);
    scene.set("G.rz", 90);
    joint("J");
    scene.set("J.t", 5, 3, 0);
    scene.set("J.r", 0, 0, 20);
    scene.set("J.jo", 0, 0, 10);
    EXPECT_EQ(parent({"J", "G"}), "J");
    expectNear(scene.numbers("J.t"), {3, 0, 0});
    expectNear(scene.numbers("J.jo"), {0, 0, -80});
    expectNear(scene.numbers("J.r"), {0, 0, 20});
    parent({"J"}, {flag("world")});
    expectNear(scene.numbers("J.t"), {5, 3, 0});
    expectNear(scene.numbers("J.jo"), {0, 0, 10});
}

TEST_F(Hierarchy, TransformGetsShearUnderAStretchedParent) {
    scene.make("transform", "G");
    scene.set("G.s", 2, 1, 1);
    scene.make("transform", "T");
    scene.set("T.rz", 30);
    scene.set("T.t", 1, 2, 3);
    const std::vector<double> before = scene.worldMatrix("T");
    parent({"T", "G"});
    expectNear(scene.worldMatrix("T"), before, 1e-9);
    EXPECT_GT(std::abs(scene.numbers("T.shear")[0]), 0.1);
}

TEST_F(Hierarchy, JointThatCannotHoldItsScaleGetsATransformAboveIt) {
    joint("P");
    scene.set("P.s", 2, 2, 2);
    joint("C", "P");
    scene.set("C.ssc", 0);
    scene.set("C.t", 1, 0, 0);
    const std::vector<double> before = scene.worldMatrix("C");
    parent({"C"}, {flag("w")});
    expectNear(scene.worldMatrix("C"), before, 1e-9);
    EXPECT_EQ(scene.text("listRelatives", {"C"}, {flag("parent")}), "transform1");
    expectNear(scene.numbers("transform1.s"), {2, 2, 2});
    expectNear(scene.numbers("C.s"), {1, 1, 1});
}

TEST_F(Hierarchy, CompensatedScaleDropsOutOnTheWayToTheWorld) {
    scene.call("joint", {}, {flag("n", {"P"})});
    scene.call("joint", {}, {flag("n", {"C"}), flag("p", {1, 0, 0})});
    EXPECT_TRUE(scene.call("isConnected", {"P.s", "C.is"}).truth());
    scene.set("P.s", 2, 2, 2);
    expectNear(scene.worldPosition("C"), {2, 0, 0});
    parent({"C"}, {flag("w")});
    EXPECT_FALSE(scene.call("isConnected", {"P.s", "C.is"}).truth());
    EXPECT_TRUE(scene.call("listRelatives", {"C"}, {flag("parent")}).isNone());
    expectNear(scene.worldMatrix("C"), {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 2, 0, 0, 1});
    parent({"C", "P"});
    EXPECT_TRUE(scene.call("isConnected", {"P.s", "C.is"}).truth());
    expectNear(scene.numbers("C.t"), {1, 0, 0});
}

TEST_F(Hierarchy, AlreadyThereWarnsAndFails) {
    scene.make("transform", "G");
    scene.make("transform", "a", "G");
    scene.make("transform", "b", "G");
    scene.clearLines();
    EXPECT_EQ(scene.error("parent", {"a", "G"}), "Maya command error");
    ASSERT_EQ(scene.lines().size(), 1u);
    EXPECT_EQ(scene.lines()[0].text,
              "Object, 'a', skipped.  It is already a child of the parent, 'G'.");
    EXPECT_EQ(scene.text("listRelatives", {"G"}), "a b") << "it keeps its place";
    EXPECT_EQ(scene.error("parent", {"G", "a"}),
              "Cannot parent an object to itself or one of its children");
    EXPECT_EQ(scene.error("parent", {"a", ""}), "No object matches name: ");
}

TEST_F(Hierarchy, LockedChannelStopsTheMoveBeforeAnythingHappens) {
    scene.make("transform", "G");
    scene.set("G.t", 1, 0, 0);
    scene.make("transform", "a");
    scene.make("transform", "b");
    scene.call("setAttr", {"b.tx"}, {flag("lock", {true})});
    EXPECT_NE(scene.error("parent", {"a", "b", "G"}), "ok");
    EXPECT_TRUE(scene.call("listRelatives", {"G"}).isNone());
    scene.make("transform", "identity");
    EXPECT_EQ(parent({"b", "identity"}), "b") << "nothing has to change under an identity group";
}

TEST_F(Hierarchy, RelativeKeepsLocalValues) {
    scene.make("transform", "G");
    scene.set("G.t", 5, 0, 0);
    scene.make("transform", "a");
    scene.set("a.t", 1, 2, 3);
    parent({"a", "G"}, {flag("relative")});
    expectNear(scene.numbers("a.t"), {1, 2, 3});
    expectNear(scene.worldPosition("a"), {6, 2, 3});
}

TEST_F(Hierarchy, GroupStandsUnderTheLowestCommonParent) {
    scene.make("transform", "P");
    scene.make("transform", "a", "P");
    scene.make("transform", "b", "P");
    scene.make("transform", "c", "b");
    scene.set("P.t", 0, 1, 0);
    scene.set("c.t", 0, 4, 0);
    EXPECT_EQ(scene.text("group", {"a", "c"}, {flag("n", {"grp"})}), "grp");
    EXPECT_EQ(scene.text("listRelatives", {"P"}), "b grp");
    EXPECT_EQ(scene.text("listRelatives", {"grp"}), "a c");
    expectNear(scene.worldPosition("c"), {0, 5, 0});
    expectNear(scene.numbers("grp.rotatePivot"), {0, 2, 0});
    expectNear(scene.numbers("grp.t"), {0, 0, 0});
    EXPECT_EQ(scene.text("ls", {}, {flag("sl")}), "grp");
    EXPECT_EQ(scene.text("group", {}, {flag("em")}), "group1");
}

TEST_F(Hierarchy, RelativesListGrandchildrenFirst) {
    joint("a");
    joint("b", "a");
    joint("b1", "b");
    joint("c", "a");
    scene.make("transform", "t", "c");
    EXPECT_EQ(scene.text("listRelatives", {"a"}, {flag("ad")}), "b1 b t c");
    EXPECT_EQ(scene.text("listRelatives", {"a"}, {flag("ad"), flag("type", {"joint"}), flag("f")}),
              "|a|b|b1 |a|b |a|c");
    EXPECT_TRUE(scene.call("listRelatives", {"a"}, {flag("p")}).isNone());
    EXPECT_EQ(scene.text("listRelatives", {"b1"}, {flag("p")}), "b");
}

TEST_F(Hierarchy, RenameFollowsTheRulesOfNames) {
    scene.make("transform", "a");
    scene.make("transform", "b");
    EXPECT_EQ(scene.text("rename", {"a", "b"}), "b1");
    EXPECT_EQ(scene.text("rename", {"b1", "b1"}), "b1");
    scene.clearLines();
    EXPECT_EQ(scene.text("rename", {"b1", "1has space"}), "has_space");
    EXPECT_EQ(scene.lines().size(), 1u);
    EXPECT_EQ(scene.text("rename", {"has_space", "arm#"}), "arm1");
    EXPECT_EQ(scene.error("rename", {"arm1", ""}), "New name has no legal characters.");
    EXPECT_EQ(scene.text("rename", {"arm1", "|leg"}), "leg");
    scene.call("lockNode", {"leg"}, {flag("l", {true})});
    EXPECT_EQ(scene.error("rename", {"leg", "x"}), "Cannot rename a locked node.");
}

TEST_F(Hierarchy, MaterialsAreWhatShadesOrStandsInTheList) {
    scene.call("shadingNode", {"lambert"}, {flag("as"), flag("n", {"red"})});
    scene.make("multiplyDivide", "listed");
    scene.make("multiplyDivide", "shades");
    scene.make("multiplyDivide", "other");
    scene.call("connectAttr", {"listed.message", "defaultShaderList1.shaders[7]"});
    scene.call("connectAttr", {"shades.output", "initialShadingGroup.surfaceShader"});
    EXPECT_EQ(scene.text("ls", {}, {flag("materials")}),
              "lambert1 standardSurface1 red listed shades");
    EXPECT_EQ(scene.text("ls", {"other", "red"}, {flag("mat")}), "red");
}

TEST_F(Hierarchy, AmbiguousNamesAreRefusedButExist) {
    scene.make("transform", "P");
    scene.make("transform", "x", "P");
    scene.make("transform", "x");
    EXPECT_EQ(scene.error("select", {"x"}), "More than one object matches name: x");
    EXPECT_TRUE(scene.call("objExists", {"x"}).truth());
    EXPECT_FALSE(scene.call("objExists", {"y"}).truth());
    EXPECT_EQ(scene.text("ls", {"x"}), "|x P|x") << "fewest path components first";
    EXPECT_EQ(scene.text("ls", {"x"}, {flag("long")}), "|x |P|x");
}

TEST_F(Hierarchy, SelectionAddsTogglesAndExpands) {
    for (const char* name : {"a", "b", "c"})
        scene.make("transform", name);
    scene.call("select", {"c", "a", "c"});
    EXPECT_EQ(scene.text("ls", {}, {flag("sl")}), "c a");
    scene.call("select", {"b"}, {flag("add")});
    scene.call("select", {"c", "b"}, {flag("tgl")});
    EXPECT_EQ(scene.text("ls", {}, {flag("sl")}), "a");
    EXPECT_EQ(scene.error("select", {"a", "nothing"}), "No object matches name: nothing");
    EXPECT_EQ(scene.text("ls", {}, {flag("sl")}), "a");
    scene.call("sets", {"a", "b"}, {flag("n", {"pair"})});
    scene.call("select", {"pair"});
    EXPECT_EQ(scene.text("ls", {}, {flag("sl")}), "a b");
    scene.call("select", {"pair"}, {flag("ne")});
    EXPECT_EQ(scene.text("ls", {}, {flag("sl")}), "pair");
    scene.call("select", {}, {flag("cl")});
    EXPECT_TRUE(scene.call("ls", {}, {flag("sl")}).list().empty());
}

TEST_F(Hierarchy, ComponentModeKeepsTheObjectsForLater) {
    scene.make("transform", "a");
    scene.make("transform", "b");
    scene.call("select", {"b", "a"});
    scene.call("selectMode", {}, {flag("co")});
    EXPECT_TRUE(scene.call("ls", {}, {flag("sl")}).list().empty());
    EXPECT_TRUE(scene.call("selectMode", {}, {flag("q"), flag("co")}).truth());
    scene.call("selectMode", {}, {flag("o")});
    EXPECT_EQ(scene.text("ls", {}, {flag("sl")}), "b a");
}

TEST_F(Hierarchy, AttributePatternListsTheNodesThatHaveIt) {
    joint("a");
    joint("b");
    joint("c");
    for (const char* name : {"a", "c"})
        scene.call(
            "addAttr", {name},
            {flag("sn", {"liw"}), flag("ln", {"lockInfluenceWeights"}), flag("at", {"bool"})});
    EXPECT_EQ(scene.text("ls", {"*.liw"}), "a.lockInfluenceWeights c.lockInfluenceWeights");
    EXPECT_EQ(scene.text("ls", {"*.liw"}, {flag("sn")}), "a.liw c.liw");
}

TEST_F(Hierarchy, TypesListWithAndWithoutDerivedOnes) {
    scene.make("transform", "t1");
    joint("j1");
    EXPECT_EQ(scene.text("ls", {"t1", "j1"}, {flag("type", {"transform"})}), "t1 j1");
    EXPECT_EQ(scene.text("ls", {"t1", "j1"}, {flag("exactType", {"transform"})}), "t1");
    EXPECT_EQ(scene.text("nodeType", {"j1"}), "joint");
    const std::string chain = scene.text("nodeType", {"j1"}, {flag("inherited")});
    EXPECT_NE(chain.find("dagNode transform joint"), std::string::npos) << chain;
}

}  // namespace
