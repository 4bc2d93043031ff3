// Editing joints by the joint command, and how exactly moving them about keeps their place.

#include <gtest/gtest.h>

#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

class JointEditing : public testing::Test {
  protected:
    JointEditing() {
        scene.make("joint", "a");
        scene.make("joint", "b", "a");
        scene.make("joint", "c", "b");
        scene.call("setAttr", {"b.t", 0.0, 3.0, 1.0});
        scene.call("setAttr", {"c.t", 2.0, 1.0, -4.0});
    }
    TestScene scene;
};

TEST_F(JointEditing, GivenOrientationsAreWrittenAsTheyAre) {
    scene.call("joint", {"b"}, {flag("e"), flag("o", {10, 20, 30}), flag("so", {-5, 0, 15})});
    expectNear(scene.numbers("b.jo"), {10, 20, 30}, 1e-12);
    expectNear(scene.numbers("b.rotateAxis"), {-5, 0, 15}, 1e-12);
    expectNear(numbersOf(scene.call("joint", {"b"}, {flag("q"), flag("so")})), {-5, 0, 15}, 1e-12);
    expectNear(scene.numbers("a.jo"), {0, 0, 0});
}

TEST_F(JointEditing, GivenOrientationsWinOverComputedOnes) {
    scene.call("joint", {"b"},
               {flag("e"), flag("o", {0, 0, 45}), flag("oj", {"xyz"}), flag("sao", {"yup"})});
    expectNear(scene.numbers("b.jo"), {0, 0, 45}, 1e-12);
    expectNear(scene.numbers("b.rotateAxis"), {0, 0, 0});
}

TEST_F(JointEditing, PreferredAnglesAreTakenAndAssumed) {
    scene.call("setAttr", {"b.r", 5.0, 15.0, -25.0});
    scene.call("joint", {"a"}, {flag("e"), flag("spa"), flag("ch")});
    expectNear(scene.numbers("b.pa"), {5, 15, -25}, 1e-12);
    scene.call("setAttr", {"b.r", 0.0, 0.0, 0.0});
    scene.call("joint", {"b"}, {flag("e"), flag("apa")});
    expectNear(scene.numbers("b.r"), {5, 15, -25}, 1e-12);
}

TEST_F(JointEditing, ChildrenTakePlainFlagsToo) {
    scene.call("joint", {"b"}, {flag("e"), flag("ch"), flag("rad", {2.5})});
    EXPECT_DOUBLE_EQ(scene.number("a.radius"), 1.0);
    EXPECT_DOUBLE_EQ(scene.number("b.radius"), 2.5);
    EXPECT_DOUBLE_EQ(scene.number("c.radius"), 2.5);
}

TEST_F(JointEditing, ARadiusBelowItsLeastIsRefusedBySetAttr) {
    EXPECT_NE(scene.error("setAttr", {"a.radius", -0.5}), "ok");
    EXPECT_DOUBLE_EQ(scene.number("a.radius"), 1.0);
    scene.call("setAttr", {"a.radius", 0.0});
    EXPECT_DOUBLE_EQ(scene.number("a.radius"), 0.0);
}

// The second turn stands within a millionth of a degree of a right angle, where the outer two are
// hardly told apart; a far child shows what is lost.
TEST_F(JointEditing, PlacesSurviveAnOrientationCloseToARightAngle) {
    for (const double gap : {1e-4, 1e-7, 1e-10, 0.0}) {
        SCOPED_TRACE(gap);
        scene.call("setAttr", {"b.jo", 40.0, 90.0 - gap, -25.0});
        scene.call("setAttr", {"c.t", 300.0, -200.0, 100.0});
        scene.call("setAttr", {"a.jo", 20.0, -35.0, 70.0});
        const std::vector<double> before = scene.worldMatrix("c");
        scene.call("parent", {"b"}, {flag("w")});
        expectNear(scene.worldMatrix("c"), before, 1e-9);
        scene.call("parent", {"b", "a"});
        expectNear(scene.worldMatrix("c"), before, 1e-9);
        scene.call("setAttr", {"b.r", 12.0, 34.0, 56.0});
        const std::vector<double> turned = scene.worldMatrix("c");
        scene.call("makeIdentity", {"b"}, {flag("apply", {true}), flag("rotate", {true})});
        expectNear(scene.worldMatrix("c"), turned, 1e-9);
    }
}

// Even a change that no channel shows adds up at the end of a long chain.
TEST_F(JointEditing, SmallChangesAreWritten) {
    scene.call("setAttr", {"c.t", 5000.0, 0.0, 0.0});
    scene.call("setAttr", {"a.jo", 0.0, 0.0, 2e-8});
    const std::vector<double> before = scene.worldMatrix("c");
    scene.call("parent", {"b"}, {flag("w")});
    expectNear(scene.worldMatrix("c"), before, 1e-9);
}

}  // namespace
