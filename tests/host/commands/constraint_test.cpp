#include <gtest/gtest.h>

#include "files/ma/reader.h"
#include "files/ma/writer.h"
#include "nodes/core/default_nodes.h"
#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

using Flags = TestScene::Flags;

/// Drivers "one" and "two", and "object" below "parent".
class Constraints : public testing::Test {
  protected:
    Constraints() {
        for (const char* name : {"one", "two", "parent"})
            scene.make("transform", name);
        scene.make("transform", "object", "parent");
    }
    std::string sources(const std::string& plug) {
        return scene.text("listConnections", {plug},
                          {flag("s", {true}), flag("d", {false}), flag("p", {true})});
    }
    Flags edit(RawFlag more) { return {flag("e"), std::move(more)}; }
    Flags query(const char* what) { return {flag("q"), flag(what)}; }
    void expectWorld(const std::string& node, const std::vector<double>& wanted,
                     double tolerance = 1e-9) {
        expectNear(scene.worldMatrix(node), wanted, tolerance);
    }

    TestScene scene;
    const Flags mo{flag("mo")};
};

TEST_F(Constraints, ParentConstraintIsMadeBelowItsObject) {
    EXPECT_EQ(scene.text("parentConstraint", {"one", "two", "object"}), "object_parentConstraint1");
    EXPECT_EQ(scene.text("listRelatives", {"object"}), "object_parentConstraint1");
    EXPECT_EQ(scene.text("ls", {}, {flag("sl")}), "object_parentConstraint1");
    const std::string con = "object_parentConstraint1.";
    for (const char* axis : {"X", "Y", "Z"}) {
        EXPECT_EQ(sources(std::string("object.translate") + axis),
                  con + "constraintTranslate" + axis);
        EXPECT_EQ(sources(std::string("object.rotate") + axis), con + "constraintRotate" + axis);
    }
    const std::pair<const char*, const char*> links[] = {
        {"target[1].targetTranslate", "two.translate"},
        {"target[1].targetRotatePivot", "two.rotatePivot"},
        {"target[1].targetRotateTranslate", "two.rotatePivotTranslate"},
        {"target[1].targetRotate", "two.rotate"},
        {"target[1].targetRotateOrder", "two.rotateOrder"},
        {"target[1].targetScale", "two.scale"},
        {"target[1].targetParentMatrix", "two.parentMatrix[0]"},
        {"target[1].targetWeight", "object_parentConstraint1.twoW1"},
        {"constraintRotateOrder", "object.rotateOrder"},
        {"constraintParentInverseMatrix", "object.parentInverseMatrix[0]"},
        {"constraintRotatePivot", "object.rotatePivot"},
        {"constraintRotateTranslate", "object.rotatePivotTranslate"},
        {"target[1].targetJointOrient", ""},
        {"constraintJointOrient", ""}};
    for (const auto& [own, other] : links)
        EXPECT_EQ(sources(con + own), other) << own;
    EXPECT_EQ(scene.number(con + "enableRestPosition"), 1.0);
    EXPECT_EQ(scene.text("listAttr", {"object_parentConstraint1"}, {flag("k")}),
              "nodeState oneW0 twoW1");
    EXPECT_EQ(
        scene.text("attributeQuery", {"w1"}, {flag("n", {"object_parentConstraint1"}), flag("ln")}),
        "twoW1");
}

TEST_F(Constraints, JointsGetTheirOwnLinks) {
    scene.make("joint", "bone");
    scene.make("joint", "driver");
    scene.call("parentConstraint", {"driver", "bone"});
    EXPECT_EQ(sources("bone_parentConstraint1.target[0].targetJointOrient"), "driver.jointOrient");
    EXPECT_EQ(sources("bone_parentConstraint1.target[0].targetScaleCompensate"),
              "driver.segmentScaleCompensate");
    EXPECT_EQ(sources("bone_parentConstraint1.target[0].targetInverseScale"),
              "driver.inverseScale");
    EXPECT_EQ(sources("bone_parentConstraint1.constraintJointOrient"), "bone.jointOrient");
    scene.call("scaleConstraint", {"driver", "bone"});
    EXPECT_EQ(sources("bone_scaleConstraint1.constraintScaleCompensate"),
              "bone.segmentScaleCompensate");
    EXPECT_EQ(sources("bone.scaleY"), "bone_scaleConstraint1.constraintScaleY");
}

