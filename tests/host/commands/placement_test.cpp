#include <gtest/gtest.h>

#include <cmath>

#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

class Placing : public testing::Test {
  protected:
    void chain() {
        scene.call("joint", {},
                   {flag("n", {"j1"}), flag("p", {-1.0074561718837285, 1.1005195249890261, 0})});
        scene.call("joint", {},
                   {flag("n", {"j2"}), flag("p", {0.29197270694295163, -0.41911363799627854, 0})});
        scene.call("joint", {},
                   {flag("n", {"j3"}), flag("p", {1.9540376719102268, 2.471393319311959, 0})});
    }
    void expectStill(const std::vector<std::vector<double>>& before) {
        const char* names[] = {"j1", "j2", "j3"};
        for (std::size_t i = 0; i < 3; ++i)
            expectNear(scene.worldMatrix(names[i]), before[i], 1e-9);
    }
    std::vector<std::vector<double>> places() {
        return {scene.worldMatrix("j1"), scene.worldMatrix("j2"), scene.worldMatrix("j3")};
    }
    TestScene scene;
};

TEST_F(Placing, OrientWithZeroScaleOrientTurnsTheChain) {
    chain();
    scene.call("joint", {"j1"},
               {flag("e"), flag("oj", {"xyz"}), flag("sao", {"yup"}), flag("zso"), flag("ch")});
    expectNear(scene.numbers("j1.jo"), {0, 0, -49.466453277038752}, 1e-9);
    expectNear(scene.numbers("j2.jo"), {0, 0, 109.56720189350501}, 1e-9);
    expectNear(scene.numbers("j3.jo"), {0, 0, -60.100748616466262}, 1e-9);
    expectNear(scene.numbers("j2.t"), {1.9994500146724059, 0, 0}, 1e-9);
    expectNear(scene.numbers("j3.t"), {3.3342900920614262, 0, 0}, 1e-9);
    expectNear(scene.worldPosition("j3"), {1.9540376719102268, 2.471393319311959, 0}, 1e-12);
}

TEST_F(Placing, OrientAloneMovesNothing) {
    chain();
    const auto before = places();
    scene.call("joint", {" j1 "}, {flag("e"), flag("oj", {"xyz"}), flag("sao", {"yup"})});
    expectNear(scene.numbers("j1.jo"), {0, 0, -49.466453277038752}, 1e-9);
    expectNear(scene.numbers("j1.rotateAxis"), {0, 0, 49.466453277038752}, 1e-9);
    expectStill(before);
    scene.call("joint", {"j1"}, {flag("e"), flag("zso")});
    expectNear(scene.numbers("j1.rotateAxis"), {0, 0, 0});
    expectNear(scene.numbers("j1.jo"), {0, 0, 0}, 1e-9);
    expectStill(before);
}

TEST_F(Placing, OrientPassesOverRotatedAndEndJoints) {
    chain();
    scene.set("j1.rx", 5);
    const auto before = places();
    scene.call("joint", {"j1", "j3"}, {flag("e"), flag("oj", {"yzx"}), flag("sao", {"yup"})});
    expectNear(scene.numbers("j1.jo"), {0, 0, 0});
    expectNear(scene.numbers("j3.jo"), {0, 0, 0});
    expectStill(before);
    EXPECT_NE(scene.error("joint", {"j2"}, {flag("e"), flag("oj", {"xxy"})}), "ok");
}

TEST_F(Placing, AimAxisFollowsTheFirstLetter) {
    scene.call("joint", {}, {flag("n", {"a"})});
    scene.call("joint", {}, {flag("n", {"b"}), flag("p", {0, 0, 3})});
    scene.call("joint", {"a"},
               {flag("e"), flag("oj", {"yzx"}), flag("sao", {"xdown"}), flag("zso")});
    const std::vector<double> m = scene.worldMatrix("a");
    expectNear({m[4], m[5], m[6]}, {0, 0, 1});    // y down the bone
    expectNear({m[8], m[9], m[10]}, {-1, 0, 0});  // z toward -x
    expectNear({m[0], m[1], m[2]}, {0, -1, 0});   // right hand: x = y cross z
    expectNear(scene.worldPosition("b"), {0, 0, 3});
}

