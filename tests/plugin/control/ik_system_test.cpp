// What the two controls of the IK system do to the arm, against the solver's closed form.

#include <cmath>

#include "plugin/fixtures/system_scene.h"

namespace torvel::test {

namespace {

// Where the middle joint of a two-bone chain stands: `a` and `b` are its bones.
V3d bentMiddle(const V3d& start, const V3d& goal, const V3d& pole, double a, double b) {
    const V3d line = goal - start;
    const double d = line.length();
    const V3d h = line / d;
    const V3d side = ((pole - start) - h * (h ^ (pole - start))).normalized();
    const double along = (a * a + d * d - b * b) / (2 * d);
    return start + h * along + side * std::sqrt(a * a - along * along);
}

}  // namespace

class IKSystemTest : public SystemScene {
  public:
    void build(const Lines& joints) { clickOn(joints, "btn_IKsystem"); }

    void makeArmIK() {
        python("ctl.arm('arm', 'forearm', 'hand')");
        build({"|arm", "|arm|forearm|hand"});
    }
    /// Goal reached, middle joint where the pole wants it.
    void expectSolved() {
        const V3d goal = at("hand_IK_ctrl");
        expectAt("hand", goal, 1e-6);
        expectAt("forearm", bentMiddle({0, 0, 0}, goal, at("forearm_PV_ctrl"), kBone, kBone), 1e-6);
    }

