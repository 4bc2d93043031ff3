#include "plugin/rigs.h"
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
        python("cmds.delete('" + path + "')");
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

}  // namespace torvel::test
