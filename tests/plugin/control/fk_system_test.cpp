// FK controls on selected joints: texts and lines in order, the rig that stands afterwards, and
// what turning its controls does.

#include <cmath>

#include "plugin/fixtures/system_scene.h"

namespace torvel::test {

class FKSystemTest : public SystemScene {
  public:
    void build(const Lines& joints) { clickOn(joints, "btn_FKsystem"); }

    const Lines kOpening{"info: Creando sistema FK..."};
    const Lines kArm{"|shoulder", "|shoulder|elbow", "|shoulder|elbow|hand"};
};

TEST_F(FKSystemTest, TheTextsOfAMiddleJointLiterally) {
    makeArmChain();
    build({"|shoulder", "|shoulder|elbow"});
    const Lines ran = scripts();
    ASSERT_EQ(ran.size(), 15u);
    EXPECT_EQ(Lines(ran.begin() + 7, ran.end()),
              (Lines{"mel plain: circle -name \"elbow_ctrl\" -nr 1 0 0;",
                     "mel plain: matchTransform elbow_ctrl |shoulder|elbow;",
                     "python plain: cmds.setAttr('|elbow_FK_ctrl.overrideEnabled', 1)",
                     "python plain: cmds.setAttr('|elbow_FK_ctrl.overrideColor', 13)",
                     "mel plain: matchTransform |elbow_FK_Offset shoulder|elbow;",
                     "mel plain: parent elbow_FK_ctrl |elbow_FK_Offset;",
                     "mel plain: parent |elbow_FK_Offset shoulder_FK_ctrl;",
                     "python plain: cmds.parentConstraint('elbow_FK_ctrl', 'shoulder|elbow')"}));
}

TEST_F(FKSystemTest, AChainInModeOffset) {
    makeArmChain();
    build(kArm);
    EXPECT_EQ(record(), kOpening + fkLines(kArm[0], "shoulder_FK", noHookLine("shoulder_FK")) +
                            fkLines(kArm[1], "elbow_FK", hookLine("elbow_FK", "shoulder_FK_ctrl")) +
                            fkLines(kArm[2], "hand_FK", hookLine("hand_FK", "elbow_FK_ctrl")));
    EXPECT_EQ(topNodes(), (Lines{"shoulder", "shoulder_FK_Offset"}));
    EXPECT_EQ(tree("|shoulder_FK_Offset"),
              (Lines{"shoulder_FK_Offset", " shoulder_FK_ctrl", "  elbow_FK_Offset",
                     "   elbow_FK_ctrl", "    hand_FK_Offset", "     hand_FK_ctrl"}));
    EXPECT_EQ(tree("|shoulder"),
              (Lines{"shoulder", " elbow", "  hand", "   hand_parentConstraint1",
                     "  elbow_parentConstraint1", " shoulder_parentConstraint1"}));
}

TEST_F(FKSystemTest, AChainInModeOffsetAuto) {
    makeArmChain();
    click("rad_offsetAuto");
    build(kArm);
    EXPECT_EQ(record(),
              kOpening + fkLines(kArm[0], "shoulder_FK", noHookLine("shoulder_FK"), true) +
                  fkLines(kArm[1], "elbow_FK", hookLine("elbow_FK", "shoulder_FK_ctrl"), true) +
                  fkLines(kArm[2], "hand_FK", hookLine("hand_FK", "elbow_FK_ctrl"), true));
    EXPECT_EQ(tree("|shoulder_FK_Offset"),
              (Lines{"shoulder_FK_Offset", " shoulder_FK_Auto", "  shoulder_FK_ctrl",
                     "   elbow_FK_Offset", "    elbow_FK_Auto", "     elbow_FK_ctrl",
                     "      hand_FK_Offset", "       hand_FK_Auto", "        hand_FK_ctrl"}));
}

TEST_F(FKSystemTest, ControlsStandOnTheirJointsAndAreSelected) {
    openArm();
    for (const char* mode : {"rad_offset", "rad_offsetAuto"}) {
        openArm();
        const M44d wrist = worldOf("wrist");
        click(mode);
        build({"clavicle", "shoulder", "elbow", "wrist"});
        Lines names;
        for (const std::string& path : selected())
            names.push_back(path.substr(path.rfind('|') + 1));
        EXPECT_EQ(names, (Lines{"clavicle_FK_ctrl", "shoulder_FK_ctrl", "elbow_FK_ctrl",
                                "wrist_FK_ctrl"}));
        for (const char* joint : {"clavicle", "shoulder", "elbow", "wrist"}) {
            const std::string name = joint;
            expectStandsOn(name + "_FK_ctrl", name);
            expectStandsOn(name + "_FK_Offset", name);
            EXPECT_EQ(numberOf(name + "_FK_ctrl.overrideEnabled"), 1);
            EXPECT_EQ(numberOf(name + "_FK_ctrl.overrideColor"), 13);
            for (const char* channel : {".translateX", ".rotateY", ".rotateZ"})
                EXPECT_NEAR(numberOf(name + "_FK_ctrl" + channel), 0.0, 1e-9);
        }
        EXPECT_TRUE(worldOf("wrist").equalWithAbsError(wrist, 1e-9));
    }
}

TEST_F(FKSystemTest, TheCircleIsFiveTimesTheUsualAboutThePrimaryAxis) {
    makeArmChain();
    click("rad_Y");
    build({"|shoulder"});
    EXPECT_EQ(scripts().front(), "mel plain: circle -name \"shoulder_ctrl\" -nr 0 1 0;");
    const Points circle = points(shapesOf("shoulder_FK_ctrl").at(0));
    ASSERT_EQ(circle.size(), 11u);
    for (const std::vector<double>& point : circle)
        EXPECT_NEAR(point[1], 0.0, 1e-9);
    // The points of a circle of radius 1 in eight spans stand this far from its centre.
    EXPECT_NEAR(std::hypot(circle[0][0], circle[0][2]), 5 * 1.108194187554388, 1e-5);
    EXPECT_EQ(numberOf("shoulder_FK_ctrl.scaleX"), 1.0);
}

TEST_F(FKSystemTest, FromTheHandUpNoJointFindsItsParentsControl) {
    makeArmChain();
    build({kArm[2], kArm[1], kArm[0]});
    EXPECT_EQ(messages(), (kOpening + noHookLine("hand_FK") + noHookLine("elbow_FK") +
                           noHookLine("shoulder_FK")));
    EXPECT_EQ(topNodes(),
              (Lines{"shoulder", "hand_FK_Offset", "elbow_FK_Offset", "shoulder_FK_Offset"}));
    set("elbow_FK_ctrl.rotate", {0, 0, 90});
    expectStandsOn("elbow", "elbow_FK_ctrl");
    expectAt("hand", {10, 0, 0});
}

TEST_F(FKSystemTest, WithoutOneInBetweenTheChainOfControlsIsCut) {
    makeArmChain();
    build({kArm[0], kArm[2]});
    EXPECT_EQ(messages(), kOpening + noHookLine("shoulder_FK") + noHookLine("hand_FK"));
    EXPECT_EQ(parentOf("hand_FK_Offset"), "");
}

// What stands on the joint above, and which of it is taken.
struct HookCase {
    const char* parent;
    const char* child;
    const char* child_control;  // before "_ctrl"
    Lines names;                // each is enough; the first there wins
};

class FKHookTest : public FKSystemTest, public ::testing::WithParamInterface<HookCase> {};

TEST_P(FKHookTest, TheControlsInTheirRank) {
    const HookCase& row = GetParam();
    const std::string child = std::string("|") + row.parent + "|" + row.child;
    for (std::size_t present = row.names.size(); present-- > 0;) {
        python("cmds.file(new=True, force=True)");
        makeJoints({{row.parent, {0, 0, 0}}, {row.child, {5, 0, 0}}});
        for (std::size_t i = present; i < row.names.size(); ++i)
            python("cmds.createNode('transform', name='" + row.names[i] + "')");
        build({child});
        EXPECT_EQ(record(), kOpening + fkLines(child, row.child_control,
                                               hookLine(row.child_control, row.names[present])));
        EXPECT_EQ(parentOf(std::string(row.child_control) + "_Offset"), row.names[present]);
    }
    python("cmds.file(new=True, force=True)");
    makeJoints({{row.parent, {0, 0, 0}}, {row.child, {5, 0, 0}}});
    build({child});
    EXPECT_EQ(messages(), kOpening + noHookLine(row.child_control));
}

INSTANTIATE_TEST_SUITE_P(
    Names, FKHookTest,
    ::testing::Values(HookCase{"shoulder",
                               "elbow",
                               "elbow_FK",
                               {"shoulder_IK_ctrl", "shoulder_FK_ctrl", "shoulder_MAIN"}},
                      HookCase{"shoulder_FK",
                               "elbow_FK",
                               "elbow_FK",
                               {"shoulder_IK_ctrl", "shoulder_FK_ctrl", "shoulder_MAIN"}},
                      // The child decides how its parent's name is read.
                      HookCase{"shoulder_FK",
                               "elbow",
                               "elbow_FK",
                               {"shoulder_FK_IK_ctrl", "shoulder_FK_FK_ctrl", "shoulder_FK_MAIN"}},
                      // All of the suffix's places, not only the last.
                      HookCase{"a_FK_b_FK", "elbow_FK", "elbow_FK", {"a_IK_ctrl_b_IK_ctrl"}}),
    [](const auto& info) { return std::to_string(info.index); });

TEST_F(FKSystemTest, ADuplicateBelowAPlainJointGoesRightUnderIt) {
    makeJoints({{"spine", {0, 0, 0}}, {"shoulder_FK", {5, 0, 0}}});
    build({"|spine|shoulder_FK"});
    EXPECT_EQ(record(), kOpening + fkLines("|spine|shoulder_FK", "shoulder_FK",
                                           hookLine("shoulder_FK", "spine")));
    EXPECT_EQ(parentOf("shoulder_FK_Offset"), "spine");
}

TEST_F(FKSystemTest, ADuplicateAtTheTopOfTheScene) {
    makeJoints({{"shoulder_FK", {1, 2, 3}}, {"elbow_FK", {5, 2, 3}}});
    build({"|shoulder_FK", "|shoulder_FK|elbow_FK"});
    EXPECT_EQ(
        record(),
        kOpening + fkLines("|shoulder_FK", "shoulder_FK", noHookLine("shoulder_FK")) +
            fkLines("|shoulder_FK|elbow_FK", "elbow_FK", hookLine("elbow_FK", "shoulder_FK_ctrl")));
    expectStandsOn("elbow_FK_ctrl", "elbow_FK");
}

TEST_F(FKSystemTest, AJointWhoseNameHoldsTheSuffixOfControls) {
    makeJoints({{"arm_ctrl_01", {0, 0, 0}}});
    click("rad_offsetAuto");
    build({"|arm_ctrl_01"});
    EXPECT_EQ(tree("|arm_Offset_01_FK_Offset"),
              (Lines{"arm_Offset_01_FK_Offset", " arm_Auto_01_FK_Auto", "  arm_ctrl_01_FK_ctrl"}));
}

TEST_F(FKSystemTest, RefusedSelections) {
    makeArmChain();
    makeJoints({{"leg", {0, 0, 5}}, {"hand", {0, -5, 5}}});
    makeCircle("ring");
    const Lines before = dagPaths();
    const std::string notAll = "info: No todo son Joints...";
    build({});
    EXPECT_EQ(record(), (kOpening + Lines{"info: Please, select any 'Joint'", notAll}));
    build({"|shoulder", "ring"});
    EXPECT_EQ(record(), kOpening + Lines{notAll});
    const Lines twice{"info: Hay dos elementos con el mismo nombre",
                      "info: Nombre duplicado: hand"};
    build({"|leg|hand", "|shoulder|elbow|hand"});
    EXPECT_EQ(record(), kOpening + twice);
    build({"ring", "|leg|hand", "|shoulder|elbow|hand"});
    EXPECT_EQ(record(), kOpening + twice);
    EXPECT_EQ(dagPaths(), before);
}

TEST_F(FKSystemTest, ASecondClickBuildsASecondSet) {
    makeArmChain();
    build({"|shoulder"});
    const M44d before = worldOf("shoulder");
    build({"|shoulder"});
    EXPECT_TRUE(exists("shoulder_FK_Offset"));
    EXPECT_TRUE(exists("shoulder_FK_Offset1"));
    EXPECT_TRUE(worldOf("shoulder").equalWithAbsError(before, 1e-9));
}

TEST_F(FKSystemTest, ChildrenOfAnIKControlFollowIt) {
    makeArmChain();
    makeJoints({{"finger", {12, 0, 0}}}, "|shoulder|elbow|hand");
    clickOn({"|shoulder", "|shoulder|elbow|hand"}, "btn_IKsystem");
    build({"|shoulder|elbow|hand|finger"});
    EXPECT_EQ(parentOf("finger_FK_Offset"), "hand_IK_ctrl");
    set("hand_IK_ctrl.rotate", {0, 0, 90});
    expectAt("finger", {10, 2, 0}, 1e-6);
}

// --- Turning the controls of the bound arm ---

class FKArmTest : public FKSystemTest, public ::testing::WithParamInterface<const char*> {
  public:
    void SetUp() override {
        openArm();
        click(GetParam());
        build(kJoints);
        rest = skinPoints();
    }

