#include <algorithm>

#include "plugin/fixtures/rig_state.h"
#include "plugin/fixtures/rigs.h"
#include "toolkit/circle_control.h"
#include "toolkit/constraint_transfer.h"
#include "toolkit/hierarchy.h"

namespace torvel::test {

/// Two chains a|b and x|y of equal shape, and two drivers.
class ConstraintTransferTest : public PluginScene {
  public:
    ConstraintTransferTest() {
        makeChain(*this, {"a", "b"});
        makeChain(*this, {"x", "y"});
        makeGroup(*this, "d1");
        makeGroup(*this, "d2");
        forget();
    }

    void recreate() {
        forget();
        recreateConstraints(getJointHierarchy(object("|a")), getJointHierarchy(object("|x")));
    }
    void relink() {
        forget();
        reconnectRotations(getJointHierarchy(object("|a")), getJointHierarchy(object("|x")));
    }
    std::string linkScript(const std::string& from, const std::string& to,
                           const std::string& attr) {
        const std::string ends = "\"" + from + "." + attr + "\" \"" + to + "." + attr + "\"";
        return "mel plain: if (!`isConnected " + ends + "`) { connectAttr -f " + ends + "; }";
    }
    bool ranAs(const std::string& form) {
        for (const std::string& line : transcript()) {
            if (line.rfind(form, 0) == 0)
                return true;
        }
        return false;
    }
};

TEST_F(ConstraintTransferTest, UnequalArraysAreRefused) {
    recreateConstraints(objects({"|a"}), MObjectArray());
    reconnectRotations(objects({"|a"}), objects({"|x", "|x|y"}));
    EXPECT_EQ(transcript(),
              Lines(2,
                    "error: Las listas de joints original y duplicada no tienen la misma "
                    "longitud."));
}

TEST_F(ConstraintTransferTest, NothingToCarryIsSilent) {
    recreate();
    EXPECT_EQ(transcript(), Lines{});
    relink();
    EXPECT_EQ(transcript(), Lines{});
    recreateConstraints(MObjectArray(), MObjectArray());
    EXPECT_EQ(transcript(), Lines{});
}

TEST_F(ConstraintTransferTest, DriversComeInOrderAndTheJointLast) {
    struct Kind {
        const char* type;
        const char* apiType;
    };
    for (const Kind& kind : {Kind{"parentConstraint", "kParentConstraint"},
                             Kind{"orientConstraint", "kOrientConstraint"},
                             Kind{"pointConstraint", "kPointConstraint"}}) {
        const std::string path = addConstraint(*this, kind.type, "|a|b", {"|d2", "|d1"});
        recreate();
        const std::string command = std::string(kind.type) + " -mo \"|d2\" \"|d1\" \"|x|y\"";
        const Lines lines = transcript();
        ASSERT_GE(lines.size(), 3u) << kind.type;
        EXPECT_EQ(lines[0], std::string("info: Procesando constraint: b_") + kind.type +
                                "1 tipo: " + kind.apiType);
        EXPECT_EQ(lines[1], "info: Ejecutando comando: " + command);
        EXPECT_EQ(lines[2].rfind("mel stringArray: " + command, 0), 0u) << lines[2];
        python("cmds.delete('" + path +
               "', cmds.listRelatives('|x|y', type='constraint', "
               "path=True))");
    }
}

TEST_F(ConstraintTransferTest, OtherKindsAreRefused) {
    addConstraint(*this, "scaleConstraint", "|a", {"|d1"});
    recreate();
    EXPECT_EQ(transcript(),
              (Lines{"info: Procesando constraint: a_scaleConstraint1 tipo: kScaleConstraint",
                     "warning: Tipo de constraint no manejado: kScaleConstraint"}));
}

TEST_F(ConstraintTransferTest, ConstraintsWithoutTargets) {
    addConstraint(*this, "pointConstraint", "|a", {});
    recreate();
    EXPECT_EQ(transcript(),
              (Lines{"info: Procesando constraint: a_pointConstraint1 tipo: kPointConstraint",
                     "warning: Constraint sin targets: a_pointConstraint1"}));
}

TEST_F(ConstraintTransferTest, ElementsFedByNoTransform) {
    const std::string path = addConstraint(*this, "pointConstraint", "|a", {});
    python("cmds.connectAttr('time1.outTime', '" + path + ".target[0].targetWeight')");
    recreate();
    EXPECT_EQ(transcript(),
              (Lines{"info: Procesando constraint: a_pointConstraint1 tipo: kPointConstraint",
                     "warning:   No se encontró transform válido conectado a "
                     "a_pointConstraint1.target[0]",
                     "warning: No se encontraron controles válidos conectados al constraint: "
                     "a_pointConstraint1"}));
}

TEST_F(ConstraintTransferTest, TheFirstTransformOfAnElementCounts) {
    const std::string path = addConstraint(*this, "parentConstraint", "|a", {"|d1"});
    python("cmds.connectAttr('d2.rotate', '" + path + ".target[0].targetRotate')");
    recreate();
    ASSERT_GE(transcript().size(), 2u);
    EXPECT_EQ(transcript()[1], "info: Ejecutando comando: parentConstraint -mo \"|d1\" \"|x\"");
}

TEST_F(ConstraintTransferTest, AimConstraintsTellOfTheirUpSource) {
    const std::string path = addConstraint(*this, "aimConstraint", "|a", {"|d1"});
    recreate();
    ASSERT_GE(transcript().size(), 3u);
    EXPECT_EQ(transcript()[1], "info: AimConstraint sin worldUpMatrix conectado.");
    EXPECT_EQ(transcript()[2], "info: Ejecutando comando: aimConstraint -mo \"|d1\" \"|x\"");
    EXPECT_FALSE(ranAs("mel plain: setAttr"));

    python("cmds.connectAttr('d2.worldMatrix[0]', '" + path + ".worldUpMatrix')");
    recreate();
    EXPECT_EQ(transcript()[1],
              "info: AimConstraint tiene worldUpMatrix conectado desde: d2.worldMatrix[0]");
}

TEST_F(ConstraintTransferTest, RotateLinksAreRebuilt) {
    python(
        "cmds.connectAttr('|a.rotateX', '|a|b.rotateX')\n"
        "cmds.connectAttr('|a.rotateZ', '|a|b.rotateZ')\n"
        "cmds.connectAttr('|a.rotateY', 'd1.rotateY')\n");
    relink();
    EXPECT_EQ(transcript(),
              (Lines{linkScript("|x", "|x|y", "rotateX"), linkScript("|x", "|x|y", "rotateZ")}));
    EXPECT_EQ(python("cmds.isConnected('|x.rotateX', '|x|y.rotateX')").truth(), true);
    EXPECT_EQ(python("cmds.isConnected('|x.rotateZ', '|x|y.rotateZ')").truth(), true);
    relink();
    EXPECT_EQ(languageErrors(), 0) << "a repeat is harmless";
}

TEST_F(ConstraintTransferTest, CrossedLinksKeepTheSourceChannel) {
    python("cmds.connectAttr('|a.rotateX', '|a|b.rotateY')");
    relink();
    EXPECT_EQ(transcript(), Lines{linkScript("|x", "|x|y", "rotateX")});
}

TEST_F(ConstraintTransferTest, CircleControlsRunTheirScripts) {
    createCircleControl(object("|a|b"), "x", 5.0);
    createCircleControl(object("|a|b"), "X", 5.0);
    const Lines all = scripts();
    ASSERT_GE(all.size(), 4u);
    EXPECT_EQ(all[0].rfind("mel plain: circle -name \"b_ctrl\" -nr 1 0 0;", 0), 0u) << all[0];
    EXPECT_EQ(all[1].rfind("mel plain: matchTransform b_ctrl |a|b;", 0), 0u) << all[1];
    EXPECT_EQ(all[2].rfind("mel plain: circle -name \"b_ctrl\" -nr 0 0 0;", 0), 0u) << all[2];
}

// --- constraints that drive
// -----------------------------------------------------------------------

/// The same with constraints that are alive: what drives b drives y afterwards.
class LivingConstraintTest : public ConstraintTransferTest {
  public:
    LivingConstraintTest() {
        python(
            "cmds.xform('d1', t=(3, 4, 5), ro=(10, 20, 30))\n"
            "cmds.xform('d2', t=(-6, 1, 2), ro=(-40, 5, 0))");
    }
    void moveDrivers() {
        python(
            "cmds.xform('d1', t=(-2, 9, 1), ro=(70, -20, 15))\n"
            "cmds.xform('d2', t=(4, -3, 8), ro=(0, 50, 25))");
    }
    void expectTogether(const char* when) {
        const M44d a = worldMatrixOf(*this, "|a|b"), x = worldMatrixOf(*this, "|x|y");
        EXPECT_TRUE(a.equalWithAbsError(x, 1e-9)) << when << ": " << a << x;
    }
};

class LivingConstraintKinds : public LivingConstraintTest,
                              public ::testing::WithParamInterface<const char*> {};

TEST_P(LivingConstraintKinds, TheCopyFollowsItsDriversAsTheOriginalDoes) {
    const std::string type = GetParam();
    python("cmds." + type + "('d2', 'd1', '|a|b', mo=True)");
    const M44d before = worldMatrixOf(*this, "|x|y");
    recreate();
    EXPECT_EQ(languageErrors(), 0);
    EXPECT_EQ(pythonText("cmds.listRelatives('|x|y', type='constraint')"), "y_" + type + "1");
    EXPECT_EQ(pythonText("cmds." + type + "('|x|y', q=True, tl=True)"), "d2 d1");
    EXPECT_TRUE(worldMatrixOf(*this, "|x|y").equalWithAbsError(before, 1e-9)) << "made in place";
    expectTogether("in place");
    moveDrivers();
    EXPECT_FALSE(worldMatrixOf(*this, "|x|y").equalWithAbsError(before, 1e-3));
    expectTogether("driven");
}

INSTANTIATE_TEST_SUITE_P(Kinds, LivingConstraintKinds,
                         ::testing::Values("parentConstraint", "pointConstraint",
                                           "orientConstraint", "aimConstraint"));

TEST_F(LivingConstraintTest, SeveralKindsOnOneJoint) {
    python(
        "cmds.pointConstraint('d1', '|a|b', mo=True)\n"
        "cmds.orientConstraint('d2', '|a|b', mo=True)\n"
        "cmds.parentConstraint('d2', '|a', mo=True)");
    recreate();
    EXPECT_EQ(pythonText("cmds.listRelatives('|x|y', type='constraint')"),
              "y_pointConstraint1 y_orientConstraint1");
    moveDrivers();
    expectTogether("driven");
    EXPECT_EQ(pythonText("cmds.listConnections('|x|y.rotateX', s=True, d=False, p=True)"),
              "y_orientConstraint1.constraintRotateX");
}

// The up object stands above the joint when the constraints are made, so that the up direction the
// command starts from and the one by the object are the same.
TEST_F(LivingConstraintTest, AimWithAnUpObject) {
    python(
        "p = cmds.xform('|a|b', q=True, ws=True, t=True)\n"
        "cmds.xform('d2', ws=True, t=(p[0], p[1] + 8, p[2]))\n"
        "cmds.aimConstraint('d1', '|a|b', mo=True, wut='object', wuo='d2')");
    recreate();
    const Lines lines = transcript();
    ASSERT_EQ(lines.size(), 7u);
    EXPECT_EQ(lines[1],
              "info: AimConstraint tiene worldUpMatrix conectado desde: d2.worldMatrix[0]");
    EXPECT_EQ(lines[2], "info: Ejecutando comando: aimConstraint -mo \"|d1\" \"|x|y\"");
    EXPECT_EQ(lines[4], "info: Conectando worldUpMatrix de d2.worldMatrix[0] a y_aimConstraint1");
    EXPECT_EQ(lines[5], "mel plain: setAttr \"y_aimConstraint1.worldUpType\" 1;");
    EXPECT_EQ(lines[6], "info: Conectado worldUpMatrix en nuevo constraint: y_aimConstraint1");
    EXPECT_EQ(pythonText("cmds.aimConstraint('y_aimConstraint1', q=True, wut=True)"), "object");
    expectTogether("in place");
    moveDrivers();
    expectTogether("driven");
}

TEST_F(LivingConstraintTest, ALockedChannelFailsTheCommandAndNotTheNextOne) {
    python(
        "cmds.orientConstraint('d1', '|a|b')\n"
        "cmds.pointConstraint('d2', '|a|b')\n"
        "cmds.setAttr('|x|y.rotateY', lock=True)");
    recreate();
    const Lines said = messages();
    EXPECT_NE(std::find(said.begin(), said.end(),
                        "error: Fallo al crear constraint con comando: orientConstraint -mo "
                        "\"|d1\" \"|x|y\""),
              said.end());
    EXPECT_EQ(pythonText("cmds.listRelatives('|x|y', type='constraint')"), "y_pointConstraint1");
}

/// A bound leg whose knee hangs on a driver.
class ConstrainedLegTest : public PluginScene, public ::testing::WithParamInterface<const char*> {
  public:
    ConstrainedLegTest() {
        makeLeg(*this);
        makeGroup(*this, "driver");
        python("cmds.xform('driver', t=(2, 3, 4), ro=(15, -25, 35))\n");
        python(std::string("cmds.") + GetParam() + "('driver', '|hip|knee', mo=True)");
    }
    void pose(bool moved) {
        python(moved ? "cmds.xform('driver', t=(1, 5, 4), ro=(40, -25, 60))"
                     : "cmds.xform('driver', t=(2, 3, 4), ro=(15, -25, 35))");
    }
    Points points() { return pointsOf(*this, "|leg|legShape"); }
};

TEST_P(ConstrainedLegTest, TheMeshMovesWithTheDriverAsBeforeTheFreeze) {
    const Points rest = points();
    pose(true);
    const Points moved = points();
    EXPECT_GT(deviation(moved, rest), 1e-3);
    pose(false);
    for (int click = 0; click < 2; ++click) {
        freeze({"|hip"}, true);
        expectPoints(points(), rest, 1e-5);
        pose(true);
        expectPoints(points(), moved, 1e-5);
        pose(false);
    }
    EXPECT_EQ(pythonText("cmds.ls(type='constraint')"), std::string("knee_") + GetParam() + "1");
}

INSTANTIATE_TEST_SUITE_P(Kinds, ConstrainedLegTest,
                         ::testing::Values("parentConstraint", "pointConstraint",
                                           "orientConstraint", "aimConstraint"));

}  // namespace torvel::test