TEST_F(Placing, FreezeFoldsRotationIntoJointOrient) {
    scene.make("joint", "a");
    scene.make("joint", "b", "a");
    scene.set("a.rz", 30);
    scene.set("a.jo", 0, 0, 15);
    scene.set("b.t", 1, 0, 0);
    scene.call("makeIdentity", {"a"}, {flag("apply", {true}), flag("rotate", {true})});
    expectNear(scene.numbers("a.r"), {0, 0, 0});
    expectNear(scene.numbers("a.jo"), {0, 0, 45}, 1e-9);
    expectNear(scene.numbers("b.t"), {1, 0, 0});
    expectNear(scene.numbers("b.jo"), {0, 0, 0});
}

TEST_F(Placing, TwoHalfTurnsReverseTwoAxes) {
    scene.make("joint", "a");
    scene.set("a.jo", 10, 20, 30);
    const std::vector<double> before = scene.worldMatrix("a");
    scene.set("a.r", 180, 180, 0);
    scene.call("makeIdentity", {"a"}, {flag("apply", {true}), flag("r", {true})});
    const std::vector<double> after = scene.worldMatrix("a");
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(after[i], -before[i], 1e-9);
        EXPECT_NEAR(after[4 + i], -before[4 + i], 1e-9);
        EXPECT_NEAR(after[8 + i], before[8 + i], 1e-9);
    }
}

TEST_F(Placing, FreezeIsAllOrNothing) {
    scene.make("joint", "a");
    scene.make("joint", "b", "a");
    scene.set("a.rz", 30);
    scene.call("setAttr", {"b.rx"}, {flag("lock", {true})});
    EXPECT_EQ(scene.error("makeIdentity", {"a"}, {flag("apply", {true}), flag("r", {true})}),
              "makeIdentity: Freeze Transform was not applied because b.rx is locked");
    EXPECT_NEAR(scene.number("a.rz"), 30, 1e-12);
}

TEST_F(Placing, FreezeOfATransformMovesItsPointsInstead) {
    scene.call("polyCube", {}, {flag("n", {"box"})});
    scene.set("box.t", 1, 2, 3);
    scene.set("box.r", 0, 0, 90);
    scene.set("box.s", 2, 1, 1);
    scene.make("transform", "below", "box");
    scene.set("below.t", 0, 1, 0);
    const TestScene::Flags where{flag("q"), flag("ws"), flag("t")};
    const std::vector<double> corner = numbersOf(scene.call("xform", {"box.vtx[3]"}, where));
    scene.call("makeIdentity", {"box"}, {flag("apply", {true})});
    expectNear(scene.numbers("box.t"), {0, 0, 0});
    expectNear(scene.numbers("box.r"), {0, 0, 0});
    expectNear(scene.numbers("box.s"), {1, 1, 1});
    expectNear(numbersOf(scene.call("xform", {"box.vtx[3]"}, where)), corner, 1e-6);
    expectNear(numbersOf(scene.call("xform", {"box"}, {flag("q"), flag("ws"), flag("rp")})),
               {1, 2, 3});
    expectNear(scene.numbers("below.t"), {0, 0, 0});
    expectNear(numbersOf(scene.call("xform", {"below"}, {flag("q"), flag("ws"), flag("rp")})),
               {0, 2, 3}, 1e-9);
}

TEST_F(Placing, XformReadsAndWritesWorldSpace) {
    scene.make("transform", "P");
    scene.set("P.t", 10, 0, 0);
    scene.set("P.rz", 90);
    scene.make("joint", "a", "P");
    scene.set("a.t", 1, 0, 0);
    scene.set("a.jo", 0, 0, -30);
    expectNear(scene.worldPosition("a"), {10, 1, 0});
    expectNear(numbersOf(scene.call("xform", {"a"}, {flag("q"), flag("ws"), flag("ro")})),
               {0, 0, 60}, 1e-9);
    scene.call("xform", {"a"}, {flag("ws"), flag("t", {10, 5, 2})});
    expectNear(scene.numbers("a.t"), {5, 0, 2});
    scene.call("xform", {"a"}, {flag("ws"), flag("ro", {0, 0, 0})});
    expectNear(scene.numbers("a.r"), {0, 0, -60}, 1e-9);
    expectNear(scene.numbers("a.jo"), {0, 0, -30});
    scene.call("setAttr", {"a.tx"}, {flag("lock", {true})});
    scene.call("xform", {"a"}, {flag("t", {7, 8, 9})});
    expectNear(scene.numbers("a.t"), {5, 8, 9});
    EXPECT_EQ(scene.error("xform", {"world"}, {flag("q"), flag("ws"), flag("t")}),
              "No object matches name: world");
}