TEST_F(Constraints, NamesAndNamespaces) {
    scene.make("transform", "ns:ctl");
    scene.make("transform", "ns:hand");
    EXPECT_EQ(scene.text("orientConstraint", {"ns:ctl", "ns:hand"}), "ns:hand_orientConstraint1");
    EXPECT_EQ(scene.text("orientConstraint", {"ns:hand"}, query("wal")), "ctlW0");
    EXPECT_EQ(scene.text("pointConstraint", {"|one", " object "}, {flag("n", {"my con"})}),
              "my_con");
    EXPECT_EQ(scene.text("pointConstraint", {"my_con"}, query("wal")), "oneW0");
    scene.make("transform", "object");
    EXPECT_EQ(scene.text("aimConstraint", {"one", "|object"}), "object_aimConstraint1");
}

TEST_F(Constraints, WithoutOffsetTheObjectGoesToItsTargets) {
    scene.set("one.t", 1, 2, 3);
    scene.set("one.r", 10, 20, 30);
    scene.set("parent.t", 5, 5, 5);
    scene.set("parent.r", 0, 90, 0);
    scene.call("parentConstraint", {"one", "object"});
    expectWorld("object", scene.worldMatrix("one"));
    expectNear(scene.numbers("object_parentConstraint1.restTranslate"), scene.numbers("object.t"));
}

TEST_F(Constraints, OffsetsKeepTheObjectAndThenCarryIt) {
    for (const char* command : {"parentConstraint", "pointConstraint", "orientConstraint",
                                "aimConstraint", "scaleConstraint"}) {
        TestScene fresh;
        fresh.make("transform", "driver");
        fresh.make("transform", "parent");
        fresh.make("joint", "bone", "parent");
        fresh.set("driver.t", 3, -2, 7);
        fresh.set("driver.r", 20, 30, 40);
        fresh.set("driver.s", 2, 2, 2);
        fresh.set("parent.r", 15, 0, -60);
        fresh.set("parent.t", 1, 1, 0);
        fresh.set("bone.t", 4, 5, 6);
        fresh.set("bone.jointOrient", 0, 45, 10);
        fresh.set("bone.r", 5, 120, -5);
        const std::vector<double> before = fresh.worldMatrix("bone"),
                                  angles = fresh.numbers("bone.r");
        fresh.call(command, {"driver", "bone"}, {flag("mo")});
        expectNear(fresh.worldMatrix("bone"), before, 1e-9);
        expectNear(fresh.numbers("bone.r"), angles, 1e-9);
        fresh.set("driver.t", 13, -2, 7);
        EXPECT_EQ(
            fresh.worldPosition("bone")[0] - before[12] > 9.99,
            std::string(command) == "parentConstraint" || std::string(command) == "pointConstraint")
            << command;
    }
}

TEST_F(Constraints, ParentOffsetOfTheWorkedCase) {
    scene.set("object.t", 0, 0, 6);
    scene.set("object.r", 0, 99.46, 0);
    scene.call("parentConstraint", {"one", "object"}, mo);
    const std::string con = "object_parentConstraint1.";
    expectNear(scene.numbers(con + "target[0].targetOffsetTranslate"), {0, 0, 6});
    expectNear(scene.numbers(con + "target[0].targetOffsetRotate"), {0, 99.46, 0});
    scene.numbers("object.r");
    expectNear(scene.numbers(con + "lastTargetRotate"), {0, 99.46, 0});
    expectNear(scene.numbers(con + "restRotate"), {0, 99.46, 0});
    expectNear(scene.numbers(con + "restTranslate"), {0, 0, 6});
}

