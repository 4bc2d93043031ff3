// The handle as a node of the graph: what makes it solve again, who sees its result, how it stands
// beside other drivers.
#include "ik_scene.h"

namespace torvel::test {
namespace {

// Two bones of length 2 along x, elbow bent by 60 degrees about z: root at 0, elbow at (2 0 0).
class IkHandles : public IkScene {
  protected:
    IkHandles() {
        a = joint("a", {}, V3d(0, 0, 0));
        b = joint("b", a, V3d(2, 0, 0));
        setDegrees(b, "jointOrient", 0, 0, 60);
        c = joint("c", b, V3d(2, 0, 0));
    }
    void makeHandle(NodeHandle parent = {}) {
        handle = handleOn(a, c, "handle", "ikRPsolver", parent);
        set(handle, "poleVector", 0, 1, 0);
    }
    void moveTo(double x, double y, double z) { set(handle, "translate", x, y, z); }

    NodeHandle a, b, c, handle;
};

// Target 2 away on x, pole up: an equilateral triangle.
TEST_F(IkHandles, BendsTheTriangleToThePoleSide) {
    makeHandle();
    moveTo(2, 0, 0);
    expectNear(position(c), V3d(2, 0, 0));
    expectNear(position(b), V3d(1, std::sqrt(3.0), 0));
    expectNear(degrees(b, "rotate"), V3d(0, 0, 60), 1e-9);  // from 60 to 120 between the bones
    set(handle, "poleVector", 0, 0, -3);
    expectNear(position(b), V3d(1, 0, -std::sqrt(3.0)));
    set(handle, "twist", 90 * kDegToRad);  // about +x: -z goes to +y
    expectNear(position(b), V3d(1, std::sqrt(3.0), 0));
}

TEST_F(IkHandles, EveryInputMakesItSolveAgain) {
    const NodeHandle group = make("transform", "group"), control = make("transform", "control");
    ASSERT_TRUE(scene.reparent(a, group));
    makeHandle(control);
    set(handle, "translate", 2, 0, 0);
    expectNear(position(c), V3d(2, 0, 0));
    set(control, "translate", 0, 0, 1);
    expectNear(position(c), V3d(2, 0, 1));
    set(group, "translate", 0, 0, 1);
    expectNear(position(c), V3d(2, 0, 1));
    expectNear(position(b), V3d(1, std::sqrt(3.0), 1));
    set(b, "translate", 1, 0, 0);
    expectNear(position(c), V3d(2, 0, 1));
    EXPECT_NEAR((position(b) - position(a)).length(), 1.0, 1e-12);
    set(c, "translate", 1.5, 0, 0);
    expectNear(position(c), V3d(2, 0, 1));
    set(a, "scale", 1.2, 1, 1);
    expectNear(position(c), V3d(2, 0, 1));
    EXPECT_NEAR((position(b) - position(a)).length(), 1.2, 1e-12);
    setDegrees(control, "rotate", 0, 0, 90);
    expectNear(position(c), V3d(0, 2, 1));
    setDegrees(b, "preferredAngle", 0, 0,
               -120);  // the rest pose bends to the other side; the pole still decides
    expectNear(position(c), V3d(0, 2, 1));
    set(b, "rotateOrder", kZYX);
    expectNear(position(c), V3d(0, 2, 1));
}

TEST_F(IkHandles, ThePoleLivesInTheHandlesParentSpace) {
    const NodeHandle control = make("transform", "control");
    setDegrees(control, "rotate", 90, 0, 0);  // y of the control is world z
    makeHandle(control);
    set(handle, "translate", 2, 0, 0);
    expectNear(position(b), V3d(1, 0, std::sqrt(3.0)));
}

TEST_F(IkHandles, WhatHangsOnTheRotateSeesTheResult) {
    makeHandle();
    const NodeHandle copy = make("transform", "copy"), single = make("transform", "single");
    link(b, "rotate", copy, "rotate");
    link(b, "rotateZ", single, "rotateX");
    moveTo(2, 0, 0);
    expectNear(degrees(copy, "rotate"), V3d(0, 0, 60));
    EXPECT_NEAR(worldMatrix(scene, single)[1][2], std::sin(60 * kDegToRad), 1e-12);
    moveTo(4, 0, 0);
    expectNear(degrees(copy, "rotate"), V3d(0, 0, -60));
    EXPECT_NEAR(worldMatrix(scene, single)[1][2], -std::sin(60 * kDegToRad), 1e-12);
}

TEST_F(IkHandles, BlendsFromThePoseByHand) {
    makeHandle();
    moveTo(2, 0, 0);
    expectNear(degrees(b, "rotate"), V3d(0, 0, 60));
    setDegrees(b, "rotate", 0, 0, 20);
    expectNear(degrees(b, "rotate"), V3d(0, 0, 60));  // the handle has it
    set(handle, "ikBlend", 0);
    expectNear(degrees(b, "rotate"), V3d(0, 0, 20));
    expectNear(degrees(a, "rotate"), V3d(0, 0, 0));
    set(handle, "ikBlend", 0.25);
    expectNear(degrees(b, "rotate"), V3d(0, 0, 30), 1e-9);
    moveTo(3, 0, 0);
    moveTo(2, 0, 0);
    expectNear(degrees(b, "rotate"), V3d(0, 0, 30), 1e-9);  // nothing piles up
    set(handle, "solverEnable", 0);
    expectNear(degrees(b, "rotate"), V3d(0, 0, 20));
    set(handle, "solverEnable", 1);
    set(handle, "ikBlend", 1);
    expectNear(degrees(b, "rotate"), V3d(0, 0, 60));
}

TEST_F(IkHandles, KeysUnderTheHandleAreThePoseByHand) {
    const NodeHandle curve = make("animCurveTA", "curve");
    scene.setNumber(plug(curve, "keyTimeValue[0].keyTime"), 1);
    scene.setNumber(plug(curve, "keyTimeValue[0].keyValue"), 10 * kDegToRad);
    link(curve, "output", b, "rotateZ");
    makeHandle();
    moveTo(2, 0, 0);
    expectNear(degrees(b, "rotate"), V3d(0, 0, 60));
    expectNear(position(c), V3d(2, 0, 0));
    set(handle, "ikBlend", 0);
    expectNear(degrees(b, "rotate"), V3d(0, 0, 10));
    set(handle, "ikBlend", 0.5);
    expectNear(degrees(b, "rotate"), V3d(0, 0, 35), 1e-9);
    scene.setNumber(plug(curve, "keyTimeValue[0].keyValue"), 20 * kDegToRad);
    expectNear(degrees(b, "rotate"), V3d(0, 0, 40), 1e-9);
}

TEST_F(IkHandles, OtherDriversKeepTheirChannels) {
    const NodeHandle driver = make("transform", "driver");
    setDegrees(driver, "rotate", 15, 0, 0);
    link(driver, "rotateX", a, "rotateX");
    makeHandle();
    moveTo(0, 2, 1);
    EXPECT_NEAR(degrees(a, "rotate").x, 15, 1e-12);
}

TEST_F(IkHandles, AReleasedChainStaysWhereItIs) {
    makeHandle();
    moveTo(2, 0, 0);
    expectNear(position(c), V3d(2, 0, 0));
    scene.deleteNodes({handle});
    expectNear(position(c), V3d(2, 0, 0));
    setDegrees(b, "rotate", 0, 0, 0);
    expectNear(degrees(b, "rotate"), V3d(0, 0, 0));
}

TEST_F(IkHandles, ChangesOfTheTreeAreSeen) {
    makeHandle();
    moveTo(2, 0, 0);
    expectNear(position(c), V3d(2, 0, 0));
    const NodeHandle group = make("transform", "group", a);
    set(group, "translate", 1, 0, 0);
    set(b, "translate", 1, 0, 0);
    ASSERT_TRUE(scene.reparent(b, group));  // a transform between the joints is carried along
    expectNear(position(c), V3d(2, 0, 0));
    expectNear(position(b), V3d(1, std::sqrt(3.0), 0));
    set(group, "translate", 1.5, 0, 0);
    expectNear(position(c), V3d(2, 0, 0));
    EXPECT_NEAR((position(b) - position(a)).length(), 2.5, 1e-12);
    const NodeHandle effector = scene.source(plug(handle, "endEffector")).node;
    scene.deleteNodes({effector});
    moveTo(3, 0, 0);
    expectNear(position(c), V3d(2, 0, 0));  // nothing solves any more
}

TEST_F(IkHandles, AHandleBelowAnotherChainFollowsIt) {
    const NodeHandle d = joint("d", c, V3d(1, 0, 0)), e = joint("e", d, V3d(1, 0, 0));
    setDegrees(d, "jointOrient", 0, 0, 30);
    makeHandle();
    const NodeHandle lower = handleOn(c, e, "lower");
    set(lower, "poleVector", 0, 1, 0);
    moveTo(2, 0, 0);
    set(lower, "translate", 3, 0, 0);
    expectNear(position(c), V3d(2, 0, 0));
    expectNear(position(e), V3d(3, 0, 0));
    expectNear(position(d), V3d(2.5, std::sqrt(0.75), 0));
    moveTo(2.5, 0, 0);
    expectNear(position(e), V3d(3, 0, 0));
}

TEST_F(IkHandles, TheLaterOfTwoHandlesHasTheJoint) {
    makeHandle();
    const NodeHandle later = handleOn(a, b, "later");
    set(later, "translate", 0, 2, 0);
    expectNear(position(b), V3d(0, 2, 0));
    scene.deleteNodes({later});
    moveTo(2, 0, 0);
    expectNear(position(c), V3d(2, 0, 0));
}

TEST_F(IkHandles, AHandleUnderItsOwnChainIsToldOnceAndHolds) {
    makeHandle(c);
    for (int i = 0; i < 3; ++i) {
        set(handle, "translate", 0.1 * i, 0, 0);
        EXPECT_TRUE(std::isfinite(position(c).x));
    }
}

TEST_F(IkHandles, UnknownSolversAreToldOnceAndLeaveTheJoints) {
    std::vector<std::string> lines;
    log.addSink([&](const LogLine& line) { lines.push_back(line.text); });
    setDegrees(b, "rotate", 0, 0, 5);
    handle = handleOn(a, c, "handle", "ikSplineSolver");
    moveTo(1, 1, 0);
    expectNear(degrees(b, "rotate"), V3d(0, 0, 5));
    set(a, "translate", 1, 0, 0);
    expectNear(position(b), V3d(3, 0, 0));
    make("transform", "other");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0],
              "handle: the solver 'ikSplineSolver' is not evaluated; the joints of this ikHandle "
              "keep their "
              "rotations.");
}

TEST_F(IkHandles, SingleChainTakesTheShortestWay) {
    handle = handleOn(a, b, "handle", "ikSCsolver");
    moveTo(0, 0, 5);
    expectNear(position(b), V3d(0, 0, 2));
    expectNear(worldMatrix(scene, a), M44d(0, 0, 1, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 0, 1));
}

TEST_F(IkHandles, AScaledAndAMirroredParentDoNotMatter) {
    const NodeHandle group = make("transform", "group");
    ASSERT_TRUE(scene.reparent(a, group));
    set(group, "scale", -2, 2, 2);
    makeHandle();
    moveTo(2, 0, 0);
    expectNear(position(c), V3d(2, 0, 0));
    EXPECT_LE(sideError(position(a), position(b), position(c), V3d(0, 1, 0)), 1e-6);
    set(handle, "twist", 0.5);
    EXPECT_LE(
        sideError(position(a), position(b), position(c), V3d(0, std::cos(0.5), std::sin(0.5))),
        1e-6);
    set(group, "scale", 1, 3, 0.5);
    expectNear(position(c), V3d(2, 0, 0));
}

}  // namespace
}  // namespace torvel::test
