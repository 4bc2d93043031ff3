// The IK system: texts and lines in order, the rig that stands afterwards, and what its two
// controls do to the arm.

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

/// The texts and lines for a chain that is built without a failure.
struct Names {
    std::string start, mid, end;
    std::string midPath, endPath;
    std::string ctrl, handle;  // before "_ctrl" and whole
};

Lines ikLines(const Names& n, bool withAuto = false) {
    const std::string ctrl = n.ctrl + "_ctrl", offset = n.ctrl + "_Offset",
                      autoGroup = n.ctrl + "_Auto", pv = n.mid + "_PV_ctrl";
    Lines grouping{"mel plain: parent " + ctrl + " " + offset + ";"};
    if (withAuto)
        grouping = {"mel plain: matchTransform " + autoGroup + " " + n.end + ";",
                    "mel plain: parent " + ctrl + " " + autoGroup + ";",
                    "mel plain: parent " + autoGroup + " " + offset + ";"};
    return Lines{"info: Creando sistema IK...", "mel plain: ikHandle -sj " + n.start + "-ee " +
                                                    n.end + "-sol ikRPsolver -n " + n.handle +
                                                    ";"} +
           circleLines(n.end, n.endPath) +
           Lines{"mel plain: orientConstraint " + ctrl + " " + n.end + ";",
                 "mel plain: setAttr \"" + ctrl + ".overrideEnabled\" 1;",
                 "mel plain: setAttr \"" + ctrl + ".overrideColor\" 17;",
                 "mel plain: parent " + n.handle + " " + ctrl + ";",
                 "mel plain: matchTransform " + offset + " " + n.end + ";"} +
           grouping + circleLines(n.mid, n.midPath) +
           Lines{"mel plain: poleVectorConstraint " + pv + " " + n.handle + ";",
                 "mel plain: matchTransform " + n.mid + "_PV_Offset " + pv + ";",
                 "mel plain: parent " + pv + " " + n.mid + "_PV_Offset;",
                 "info: Sistema IK creado exitosamente."};
}

}  // namespace

class IKSystemTest : public SystemScene {
  public:
    void build(const Lines& joints) { clickOn(joints, "btn_IKsystem"); }

    void makeArm() {
        makeJoints({{"arm", {0, 0, 0}}, {"forearm", {5, 0, -1}}, {"hand", {10, 0, 0}}});
    }
    void makeArmIK() {
        makeArm();
        build({"|arm", "|arm|forearm|hand"});
        EXPECT_EQ(messages().back(), kSuccess);
    }
    /// Goal reached, middle joint where the pole wants it.
    void expectSolved(const std::string& hand = "hand") {
        const V3d goal = at("hand_IK_ctrl");
        expectAt(hand, goal, 1e-6);
        expectAt("forearm", bentMiddle({0, 0, 0}, goal, at("forearm_PV_ctrl"), kBone, kBone), 1e-6);
    }

    const double kBone = std::sqrt(26.0);
    const std::string kSuccess = "info: Sistema IK creado exitosamente.";
    const Names kArm{"arm",     "forearm",       "hand", "|arm|forearm", "|arm|forearm|hand",
                     "hand_IK", "hand_IK_handle"};
};

TEST_F(IKSystemTest, ModeOffset) {
    makeArm();
    build({"|arm", "|arm|forearm|hand"});
    EXPECT_EQ(record(), ikLines(kArm));
    EXPECT_EQ(topNodes(), (Lines{"arm", "hand_IK_Offset", "forearm_PV_Offset"}));
    EXPECT_EQ(tree("|hand_IK_Offset"), (Lines{"hand_IK_Offset", " hand_IK_ctrl", "  hand_IK_handle",
                                              "   hand_IK_handle_poleVectorConstraint1"}));
    EXPECT_EQ(tree("|forearm_PV_Offset"), (Lines{"forearm_PV_Offset", " forearm_PV_ctrl"}));
    EXPECT_EQ(tree("|arm"),
              (Lines{"arm", " forearm", "  hand", "   hand_orientConstraint1", "  effector1"}));
}

TEST_F(IKSystemTest, ModeOffsetAuto) {
    makeArm();
    click("rad_offsetAuto");
    build({"|arm", "|arm|forearm|hand"});
    EXPECT_EQ(record(), ikLines(kArm, true));
    EXPECT_EQ(tree("|hand_IK_Offset"),
              (Lines{"hand_IK_Offset", " hand_IK_Auto", "  hand_IK_ctrl", "   hand_IK_handle",
                     "    hand_IK_handle_poleVectorConstraint1"}));
    EXPECT_EQ(tree("|forearm_PV_Offset"), (Lines{"forearm_PV_Offset", " forearm_PV_ctrl"}));
}