TEST_F(Placing, MatchTransformKeepsJointOrient) {
    scene.make("transform", "target");
    scene.set("target.t", 1, 2, 3);
    scene.set("target.r", 10, 20, 30);
    scene.set("target.s", 2, 2, 2);
    scene.make("joint", "a");
    scene.set("a.jo", 0, 40, 0);
    scene.call("matchTransform", {"a", "target"});
    expectNear(scene.worldMatrix("a"), scene.worldMatrix("target"), 1e-9);
    expectNear(scene.numbers("a.jo"), {0, 40, 0});
    scene.make("transform", "b");
    scene.call("matchTransform", {"b", "target"}, {flag("pos")});
    expectNear(scene.worldPosition("b"), {1, 2, 3});
    expectNear(scene.numbers("b.r"), {0, 0, 0});
}

TEST_F(Placing, MoveAndRotateWorkOnObjectsAndPoints) {
    scene.make("transform", "P");
    scene.set("P.rz", 90);
    scene.make("transform", "a", "P");
    scene.call("move", {3, 0, 0, "a"});
    expectNear(scene.worldPosition("a"), {3, 0, 0});
    scene.call("move", {0, 1, 0, "a"}, {flag("r"), flag("ls")});
    expectNear(scene.worldPosition("a"), {2, 0, 0});
    scene.call("move", {7, "a"}, {flag("y")});
    expectNear(scene.worldPosition("a"), {2, 7, 0});
    scene.call("rotate", {0, 0, "45deg", "a"});
    expectNear(scene.numbers("a.r"), {0, 0, -45}, 1e-9);
    scene.call("polyPlane", {}, {flag("n", {"sheet"}), flag("sx", {1}), flag("sy", {1})});
    scene.call("move", {0, 0, 1, "sheet.vtx[0]"});
    scene.call("rotate", {90, 0, 0, "sheet.vtx[0]"});
    expectNear(numbersOf(scene.call("xform", {"sheet.vtx[0]"}, {flag("q"), flag("t")})), {0, -1, 0},
               1e-6);
    scene.call("move", {0, 0, 1, "sheet.vtx[0]"});
    scene.call("rotate", {0, 90, 0, "sheet.vtx[0]"}, {flag("p", {5, 0, 0})});
    expectNear(numbersOf(scene.call("xform", {"sheet.vtx[0]"}, {flag("q"), flag("t")})), {6, 0, 5},
               1e-6);
}

TEST_F(Placing, PivotChangesKeepTheObjectInPlace) {
    scene.make("transform", "a");
    scene.set("a.t", 1, 0, 0);
    scene.set("a.r", 0, 0, 90);
    scene.set("a.s", 2, 3, 1);
    const std::vector<double> before = scene.worldMatrix("a");
    scene.call("xform", {"a"}, {flag("ws"), flag("piv", {5, 5, 5})});
    expectNear(scene.worldMatrix("a"), before, 1e-9);
    expectNear(numbersOf(scene.call("xform", {"a"}, {flag("q"), flag("ws"), flag("rp")})),
               {5, 5, 5}, 1e-9);
}

TEST_F(Placing, JointCommandCreatesBelowTheSelection) {
    EXPECT_EQ(scene.text("joint"), "joint1");
    EXPECT_EQ(
        scene.text("joint", {}, {flag("p", {0, 2, 0}), flag("rad", {0.5}), flag("o", {0, 0, 90})}),
        "joint2");
    EXPECT_EQ(scene.text("listRelatives", {"joint1"}), "joint2");
    EXPECT_TRUE(scene.call("isConnected", {"joint1.s", "joint2.is"}).truth());
    EXPECT_DOUBLE_EQ(scene.number("joint2.radius"), 0.5);
    expectNear(numbersOf(scene.call("joint", {"joint2"}, {flag("q"), flag("o")})), {0, 0, 90},
               1e-9);
    expectNear(numbersOf(scene.call("joint", {"joint2"}, {flag("q"), flag("p"), flag("a")})),
               {0, 2, 0});
}

TEST_F(Placing, Facts) {
    EXPECT_EQ(scene.text("about", {}, {flag("v")}), "2024");
    EXPECT_EQ(scene.error("undoInfo", {}, {flag("ock"), flag("cn", {"step"})}), "ok");
    EXPECT_NE(scene.error("undo"), "ok");
    EXPECT_EQ(scene.text("currentUnit", {}, {flag("q"), flag("linear")}), "cm");
    scene.call("currentTime", {12});
    EXPECT_DOUBLE_EQ(scene.call("currentTime", {}, {flag("q")}).number(), 12.0);
}

}  // namespace