    /// Turning a joint turns all below it as one, so each vertex moves by its share on them.
    void expectTurned(std::size_t first, const V3d& pivot, const V3d& axis, double degrees) {
        const Lines below(kSkinJoints.begin() + first, kSkinJoints.end());
        const std::vector<double> shares = skinShares(below);
        const std::vector<V3d> now = skinPoints();
        double moved = 0.0, worst = 0.0;
        for (std::size_t i = 0; i < now.size(); ++i) {
            const V3d path = turnedAbout(rest[i], pivot, axis, degrees) - rest[i];
            worst = std::max(worst, (rest[i] + path * shares[i] - now[i]).length());
            moved = std::max(moved, (now[i] - rest[i]).length());
        }
        EXPECT_LE(worst, 1e-4);
        EXPECT_GT(moved, 0.5);
    }

    const Lines kJoints{"clavicle", "shoulder", "elbow", "wrist"};
    const Lines kSkinJoints{"clavicle", "shoulder", "elbow", "wrist", "hand"};
    std::vector<V3d> rest;
};

TEST_P(FKArmTest, EachControlTurnsItsJointAndTheSkin) {
    for (std::size_t i = 0; i < kJoints.size(); ++i) {
        SCOPED_TRACE(kJoints[i]);
        const std::string control = kJoints[i] + "_FK_ctrl";
        const M44d before = worldOf(kJoints[i]);
        const V3d handBefore = at("hand"), pivot = placeIn(before);
        const V3d axis(before[2][0], before[2][1], before[2][2]);
        set(control + ".rotate", {0, 0, 40});
        expectStandsOn(kJoints[i], control, 1e-8);
        expectAt(kJoints[i], pivot, 1e-8);
        expectAt("hand", turnedAbout(handBefore, pivot, axis, 40), 1e-8);
        expectTurned(i, pivot, axis, 40);
        set(control + ".rotate", {0, 0, 0});
    }
    EXPECT_LE((skinPoints()[100] - rest[100]).length(), 1e-5);
}

TEST_P(FKArmTest, MovingTheRootControlMovesEverything) {
    set("clavicle_FK_ctrl.translate", {0, 0, 3});
    const std::vector<V3d> now = skinPoints();
    for (std::size_t i = 0; i < now.size(); ++i)
        ASSERT_LE((now[i] - rest[i] - V3d(0, 0, 3)).length(), 1e-4) << "vertex " << i;
}

INSTANTIATE_TEST_SUITE_P(Modes, FKArmTest, ::testing::Values("rad_offset", "rad_offsetAuto"),
                         [](const auto& info) { return std::string(info.param).substr(4); });

}  // namespace torvel::test