TEST_F(IKSystemTest, PlacesColoursAndSizes) {
    makeArm();
    click("rad_Z");
    build({"|arm", "|arm|forearm|hand"});
    for (const char* name : {"hand_IK_Offset", "hand_IK_ctrl", "hand"})
        expectAt(name, {10, 0, 0});
    expectAt("forearm", {5, 0, -1});
    expectAt("forearm_PV_ctrl", {5, 0, -31});
    expectAt("forearm_PV_Offset", {5, 0, -31});
    EXPECT_NEAR(numberOf("forearm_PV_ctrl.translateZ"), 0, 1e-9);
    EXPECT_EQ(numberOf("hand_IK_ctrl.overrideEnabled"), 1);
    EXPECT_EQ(numberOf("hand_IK_ctrl.overrideColor"), 17);
    EXPECT_EQ(numberOf("forearm_PV_ctrl.overrideEnabled"), 0);
    const Points one = points(shapesOf("hand_IK_ctrl").at(0));
    const Points other = points(shapesOf("forearm_PV_ctrl").at(0));
    EXPECT_NEAR(std::hypot(one.at(0)[0], one[0][1]), 6 * 1.108194187554388, 1e-5);
    EXPECT_NEAR(std::hypot(other.at(0)[0], other[0][1]), 3 * 1.108194187554388, 1e-5);
    EXPECT_NEAR(one[3][2], 0, 1e-9);
}

// The handle's pole vector is read in the space of the control that the handle is put under, and
// the control stands as the end joint does. The pole control is placed after that.
TEST_F(IKSystemTest, ATurnedHandTurnsTheElbow) {
    makeArm();
    set("hand.rotate", {0, 35, 90});
    const M44d hand = worldOf("hand");
    build({"|arm", "|arm|forearm|hand"});
    for (const char* name : {"hand_IK_Offset", "hand_IK_ctrl", "hand"})
        EXPECT_TRUE(worldOf(name).equalWithAbsError(hand, 1e-6)) << name;
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
    EXPECT_TRUE(worldOf("wrist").equalWithAbsError(wrist, 1e-6));
    const V3d middle = bentMiddle(start, goal, start + pole, a, b);
    expectAt("elbow", middle, 1e-6);
    const V3d side = middle - start - line * (line ^ (middle - start));
    expectAt("elbow_PV_ctrl", middle + side.normalized() * 30, 1e-4);
}