TEST_F(Constraints, TheSameCommandAddsTargets) {
    scene.set("two.t", 8, 0, 0);
    EXPECT_EQ(scene.text("pointConstraint", {"one", "object"}), "object_pointConstraint1");
    EXPECT_EQ(
        scene.text("pointConstraint", {"two", "object"}, {flag("w", {3}), flag("n", {"other"})}),
        "object_pointConstraint1");
    EXPECT_EQ(scene.text("pointConstraint", {"object"}, query("tl")), "one two");
    expectNear(scene.worldPosition("object"), {6, 0, 0});
    scene.call("pointConstraint", {"one", "object"}, {flag("w", {0})});
    EXPECT_EQ(scene.text("pointConstraint", {"object"}, query("wal")), "oneW0 twoW1");
    expectNear(scene.worldPosition("object"), {8, 0, 0});
}

TEST_F(Constraints, WeightsAreEditedAndAsked) {
    scene.set("two.t", 8, 0, 0);
    scene.call("pointConstraint", {"one", "two", "object"});
    EXPECT_EQ(scene.text("pointConstraint", {"two", "object"}, edit(flag("w", {0}))),
              "object_pointConstraint1");
    expectNear(scene.worldPosition("object"), {0, 0, 0});
    EXPECT_EQ(numbersOf(scene.call("pointConstraint", {"object"}, query("w"))),
              (std::vector<double>{1, 0}));
    EXPECT_DOUBLE_EQ(
        scene.call("pointConstraint", {"two", "object_pointConstraint1"}, query("w")).number(),
        0.0);
    EXPECT_EQ(scene.text("pointConstraint", {"object"}, {flag("q")}), "object_pointConstraint1");
    EXPECT_TRUE(scene.call("pointConstraint", {"parent"}, {flag("q")}).isNone());
    EXPECT_NE(scene.error("pointConstraint", {"parent", "object"}, edit(flag("w", {1}))), "ok");
    EXPECT_NE(scene.error("pointConstraint", {"one", "parent"}, edit(flag("w", {1}))), "ok");
}

TEST_F(Constraints, RemovedTargetsLeaveGapsAndTheLastTakesTheConstraint) {
    scene.set("two.t", 8, 0, 0);
    scene.call("pointConstraint", {"one", "two", "object"});
    EXPECT_EQ(scene.text("pointConstraint", {"one", "object"}, edit(flag("rm"))),
              "object_pointConstraint1");
    EXPECT_FALSE(
        scene
            .call("attributeQuery", {"oneW0"}, {flag("n", {"object_pointConstraint1"}), flag("ex")})
            .truth());
    expectNear(scene.worldPosition("object"), {8, 0, 0});
    scene.call("pointConstraint", {"one", "object"});
    EXPECT_EQ(scene.text("pointConstraint", {"object"}, query("wal")), "twoW1 oneW2");
    scene.call("pointConstraint", {"one", "two", "object"}, edit(flag("rm")));
    EXPECT_FALSE(scene.exists("object_pointConstraint1"));
    expectNear(scene.worldPosition("object"), {4, 0, 0});
    scene.set("object.tx", 1);
}

TEST_F(Constraints, SkippedAxesStayFree) {
    scene.set("one.t", 1, 2, 3);
    scene.set("one.r", 0, 0, 50);
    scene.call("parentConstraint", {"one", "object"},
               {flag("st", {"x"}), flag("st", {"z"}), flag("sr", {"y"})});
    expectNear(scene.numbers("object.t"), {0, 2, 0});
    EXPECT_EQ(sources("object.tx") + sources("object.tz") + sources("object.ry"), "");
    EXPECT_EQ(sources("object.rz"), "object_parentConstraint1.constraintRotateZ");
    scene.call("parentConstraint", {"object"}, edit(flag("st", {"none"})));
    expectNear(scene.numbers("object.t"), {1, 2, 3});
    scene.call("orientConstraint", {"one", "parent"}, {flag("sk", {"x"})});
    EXPECT_EQ(sources("parent.rx"), "");
}

