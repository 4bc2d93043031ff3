// Names that carry paths, as tools build them by joining a path and an ending, and what the
// commands answer.
#include <gtest/gtest.h>

#include "nodes/core/default_nodes.h"
#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

class PathNames : public testing::Test {
  protected:
    PathNames() {
        createDefaultNodes(scene.scene());
        scene.make("joint", "arm");
        scene.make("joint", "elbow", "arm");
        scene.make("joint", "hand", "elbow");
        scene.set("arm.t", 1, 2, 3);
        scene.set("elbow.t", 2, 0, 0);
        scene.set("hand.t", 2, 0, 0);
    }
    TestScene scene;
};

TEST_F(PathNames, ACopyOfATopJointTakesTheNameWithoutItsBar) {
    EXPECT_EQ(scene.text("duplicate", {"|arm"}, {flag("n", {"|arm_FK"})}), "arm_FK elbow hand");
    EXPECT_EQ(scene.text("listRelatives", {"arm_FK"}, {flag("c"), flag("f")}), "|arm_FK|elbow");
    EXPECT_EQ(scene.error("select", {"|arm_FK", "|arm|elbow|hand_FK"}, {flag("r")}),
              "No object matches name: |arm|elbow|hand_FK");
    EXPECT_EQ(scene.text("ls", {}, {flag("sl")}),
              "arm_FK");  // the refused command left what was selected
}

TEST_F(PathNames, ACopyFurtherDownGetsBarsAsUnderscores) {
    EXPECT_EQ(scene.text("duplicate", {"|arm|elbow"}, {flag("n", {"|arm|elbow_FK"})}),
              "arm_elbow_FK hand");
    EXPECT_EQ(scene.text("listRelatives", {"arm_elbow_FK"}, {flag("p")}), "arm");
    EXPECT_EQ(scene.error("matchTransform", {"arm", "|arm|elbow_FK"}),
              "No object matches name: |arm|elbow_FK");
}

TEST_F(PathNames, RenamingMakesAPathLegal) {
    EXPECT_EQ(scene.text("rename", {"|arm|elbow|hand", "|arm|elbow|hand_attr"}),
              "arm_elbow_hand_attr");
    EXPECT_EQ(scene.error("rename", {"|arm|elbow", "|||"}), "New name has no legal characters.");
    EXPECT_EQ(scene.error("rename", {"|arm|hand", "x"}), "No object matches name: |arm|hand");
}

TEST_F(PathNames, AttributesBehindAPathThatLeadsNowhere) {
    scene.make("transform", "arm_elbow_hand_attr");
    scene.call("addAttr", {"arm_elbow_hand_attr"},
               {flag("ln", {"FKIK"}), flag("at", {"float"}), flag("min", {0}), flag("max", {1}),
                flag("k", {true})});
    scene.call("shadingNode", {"reverse"}, {flag("asUtility")});
    EXPECT_EQ(scene.error("setAttr", {"|arm|elbow|hand_attr.overrideEnabled", 1}),
              "setAttr: No object matches name: |arm|elbow|hand_attr.overrideEnabled");
    EXPECT_EQ(scene.error("connectAttr", {"|arm|elbow|hand_attr.FKIK", "reverse1.inputX"},
                          {flag("force")}),
              "The source attribute '|arm|elbow|hand_attr.FKIK' cannot be found.");
    EXPECT_EQ(scene.error("connectAttr", {"reverse1.outputX", "arm.|arm_FKW0"}, {flag("force")}),
              "The destination attribute 'arm.|arm_FKW0' cannot be found.");
    EXPECT_EQ(scene.error("xform", {"|arm|elbow|hand_attr"}, {flag("ws"), flag("t", {1, 2, 3})}),
              "No object matches name: |arm|elbow|hand_attr");
}

TEST_F(PathNames, AGroupThatItsOwnPathRepeats) {
    scene.make("transform", "arm_Offset");
    scene.make("transform", "arm_ctrl", "arm_Offset");
    scene.make("transform", "group");
    EXPECT_EQ(scene.error("parent", {"|arm_Offset|arm_Offset", "group"}),
              "No object matches name: |arm_Offset|arm_Offset");
    EXPECT_EQ(scene.text("parent", {"||arm_Offset", "group"}), "arm_Offset");
}