TEST_F(IKSystemTest, TheHandFollowsItsControl) {
    makeArmIK();
    const V3d steps[] = {{-2, 0, 0}, {-3, 4, 1}, {-6, -5, 2}, {-9, 0, 6}, {-14, 3, -2}};
    for (const V3d& step : steps) {
        set("hand_IK_ctrl.translate", step);
        expectAt("hand_IK_ctrl", V3d(10, 0, 0) + step);
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
    makeJoints({{"finger", {12, 0, 0}}}, "|arm|forearm|hand");
    set("hand_IK_ctrl.translate", {-3, 2, 0});
    set("hand_IK_ctrl.rotate", {0, 0, 90});
    expectSolved();
    expectAt("finger", {7, 4, 0}, 1e-6);
}

TEST_F(IKSystemTest, ThePoleTurnsTheElbow) {
    makeArmIK();
    const V3d poles[] = {{5, 31, 0}, {5, 0, 31}, {5, -20, 3}, {-4, -1, 9}};
    for (const V3d& pole : poles) {
        set("forearm_PV_ctrl.translate", pole - V3d(5, 0, -31));
        expectAt("forearm_PV_ctrl", pole);
        expectSolved();
        set("hand_IK_ctrl.translate", {-2, 5, 1});
        expectSolved();
        set("hand_IK_ctrl.translate", {0, 0, 0});
    }
}

TEST_F(IKSystemTest, TheGroupsAboveCarryTheControls) {
    makeArmIK();
    set("hand_IK_Offset.rotate", {30, 0, 60});
    set("hand_IK_Offset.translate", {6, 3, 2});
    set("forearm_PV_Offset.translate", {2, 25, 4});
    set("hand_IK_ctrl.translate", {0.5, 0.25, -1});
    expectSolved();
}

TEST_F(IKSystemTest, TheSkinFollowsTheControls) {
    openArm();
    const Lines joints{"clavicle", "shoulder", "elbow", "wrist", "hand"};
    const std::vector<V3d> rest = skinPoints();
    std::vector<M44d> toJoint;
    std::vector<std::vector<double>> weights;
    for (const std::string& joint : joints) {
        toJoint.push_back(worldOf(joint).inverse());
        weights.push_back(skinShares({joint}));
    }
    build({"shoulder", "wrist"});
    const V3d wrist = at("wrist");
    python("cmds.move(-2, 1, 1.5, 'wrist_IK_ctrl', relative=True, worldSpace=True)");
    python("cmds.move(0, 20, 20, 'elbow_PV_ctrl', relative=True, worldSpace=True)");
    set("wrist_IK_ctrl.rotate", {20, -10, 30});
    expectAt("wrist", wrist + V3d(-2, 1, 1.5), 1e-6);
    const std::vector<V3d> now = skinPoints();
    for (std::size_t i = 0; i < now.size(); ++i) {
        V3d expected(0.0);
        for (std::size_t j = 0; j < joints.size(); ++j)
            expected += (rest[i] * (toJoint[j] * worldOf(joints[j]))) * weights[j][i];
        ASSERT_LE((now[i] - expected).length(), 1e-4) << "vertex " << i;
    }
}

TEST_F(IKSystemTest, TheThirdJointOfASelectionIsLeftOut) {
    makeArm();
    makeJoints({{"leg", {0, 0, 9}}});
    build({"|arm", "|arm|forearm|hand", "|leg"});
    EXPECT_EQ(record(), ikLines(kArm));
    EXPECT_EQ(tree("|leg"), Lines{"leg"});
    makeCircle("ring");
    build({"|arm", "|arm|forearm|hand", "ring"});
    EXPECT_EQ(record(), (Lines{"info: Creando sistema IK...", "info: No todo son Joints..."}));
}

TEST_F(IKSystemTest, RefusedSelections) {
    makeArm();
    makeJoints({{"leg", {0, 0, 5}}, {"hand", {0, -5, 5}}});
    const Lines before = dagPaths();
    const Lines opening{"info: Creando sistema IK..."};
    build({});
    EXPECT_EQ(record(),
              opening + Lines({"info: Please, select any 'Joint'", "info: No todo son Joints..."}));
    build({"|leg|hand", "|arm|forearm|hand"});
    EXPECT_EQ(record(), opening + Lines({"info: Hay dos elementos con el mismo nombre",
                                         "info: Nombre duplicado: hand"}));
    EXPECT_EQ(dagPaths(), before);
}

TEST_F(IKSystemTest, OneJointRunsThroughWithEmptyNames) {
    makeArm();
    const std::string nameless = "error: No se pudo obtener el nombre del objeto.";
    const Lines before = dagPaths();
    build({"|arm"});
    EXPECT_EQ(transcript(),
              (Lines{"info: Creando sistema IK...",
                     nameless,
                     nameless,
                     "mel plain: ikHandle -sj arm-ee -sol ikRPsolver -n _IK_handle; (failed)",
                     "error: No se encontró el objeto: _IK_handle",
                     nameless,
                     nameless,
                     "mel plain: circle -name \"_ctrl\" -nr 1 0 0;",
                     "mel plain: matchTransform _ctrl ; (failed)",
                     "mel plain: orientConstraint _IK_ctrl ; (failed)",
                     "mel plain: setAttr \"_IK_ctrl.overrideEnabled\" 1;",
                     "mel plain: setAttr \"_IK_ctrl.overrideColor\" 17;",
                     "mel plain: parent _IK_handle _IK_ctrl; (failed)",
                     "mel plain: matchTransform _IK_Offset ; (failed)",
                     "mel plain: parent _IK_ctrl _IK_Offset;",
                     nameless,
                     nameless,
                     "mel plain: circle -name \"_ctrl\" -nr 1 0 0;",
                     "mel plain: matchTransform _ctrl ; (failed)",
                     "mel plain: poleVectorConstraint _PV_ctrl _IK_handle; (failed)",
                     "mel plain: matchTransform _PV_Offset _PV_ctrl;",
                     "mel plain: parent _PV_ctrl _PV_Offset;",
                     kSuccess}));
    EXPECT_EQ(languageErrors(), 7);
    EXPECT_EQ(tree("|arm"), (Lines{"arm", " forearm", "  hand"}));
}

// A chain without a handle still gets its controls, and the closing line.
TEST_F(IKSystemTest, JointsOfTwoSkeletons) {
    makeArm();
    makeJoints({{"leg", {0, 0, 5}}, {"foot", {0, -5, 5}}});
    build({"|arm", "|leg|foot"});
    const Lines lines = transcript();
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[1],
              "mel plain: ikHandle -sj arm-ee foot-sol ikRPsolver -n foot_IK_handle; (failed)");
    EXPECT_EQ(lines[2], "error: No se encontró el objeto: foot_IK_handle");
    EXPECT_EQ(lines.back(), kSuccess);
    EXPECT_EQ(languageErrors(), 3) << "the handle, its parent, its pole";
    EXPECT_EQ(tree("|foot_IK_Offset"), (Lines{"foot_IK_Offset", " foot_IK_ctrl"}));
    EXPECT_TRUE(exists("leg_PV_ctrl"));
}