    const double kBone = std::sqrt(26.0);
};

// The handle's pole vector is read in the space of the control that the handle is put under, and
// the control stands as the end joint does. The pole control is placed after that.
TEST_F(IKSystemTest, ATurnedHandTurnsTheElbow) {
    python("ctl.arm('arm', 'forearm', 'hand')");
    set("hand.rotate", {0, 35, 90});
    const M44d hand = worldOf("hand");
    build({"|arm", "|arm|forearm|hand"});
    for (const char* name : {"hand_IK_Offset", "hand_IK_ctrl", "hand"})
        expectSameFrame(worldOf(name), hand, 1e-6);
    // The vector along -z: turned by 35 about y it is (-sin 35, 0, -cos 35), and then by 90 about
    // z it is at right angles to the line from arm to hand.
    const double angle = 35 * kDegToRad;
    const V3d side(0, -std::sin(angle), -std::cos(angle));
    expectAt("forearm", V3d(5, 0, 0) + side, 1e-6);
    expectAt("forearm_PV_ctrl", V3d(5, 0, 0) + side * 31, 1e-5);
    expectAt("forearm_PV_Offset", V3d(5, 0, 0) + side * 31, 1e-5);
}

TEST_F(IKSystemTest, TheBoundArm) {
    openArm();
    const V3d start = at("shoulder"), elbow = at("elbow"), goal = at("wrist");
    const double a = (elbow - start).length(), b = (goal - elbow).length();
    const V3d line = (goal - start).normalized();
    const V3d bend = elbow - start - line * (line ^ (elbow - start));
    V3d pole;
    worldOf("wrist").multDirMatrix(bend, pole);
    const M44d wrist = worldOf("wrist");
    build({"shoulder", "wrist"});
    expectSameFrame(worldOf("wrist"), wrist, 1e-6);
    const V3d middle = bentMiddle(start, goal, start + pole, a, b);
    expectAt("elbow", middle, 1e-6);
    const V3d side = middle - start - line * (line ^ (middle - start));
    expectAt("elbow_PV_ctrl", middle + side.normalized() * 30, 1e-4);
}

// Steps one after another; the pole control rests at (5, 0, -31).
TEST_F(IKSystemTest, HandAndElbowFollowTheControlsAndTheirGroups) {
    const struct {
        const char* plug;
        V3d value;
    } steps[] = {
        {"hand_IK_ctrl.translate", {-2, 0, 0}},      {"hand_IK_ctrl.translate", {-3, 4, 1}},
        {"hand_IK_ctrl.translate", {-6, -5, 2}},     {"hand_IK_ctrl.translate", {-9, 0, 6}},
        {"hand_IK_ctrl.translate", {-14, 3, -2}},    {"hand_IK_ctrl.translate", {0, 0, 0}},
        {"forearm_PV_ctrl.translate", {0, 31, 31}},  {"hand_IK_ctrl.translate", {-2, 5, 1}},
        {"forearm_PV_ctrl.translate", {0, 0, 62}},   {"hand_IK_ctrl.translate", {0, 0, 0}},
        {"forearm_PV_ctrl.translate", {0, -20, 34}}, {"hand_IK_ctrl.translate", {-2, 5, 1}},
        {"forearm_PV_ctrl.translate", {-9, -1, 40}}, {"hand_IK_ctrl.translate", {0, 0, 0}},
        {"forearm_PV_ctrl.translate", {0, 0, 0}},    {"hand_IK_Offset.rotate", {30, 0, 60}},
        {"hand_IK_Offset.translate", {6, 3, 2}},     {"forearm_PV_Offset.translate", {2, 25, 4}},
        {"hand_IK_ctrl.translate", {0.5, 0.25, -1}},
    };
    makeArmIK();
    for (const auto& step : steps) {
        SCOPED_TRACE(step.plug);
        set(step.plug, step.value);
        expectSolved();
    }
}

TEST_F(IKSystemTest, OutOfReachTheArmIsStraight) {
    makeArmIK();
    set("hand_IK_ctrl.translate", {20, 40, 0});
    const V3d along = V3d(3, 4, 0) / 5.0;
    expectAt("forearm", along * kBone, 1e-6);
    expectAt("hand", along * (2 * kBone), 1e-6);
}

TEST_F(IKSystemTest, TheHandTurnsWithItsControl) {
    makeArmIK();
    python("ctl.joints(('finger', 12, 0, 0), parent='|arm|forearm|hand')");
    set("hand_IK_ctrl.translate", {-3, 2, 0});
    set("hand_IK_ctrl.rotate", {0, 0, 90});
    expectSolved();
    expectAt("finger", {7, 4, 0}, 1e-6);
}

TEST_F(IKSystemTest, TheSkinFollowsTheControls) {
    openArm();
    const std::vector<V3d> rest = skinPoints();
    std::vector<M44d> toJoint;
    std::vector<std::vector<double>> weights;
    for (const std::string& joint : kSkinJoints) {
        toJoint.push_back(worldOf(joint).inverse());
        weights.push_back(skinShares({joint}));
    }
    build({"shoulder", "wrist"});
    const V3d wrist = at("wrist");
    python("cmds.move(-2, 1, 1.5, 'wrist_IK_ctrl', relative=True, worldSpace=True)");
    python("cmds.move(0, 20, 20, 'elbow_PV_ctrl', relative=True, worldSpace=True)");
    set("wrist_IK_ctrl.rotate", {20, -10, 30});
    expectAt("wrist", wrist + V3d(-2, 1, 1.5), 1e-6);
    std::vector<V3d> expected(rest.size(), V3d(0.0));
    for (std::size_t j = 0; j < toJoint.size(); ++j) {
        const M44d moved = toJoint[j] * worldOf(kSkinJoints[j]);
        for (std::size_t i = 0; i < rest.size(); ++i)
            expected[i] += (rest[i] * moved) * weights[j][i];
    }
    expectSamePoints(skinPoints(), expected, 1e-4);
}

TEST_F(IKSystemTest, AChainOfFourJointsKeepsItsBonesAndItsPlane) {
    python("ctl.joints(('a', 0, 0, 0), ('b', 4, 0, -1), ('c', 8, 0, -1), ('d', 12, 0, 0))");
    build({"|a", "|a|b|c|d"});
    set("d_IK_ctrl.translate", {-3, 2, 1});
    expectAt("d", {9, 2, 1}, 1e-4);
    EXPECT_NEAR((at("b") - at("a")).length(), std::sqrt(17.0), 1e-6);
    EXPECT_NEAR((at("c") - at("b")).length(), 4.0, 1e-6);
    EXPECT_NEAR((at("d") - at("c")).length(), std::sqrt(17.0), 1e-6);
    const V3d normal = (at("d") % (at("c_PV_ctrl") - at("a"))).normalized();
    EXPECT_NEAR(normal ^ at("b"), 0.0, 1e-5);
    EXPECT_NEAR(normal ^ at("c"), 0.0, 1e-5);
}

}  // namespace torvel::test