// The flag allows shapes; a transform goes as ever, and stays where it stands in the world.
TEST_F(PathNames, ParentWithTheShapeFlagMovesATransformAsEver) {
    scene.make("transform", "offset");
    scene.set("offset.t", 7, 0, 0);
    EXPECT_EQ(scene.text("parent", {"offset", "hand"}, {flag("s")}), "offset");
    EXPECT_EQ(scene.text("listRelatives", {"offset"}, {flag("p")}), "hand");
    expectNear(scene.worldPosition("offset"), {7, 0, 0});
    EXPECT_EQ(
        scene.error("parent", {"|arm|elbow|hand_attr_offset", "|arm|elbow|hand_MAIN"}, {flag("s")}),
        "No object matches name: |arm|elbow|hand_attr_offset");
    scene.call("polyCube", {}, {flag("n", {"box"})});
    EXPECT_EQ(scene.error("parent", {"boxShape", "hand"}),
              "parent: The shape 'boxShape' can be parented with -shape only.");
}

// --- the switch ---------------------------------------------------------------------------------

class Switch : public PathNames {
  protected:
    Switch() {
        scene.make("transform", "switch");
        scene.call("addAttr", {"switch"},
                   {flag("ln", {"FKIK"}), flag("at", {"float"}), flag("min", {0}), flag("max", {1}),
                    flag("k", {true})});
    }
};

TEST_F(Switch, StaysWithinItsLimits) {
    EXPECT_EQ(scene.number("switch.FKIK"), 0);
    EXPECT_EQ(scene.error("setAttr", {"switch.FKIK", 1.5}),
              "setAttr: Cannot set the attribute 'switch.FKIK' past its maximum value of 1.");
    EXPECT_EQ(scene.error("setAttr", {"switch.FKIK", -0.5}),
              "setAttr: Cannot set the attribute 'switch.FKIK' past its minimum value of 0.");
    EXPECT_EQ(scene.number("switch.FKIK"), 0);
    scene.call("setAttr", {"switch.FKIK", 1.5}, {flag("clamp")});
    EXPECT_EQ(scene.number("switch.FKIK"), 1);
    EXPECT_EQ(scene.error("addAttr", {"switch"}, {flag("ln", {"FKIK"}), flag("at", {"float"})}),
              "addAttr: Found no valid items to add the attribute to.");
    scene.call(
        "addAttr", {"switch"},
        {flag("ln", {"mode"}), flag("at", {"enum"}), flag("en", {"slow:fast:"}), flag("dv", {1})});
    EXPECT_EQ(scene.number("switch.mode"), 1);
    EXPECT_EQ(scene.error("setAttr", {"switch.mode", 2}),
              "setAttr: Cannot set the attribute 'switch.mode' past its maximum value of 1.");
    scene.call(
        "addAttr", {"switch"},
        {flag("ln", {"angle"}), flag("at", {"doubleAngle"}), flag("max", {90}), flag("dv", {30})});
    EXPECT_NEAR(scene.number("switch.angle"), 30, 1e-9);
    EXPECT_EQ(scene.error("setAttr", {"switch.angle", 91}),
              "setAttr: Cannot set the attribute 'switch.angle' past its maximum value of 90.");
}

TEST_F(Switch, AnyValueButNoneShows) {
    scene.make("transform", "group");
    scene.make("joint", "below", "group");
    scene.call("connectAttr", {"switch.FKIK", "group.visibility"});
    const auto shown = [&] { return scene.text("ls", {"group", "below"}, {flag("visible")}); };
    EXPECT_EQ(shown(), "");
    EXPECT_EQ(scene.text("ls", {"group", "below"}, {flag("invisible")}), "group below");
    scene.set("switch.FKIK", 0.5);
    EXPECT_EQ(shown(), "group below");
    scene.set("switch.FKIK", 1);
    EXPECT_EQ(shown(), "group below");
    scene.set("group.lodVisibility", 0);
    EXPECT_EQ(shown(), "");
    scene.set("group.lodVisibility", 1);
    scene.set("below.overrideVisibility", 0);
    EXPECT_EQ(shown(), "group below");
    scene.set("below.overrideEnabled", 1);
    EXPECT_EQ(shown(), "group");
}

TEST_F(Switch, DrivesThroughAReverse) {
    scene.make("transform", "fk");
    scene.make("transform", "ik");
    scene.call("shadingNode", {"reverse"}, {flag("asUtility")});
    scene.call("connectAttr", {"switch.FKIK", "reverse1.inputX"}, {flag("force")});
    scene.call("connectAttr", {"reverse1.outputX", "fk.visibility"}, {flag("force")});
    scene.call("connectAttr", {"switch.FKIK", "ik.visibility"}, {flag("force")});
    const double wanted[3][3] = {{0, 1, 0}, {0.5, 1, 1}, {1, 0, 1}};
    for (const auto& row : wanted) {
        scene.set("switch.FKIK", row[0]);
        EXPECT_EQ(scene.number("fk.v"), row[1]) << row[0];
        EXPECT_EQ(scene.number("ik.v"), row[2]) << row[0];
    }
}

}  // namespace