TEST_F(Constraints, LockedAndDrivenChannelsAreRefusedWhole) {
    scene.call("setAttr", {"object.ry"}, {flag("l", {true})});
    scene.clearLines();
    EXPECT_EQ(scene.error("orientConstraint", {"one", "object"}),
              "Could not add constraint or connections.");
    ASSERT_EQ(scene.lines().size(), 1u);
    EXPECT_EQ(
        scene.lines()[0].text,
        "Connection not made: 'object_orientConstraint1.constraintRotateY' -> 'object.rotateY'.  "
        "Destination attribute must be writable.");
    EXPECT_FALSE(scene.exists("object_orientConstraint1"));
    EXPECT_EQ(sources("object.rx"), "");
    scene.call("orientConstraint", {"one", "object"}, {flag("sk", {"y"})});
    EXPECT_TRUE(scene.exists("object_orientConstraint1"));
    EXPECT_EQ(scene.error("aimConstraint", {"one", "object"}, {flag("sk", {"y"})}),
              "Could not add constraint or connections.");
    EXPECT_EQ(scene.lines().back().text,
              "'object.rotateX' already has an incoming connection from "
              "'object_orientConstraint1.constraintRotateX'.");
    EXPECT_FALSE(scene.exists("object_aimConstraint1"));
}

TEST_F(Constraints, EndsThatCannotBe) {
    scene.make("multiplyDivide", "number");
    EXPECT_EQ(scene.error("parentConstraint", {"number", "object"}),
              "Targets must be of type transform.");
    EXPECT_EQ(scene.error("parentConstraint", {"missing", "object"}),
              "No object matches name: missing");
    EXPECT_NE(scene.error("parentConstraint", {"object"}), "ok");
    EXPECT_NE(scene.error("parentConstraint", {"object", "object"}), "ok");
    EXPECT_NE(scene.error("poleVectorConstraint", {"one", "object"}), "ok");
    EXPECT_NE(
        scene.error("parentConstraint", {"one", "object"}, {flag("layer", {"x"})}).find("layer"),
        std::string::npos);
    EXPECT_NE(scene.error("aimConstraint", {"one", "object"}, {flag("wut", {"sideways"})}), "ok");
    EXPECT_EQ(scene.text("ls", {}, {flag("type", {"constraint"})}), "");
}

TEST_F(Constraints, TheSelectionStandsForNames) {
    scene.call("select", {"one", "object"});
    EXPECT_EQ(scene.text("pointConstraint", {}), "object_pointConstraint1");
}

TEST_F(Constraints, AimFlags) {
    scene.set("one.t", 0, 0, 10);
    scene.set("two.t", -5, 0, 0);
    const std::string con = scene.text("aimConstraint", {"one", "object"},
                                       {flag("aim", {0, 1, 0}), flag("u", {0, 0, 1}),
                                        flag("wut", {"object"}), flag("wuo", {"two"})});
    EXPECT_EQ(sources(con + ".worldUpMatrix"), "two.worldMatrix[0]");
    EXPECT_EQ(scene.number(con + ".worldUpType"), 1.0);
    EXPECT_EQ(scene.text("aimConstraint", {con}, query("wut")), "object");
    EXPECT_EQ(scene.text("aimConstraint", {"object"}, query("wuo")), "two");
    EXPECT_EQ(numbersOf(scene.call("aimConstraint", {"object"}, query("aim"))),
              (std::vector<double>{0, 1, 0}));
    const std::vector<double> m = scene.worldMatrix("object");
    expectNear({m[4], m[5], m[6]}, {0, 0, 1});    // y looks at "one"
    expectNear({m[8], m[9], m[10]}, {-1, 0, 0});  // z leans to "two"
    scene.call("aimConstraint", {"object"}, edit(flag("o", {0, 90, 0})));
    EXPECT_EQ(numbersOf(scene.call("aimConstraint", {"object"}, query("o"))),
              (std::vector<double>{0, 90, 0}));
    EXPECT_TRUE(scene.call("getAttr", {con + ".oneW0"}, {flag("k")}).truth());
    scene.call("aimConstraint", {"object"}, edit(flag("wut", {"vector"})));
    EXPECT_EQ(scene.number(con + ".worldUpType"), 3.0);
}