// The parent of a joint at the top of the scene is the world, which has a name and no path.
TEST_F(IKSystemTest, AnEndJointAtTheTopOfTheScene) {
    makeArm();
    makeJoints({{"foot", {0, -5, 5}}});
    build({"|arm", "|foot"});
    const Lines ran = scripts();
    EXPECT_EQ(ran.at(9), "mel plain: circle -name \"world_ctrl\" -nr 1 0 0;");
    EXPECT_EQ(ran.at(10), "mel plain: matchTransform world_ctrl ; (failed)");
    EXPECT_EQ(ran.at(11), "mel plain: poleVectorConstraint world_PV_ctrl foot_IK_handle; (failed)");
    EXPECT_EQ(messages().back(), kSuccess);
    EXPECT_TRUE(exists("|world_PV_Offset|world_PV_ctrl"));
}

TEST_F(IKSystemTest, OnlyTheStartJointsNameIsTested) {
    makeJoints({{"arm_IK", {0, 0, 0}}, {"forearm_IK", {5, 0, -1}}, {"hand", {10, 0, 0}}});
    build({"|arm_IK", "|arm_IK|forearm_IK|hand"});
    EXPECT_EQ(record(), ikLines({"arm_IK", "forearm_IK", "hand", "|arm_IK|forearm_IK",
                                 "|arm_IK|forearm_IK|hand", "hand", "hand_handle"}));
    makeJoints({{"leg", {0, 0, 9}}, {"knee", {1, -5, 9}}, {"foot_IK", {0, -10, 9}}});
    build({"|leg", "|leg|knee|foot_IK"});
    EXPECT_EQ(record(), ikLines({"leg", "knee", "foot_IK", "|leg|knee", "|leg|knee|foot_IK",
                                 "foot_IK_IK", "foot_IK_IK_handle"}));
}

TEST_F(IKSystemTest, AChainOfFourJoints) {
    makeJoints({{"a", {0, 0, 0}}, {"b", {4, 0, -1}}, {"c", {8, 0, -1}}, {"d", {12, 0, 0}}});
    build({"|a", "|a|b|c|d"});
    EXPECT_EQ(record(), ikLines({"a", "c", "d", "|a|b|c", "|a|b|c|d", "d_IK", "d_IK_handle"}));
    expectAt("c_PV_ctrl", {8, 0, -31});
    set("d_IK_ctrl.translate", {-3, 2, 1});
    expectAt("d", {9, 2, 1}, 1e-4);
    EXPECT_NEAR((at("b") - at("a")).length(), std::sqrt(17.0), 1e-6);
    EXPECT_NEAR((at("c") - at("b")).length(), 4.0, 1e-6);
    EXPECT_NEAR((at("d") - at("c")).length(), std::sqrt(17.0), 1e-6);
    // All four in one plane with the pole control.
    const V3d normal = (at("d") % (at("c_PV_ctrl") - at("a"))).normalized();
    EXPECT_NEAR(normal ^ at("b"), 0.0, 1e-5);
    EXPECT_NEAR(normal ^ at("c"), 0.0, 1e-5);
}

TEST_F(IKSystemTest, BothSystemsOnOneArm) {
    makeArmIK();
    makeJoints({{"finger", {12, 0, 0}}}, "|arm|forearm|hand");
    clickOn({"|arm|forearm|hand|finger"}, "btn_FKsystem");
    EXPECT_EQ(parentOf("finger_FK_Offset"), "hand_IK_ctrl");
    set("hand_IK_ctrl.translate", {-4, 0, 0});
    expectAt("finger", {8, 0, 0}, 1e-6);
    EXPECT_EQ(messages(), Lines{"info: Creando sistema FK..."});
}

}  // namespace torvel::test
