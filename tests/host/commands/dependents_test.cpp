#include <gtest/gtest.h>

#include "edit/copy.h"
#include "edit/deletion.h"
#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

class Dependents : public testing::Test {
  protected:
    // A constraint under `object` with two targets, wired as far as deletion looks at it.
    void constraint() {
        for (const char* name : {"one", "two", "object"})
            scene.make("transform", name);
        scene.make("pointConstraint", "con", "object");
        int element = 0;
        for (const std::string name : {"one", "two"}) {
            const std::string target = "con.target[" + std::to_string(element) + "].",
                              weight = name + "W";
            scene.call("addAttr", {"con"},
                       {flag("ln", {weight}), flag("at", {"double"}), flag("dv", {1})});
            scene.call("connectAttr", {name + ".t", target + "targetTranslate"});
            scene.call("connectAttr", {name + ".parentMatrix", target + "targetParentMatrix"});
            scene.call("connectAttr", {"con." + weight, target + "targetWeight"});
            ++element;
        }
    }
    TestScene scene;
};

TEST_F(Dependents, ConstraintLosesItsTargetsOneByOne) {
    constraint();
    scene.call("delete", {"one"});
    ASSERT_TRUE(scene.exists("con"));
    EXPECT_EQ(numbersOf(scene.call("getAttr", {"con.target"}, {flag("multiIndices")})),
              std::vector<double>{1});
    EXPECT_FALSE(
        scene.call("attributeQuery", {"oneW"}, {flag("node", {"con"}), flag("exists")}).truth());
    scene.call("delete", {"two"});
    EXPECT_FALSE(scene.exists("con"));
    EXPECT_TRUE(scene.exists("object"));
}

TEST_F(Dependents, BothTargetsTogetherTakeTheConstraintAlong) {
    constraint();
    const std::vector<NodeHandle> doomed =
        withDependents(scene.scene(), {scene.node("one"), scene.node("two")});
    EXPECT_EQ(doomed,
              (std::vector<NodeHandle>{scene.node("one"), scene.node("two"), scene.node("con")}));
}

TEST_F(Dependents, ObjectTakesItsConstraintAlongAndFreesNothingElse) {
    constraint();
    scene.call("delete", {"object"});
    EXPECT_FALSE(scene.exists("con"));
    EXPECT_TRUE(scene.exists("one") && scene.exists("two"));
}

TEST_F(Dependents, CopiedConstraintIsDead) {
    constraint();
    scene.call("connectAttr", {"con.constraintTranslate", "object.t"});
    CopiedNodes copies;
    ASSERT_TRUE(copyTree(scene.scene(), scene.node("object"), {}, "copy", {}, copies).isOk());
    ASSERT_EQ(copies.size(), 2u);
    EXPECT_EQ(scene.text("listRelatives", {"copy"}, {flag("type", {"constraint"})}), "con");
    EXPECT_TRUE(scene.call("listConnections", {"copy|con"}).isNone());
    EXPECT_TRUE(scene.call("listConnections", {"copy"}).isNone());
    EXPECT_DOUBLE_EQ(scene.number("copy|con.oneW"), 1.0);
}

TEST_F(Dependents, PoseGoesWithItsLastMember) {
    scene.make("joint", "a");
    scene.make("joint", "b");
    scene.make("dagPose", "pose");
    scene.call("connectAttr", {"a.message", "pose.members[0]"});
    scene.call("connectAttr", {"b.message", "pose.members[1]"});
    scene.call("delete", {"a"});
    EXPECT_TRUE(scene.exists("pose"));
    scene.call("delete", {"b"});
    EXPECT_FALSE(scene.exists("pose"));
}

TEST_F(Dependents, SkinGoesWithItsMeshButJointsStay) {
    scene.call("joint", {}, {flag("n", {"root"})});
    scene.call("joint", {}, {flag("n", {"tip"}), flag("p", {0, 2, 0})});
    scene.call("polyCube", {}, {flag("n", {"box"})});
    const std::string skin = scene.text("skinCluster", {"root", "box"});
    EXPECT_NE(scene.text("listHistory", {"box"}).find(skin), std::string::npos);
    EXPECT_EQ(
        scene.error("makeIdentity", {"root"}, {flag("apply", {true}), flag("r", {true})})
            .rfind("makeIdentity: Freeze Transform was not applied because root is an influence",
                   0),
        0u);
    scene.call("duplicate", {"box"}, {flag("n", {"still"})});
    EXPECT_TRUE(scene.call("getAttr", {"still.tx"}, {flag("lock")}).truth());
    EXPECT_EQ(scene.text("listHistory", {"still"}).find(skin), std::string::npos);
    scene.call("delete", {"box"});
    EXPECT_FALSE(scene.exists(skin));
    EXPECT_TRUE(scene.exists("root") && scene.exists("tip") && scene.exists("still"));
}

TEST_F(Dependents, SkinOutlivesItsJoints) {
    scene.call("joint", {}, {flag("n", {"root"})});
    scene.call("polyCube", {}, {flag("n", {"box"})});
    const std::string skin = scene.text("skinCluster", {"root", "box"});
    scene.call("delete", {"root"});
    EXPECT_TRUE(scene.exists(skin));
}

TEST_F(Dependents, DeletingHistoryKeepsThePicture) {
    scene.call("polyCube", {}, {flag("n", {"box"})});
    scene.call("move", {0, 5, 0, "box.vtx[7]"}, {flag("r")});
    const TestScene::Flags where{flag("q"), flag("ws"), flag("t")};
    const std::vector<double> before = numbersOf(scene.call("xform", {"box.vtx[*]"}, where));
    ASSERT_EQ(before.size(), 24u);
    scene.call("delete", {"box"}, {flag("ch")});
    EXPECT_EQ(scene.text("listHistory", {"box"}), "boxShape");
    expectNear(numbersOf(scene.call("xform", {"box.vtx[*]"}, where)), before, 1e-6);
}

TEST_F(Dependents, CopyStaysInTheShadingSet) {
    scene.call("polyCube", {}, {flag("n", {"box"})});
    const bool shaded = scene.exists("initialShadingGroup") &&
                        !scene.call("sets", {"initialShadingGroup"}, {flag("q")}).isNone();
    if (!shaded)
        scene.call("sets", {"boxShape"}, {flag("fe", {"initialShadingGroup"})});
    scene.call("duplicate", {"box"}, {flag("n", {"other"})});
    EXPECT_EQ(scene.text("sets", {"initialShadingGroup"}, {flag("q")}),
              "box|boxShape other|boxShape");
}

}  // namespace