TEST_F(Constraints, PoleVectorOfAHandle) {
    scene.make("joint", "start", "parent");
    scene.make("ikHandle", "handle");
    scene.call("connectAttr", {"start.message", "handle.startJoint"});
    scene.set("parent.t", 0, 10, 0);
    scene.set("one.t", 3, 10, 4);
    EXPECT_EQ(scene.text("poleVectorConstraint", {"one", "handle"}),
              "handle_poleVectorConstraint1");
    const std::string con = "handle_poleVectorConstraint1.";
    EXPECT_EQ(sources(con + "pivotSpace"), "start.parentMatrix[0]");
    EXPECT_EQ(sources(con + "constraintRotatePivot"), "start.translate");
    EXPECT_EQ(sources(con + "constraintParentInverseMatrix"), "handle.parentInverseMatrix[0]");
    EXPECT_EQ(sources("handle.poleVectorY"), con + "constraintTranslateY");
    expectNear(scene.numbers("handle.poleVector"), {3, 0, 4});
}

TEST_F(Constraints, DeletedDriversGoOneByOne) {
    scene.set("two.t", 8, 0, 0);
    scene.call("pointConstraint", {"one", "two", "object"});
    scene.call("delete", {"one"});
    expectNear(scene.worldPosition("object"), {8, 0, 0});
    EXPECT_EQ(scene.text("pointConstraint", {"object"}, query("wal")), "twoW1");
    scene.call("delete", {"two"});
    EXPECT_FALSE(scene.exists("object_pointConstraint1"));
    expectNear(scene.worldPosition("object"), {8, 0, 0});
}

TEST_F(Constraints, DeletedConstraintLeavesTheValues) {
    scene.set("one.t", 1, 2, 3);
    scene.set("one.r", 0, 40, 0);
    scene.call("parentConstraint", {"one", "object"});
    scene.call("delete", {"object"}, {flag("cn")});
    EXPECT_FALSE(scene.exists("object_parentConstraint1"));
    expectNear(scene.numbers("object.t"), {1, 2, 3});
    expectNear(scene.numbers("object.r"), {0, 40, 0});
    EXPECT_EQ(sources("object"), "");
}

TEST_F(Constraints, CopiesAreFree) {
    scene.set("one.t", 1, 2, 3);
    scene.call("parentConstraint", {"one", "object"});
    EXPECT_EQ(scene.text("duplicate", {"object"}, {flag("rr")}), "object1");
    EXPECT_EQ(scene.text("listRelatives", {"object1"}, {flag("type", {"constraint"})}),
              "object_parentConstraint1");
    EXPECT_EQ(sources("object1") + sources("object1|object_parentConstraint1"), "");
    EXPECT_DOUBLE_EQ(scene.number("object1|object_parentConstraint1.oneW0"), 1.0);
    scene.set("one.tx", 50);
    expectNear(scene.numbers("object1.t"), {1, 2, 3});
    // A dead copy below the object is no constraint of it: a new one is made.
    EXPECT_EQ(scene.text("parentConstraint", {"two", "object1"}), "object1_parentConstraint1");
    expectNear(scene.worldPosition("object1"), {0, 0, 0});
}

TEST_F(Constraints, EditedOffsetHoldsTheObject) {
    scene.call("parentConstraint", {"one", "object"});
    scene.call("parentConstraint", {"object"},
               {flag("e"), flag("st", {"x"}), flag("st", {"y"}), flag("st", {"z"})});
    scene.set("object.t", 0, 7, 0);
    scene.call("parentConstraint", {"one", "object"}, edit(flag("mo")));
    expectNear(scene.numbers("object_parentConstraint1.target[0].targetOffsetTranslate"),
               {0, 7, 0});
    scene.call("parentConstraint", {"object"}, edit(flag("st", {"none"})));
    scene.set("one.tx", 2);
    expectNear(scene.worldPosition("object"), {2, 7, 0});
    EXPECT_EQ(scene.text("parentConstraint", {"object"}, edit(flag("n", {"renamed"}))), "renamed");
}

TEST_F(Constraints, KeptByAFile) {
    scene.set("one.t", 3, -2, 7);
    scene.set("one.r", 20, 130, 40);
    scene.set("two.t", 1, 1, 1);
    scene.set("object.r", 0, 95, 10);
    scene.call("parentConstraint", {"one", "two", "object"}, {flag("mo"), flag("w", {0.25})});
    scene.call("setAttr", {"object_parentConstraint1.interpType", 2});
    scene.call("aimConstraint", {"two", "parent"},
               {flag("wut", {"objectrotation"}), flag("wuo", {"one"})});
    const std::vector<double> object = scene.worldMatrix("object"),
                              angles = scene.numbers("object.r");
    const std::string text = sceneToText(scene.scene());
    EXPECT_NE(text.find("addAttr -dcb 0 -ci true -k true -sn \"w1\" -ln \"twoW1\" -dv 1 -min 0 -at "
                        "\"double\";"),
              std::string::npos);
    EXPECT_NE(text.find("addAttr -dcb 0 -ci true -sn \"w0\" -ln \"twoW0\" -dv 1 -at \"double\";"),
              std::string::npos);
    EXPECT_NE(text.find("setAttr \".int\" 2;"), std::string::npos);

    TestScene again;
    OpenReport report;
    again.scene().clear();
    createDefaultNodes(again.scene());
    ASSERT_TRUE(readSceneText(again.scene(), text, "again.ma", report));
    expectNear(again.worldMatrix("object"), object);
    expectNear(again.numbers("object.r"), angles);
    EXPECT_DOUBLE_EQ(again.number("object_parentConstraint1.oneW0"), 0.25);
    EXPECT_EQ(sceneToText(again.scene()), text);
    again.set("one.t", 0, 0, 0);
    scene.set("one.t", 0, 0, 0);
    expectNear(again.worldMatrix("object"), scene.worldMatrix("object"));
    EXPECT_EQ(again.text("parentConstraint", {"object"}, query("tl")), "one two");
}

TEST_F(Constraints, KeyedChannelsAreMixed) {
    scene.make("animCurveTL", "curve");
    scene.call("connectAttr", {"curve.output", "object.translateX"});
    scene.set("one.t", 10, 0, 0);
    EXPECT_EQ(scene.text("pointConstraint", {"one", "object"}), "object_pointConstraint1");
    EXPECT_EQ(sources("object.translateX"), "pairBlend1.outTranslateX");
    EXPECT_EQ(sources("pairBlend1.inTranslateX1"), "curve.output");
    EXPECT_EQ(sources("pairBlend1.inTranslateX2"), "object_pointConstraint1.constraintTranslateX");
    EXPECT_EQ(sources("pairBlend1.weight"), "object.blendPoint1");
    EXPECT_EQ(sources("object.translateY"), "object_pointConstraint1.constraintTranslateY");
    expectNear(scene.worldPosition("object"), {10, 0, 0});
    scene.set("object.blendPoint1", 0);
    expectNear(scene.worldPosition("object"), {0, 0, 0});
    EXPECT_EQ(scene.text("pointConstraint", {"object"}, query("tl")), "one");
}

}  // namespace
