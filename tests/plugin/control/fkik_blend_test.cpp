// The network of the FKIK system on a chain where the system's own texts are run with short names:
// what the switch does when every look-up succeeds.

#include <fmt/format.h>

#include "plugin/fixtures/system_scene.h"
#include "support/test_scene.h"
#include "toolkit/duplication.h"
#include "toolkit/hierarchy.h"
#include "toolkit/matching.h"
#include "toolkit/nodes.h"

namespace torvel::test {

class FKIKBlendTest : public SystemScene {
  public:
    void SetUp() override {
        makeArmChain();
        makeJoints({{"finger", {12, 0, 0}}}, "|shoulder|elbow|hand");
        makeFK();
        makeIK();
        makeMain();
        makeSwitch();
        connect();
        forget();
    }

    Value mel(const std::string& text) {
        Value result;
        const Status status = session().mel->run(text, result);
        EXPECT_TRUE(status.isOk()) << text << "\n" << status.text();
        return result;
    }

    void copyChain(const char* suffix) {
        mel(fmt::format("duplicate -n shoulder{0} shoulder;", suffix));
        renameHierarchy(object(fmt::format("shoulder{}", suffix)), suffix);
        deleteHierarchyChildren(object(fmt::format("hand{}", suffix)));
        EXPECT_FALSE(exists(fmt::format("finger{}", suffix)));
    }

    void makeFK() {
        copyChain("_FK");
        MObjectArray root;
        root.append(object("shoulder_FK"));
        selectHierarchy(root, false);
        click("btn_FKsystem");
        createNamedTransform("shoulder_FK_ctrlGrp");
        mel("matchTransform shoulder_FK_ctrlGrp shoulder_FK;");
        mel("parent |shoulder_FK_Offset shoulder_FK_ctrlGrp;");
        mel("parent shoulder_FK shoulder_FK_ctrlGrp;");
    }

    void makeIK() {
        copyChain("_IK");
        mel("select -r shoulder_IK hand_IK;");
        click("btn_IKsystem");
        createNamedTransform("shoulder_IK_ctrlGrp");
        mel("matchTransform |shoulder_IK_ctrlGrp shoulder_IK;");
        mel("parent |hand_IK_Offset |shoulder_IK_ctrlGrp;");
        mel("parent elbow_IK_PV_Offset |shoulder_IK_ctrlGrp;");
    }

    void makeMain() {
        copyChain("_MAIN");
        makeCircle("hand_attr");
        mel("setAttr \"hand_attr.overrideEnabled\" 1");
        mel("setAttr \"hand_attr.overrideColor\" 4");
        python(
            "import maya.cmds as cmds\n"
            "hand_pos = cmds.xform('hand', q = True, ws = True, t = True)\n"
            "handMargin = [hand_pos[0], hand_pos[1] -10, hand_pos[2]]\n"
            "cmds.xform('hand_attr', ws = True, t = handMargin)\n");
        createNamedTransform("hand_attr_offset");
        mel("matchTransform hand_attr_offset hand_attr");
        mel("parent hand_attr hand_attr_offset");
        mel("parent -s hand_attr_offset hand_MAIN");
        python("cmds.addAttr('hand_attr', ln='FKIK', at= 'float', min = 0, max = 1, k = True)");
    }

    void makeSwitch() {
        python(
            "import maya.cmds as cmds\n"
            "cmds.parentConstraint('shoulder_MAIN','shoulder');\n"
            "cmds.parentConstraint('elbow_MAIN','elbow');\n"
            "cmds.parentConstraint('hand_MAIN','hand');\n");
        for (const std::string joint : {"shoulder", "elbow", "hand"}) {
            const std::string constraint = pythonText(fmt::format(
                "import maya.cmds as cmds; result = cmds.parentConstraint('{0}_FK', '{0}_IK', "
                "'{0}_MAIN', mo=False, n='{0}_MAIN_cnx'); result[0] if result else ''",
                joint));
            EXPECT_EQ(constraint, joint + "_MAIN_cnx");
            const std::string reverse = mel("shadingNode -asUtility reverse").string();
            link("hand_attr.FKIK", reverse + ".inputX");
            link(reverse + ".outputX", constraint + "." + joint + "_FKW0");
            link("hand_attr.FKIK", constraint + "." + joint + "_IKW1");
        }
    }

    void connect() {
        createNamedTransform("shoulder_FKIK");
        mel("matchTransform |shoulder_FKIK shoulder;");
        mel("parent shoulder_MAIN |shoulder_FKIK;");
        mel("parent |shoulder_FK_ctrlGrp |shoulder_FKIK;");
        mel("parent shoulder_IK |shoulder_FKIK;");
        link("hand_attr.FKIK", "|shoulder_IK_ctrlGrp.visibility");
        link("hand_attr.FKIK", "shoulder_IK.visibility");
        const std::string reverse = mel("shadingNode -asUtility reverse").string();
        EXPECT_EQ(reverse, "reverse4");
        link("hand_attr.FKIK", reverse + ".inputX");
        link(reverse + ".outputX", "|shoulder_FKIK|shoulder_FK_ctrlGrp.visibility");
    }

    void link(const std::string& source, const std::string& target) {
        python("import maya.cmds as cmds\ncmds.connectAttr('" + source + "', '" + target +
               "', force=True)");
    }

    void blend(double value) { setNumber("hand_attr.FKIK", value); }

    /// Bends the two chains apart.
    void pose() {
        set("shoulder_FK_ctrl.rotate", {0, 0, 40});
        set("elbow_FK_ctrl.rotate", {0, 25, 0});
        set("hand_IK_ctrl.translate", {-3, -2, 1});
        set("hand_IK_ctrl.rotate", {10, 20, -30});
    }

    const Lines kJoints{"shoulder", "elbow", "hand"};
};

TEST_F(FKIKBlendTest, TheFinishedTree) {
    EXPECT_EQ(topNodes(), (Lines{"shoulder", "shoulder_IK_ctrlGrp", "shoulder_FKIK"}));
    EXPECT_EQ(tree("|shoulder_FKIK"), (Lines{"shoulder_FKIK",
                                             " shoulder_MAIN",
                                             "  elbow_MAIN",
                                             "   hand_MAIN",
                                             "    hand_attr_offset",
                                             "     hand_attr",
                                             "    hand_MAIN_cnx",
                                             "   elbow_MAIN_cnx",
                                             "  shoulder_MAIN_cnx",
                                             " shoulder_FK_ctrlGrp",
                                             "  shoulder_FK_Offset",
                                             "   shoulder_FK_ctrl",
                                             "    elbow_FK_Offset",
                                             "     elbow_FK_ctrl",
                                             "      hand_FK_Offset",
                                             "       hand_FK_ctrl",
                                             "  shoulder_FK",
                                             "   elbow_FK",
                                             "    hand_FK",
                                             "     hand_FK_parentConstraint1",
                                             "    elbow_FK_parentConstraint1",
                                             "   shoulder_FK_parentConstraint1",
                                             " shoulder_IK",
                                             "  elbow_IK",
                                             "   hand_IK",
                                             "    hand_IK_orientConstraint1",
                                             "   effector1"}));
    EXPECT_EQ(tree("|shoulder_IK_ctrlGrp"),
              (Lines{"shoulder_IK_ctrlGrp", " hand_IK_Offset", "  hand_IK_ctrl",
                     "   hand_IK_handle", "    hand_IK_handle_poleVectorConstraint1",
                     " elbow_IK_PV_Offset", "  elbow_IK_PV_ctrl"}));
    EXPECT_EQ(tree("|shoulder"),
              (Lines{"shoulder", " elbow", "  hand", "   finger", "   hand_parentConstraint1",
                     "  elbow_parentConstraint1", " shoulder_parentConstraint1"}));
}

TEST_F(FKIKBlendTest, WeightsAddUpToOne) {
    for (double value : {0.0, 0.25, 0.5, 1.0, 0.75}) {
        blend(value);
        for (const std::string& joint : kJoints) {
            const std::string constraint = joint + "_MAIN_cnx.";
            EXPECT_NEAR(numberOf(constraint + joint + "_FKW0"), 1.0 - value, 1e-7);
            EXPECT_NEAR(numberOf(constraint + joint + "_IKW1"), value, 1e-7);
        }
    }
}

TEST_F(FKIKBlendTest, VisibilityAtZeroHalfAndOne) {
    struct Row {
        double value;
        double fk, ik;
    };
    for (const Row& row : {Row{0.0, 1, 0}, Row{0.5, 1, 1}, Row{1.0, 0, 1}}) {
        blend(row.value);
        EXPECT_EQ(numberOf("shoulder_FK_ctrlGrp.visibility"), row.fk) << row.value;
        EXPECT_EQ(numberOf("shoulder_IK_ctrlGrp.visibility"), row.ik) << row.value;
        EXPECT_EQ(numberOf("shoulder_IK.visibility"), row.ik) << row.value;
    }
}

TEST_F(FKIKBlendTest, AtTheEndsTheSourceStandsOnOneChain) {
    pose();
    EXPECT_GT((at("hand_FK") - at("hand_IK")).length(), 3.0);
    for (double value : {0.0, 1.0, 0.0}) {
        blend(value);
        for (const std::string& joint : kJoints) {
            expectStandsOn(joint + "_MAIN", joint + (value == 0.0 ? "_FK" : "_IK"), 1e-8);
            expectStandsOn(joint, joint + "_MAIN", 1e-8);
        }
    }
}

TEST_F(FKIKBlendTest, InBetweenThePlacesAreWeighted) {
    pose();
    for (double value : {0.5, 0.2}) {
        blend(value);
        for (const std::string& joint : kJoints) {
            const V3d mixed = at(joint + "_FK") * (1 - value) + at(joint + "_IK") * value;
            expectAt(joint + "_MAIN", mixed, 1e-6);
            expectAt(joint, mixed, 1e-6);
        }
    }
}

TEST_F(FKIKBlendTest, TheRestPoseIsKeptAtEveryValue) {
    for (double value : {0.0, 0.3, 1.0}) {
        blend(value);
        expectAt("elbow", {5, 0, -1}, 1e-6);
        expectAt("hand", {10, 0, 0}, 1e-6);
        expectAt("finger", {12, 0, 0}, 1e-6);
    }
}

TEST_F(FKIKBlendTest, TheSwitchHangsTenBelowTheHandAndKeepsToItsRange) {
    expectAt("hand_attr", {10, -10, 0}, 1e-6);
    EXPECT_EQ(numberOf("hand_attr.overrideColor"), 4);
    for (const char* value : {"-0.1", "1.1"}) {
        Value result;
        EXPECT_FALSE(
            session()
                .python->run(fmt::format("cmds.setAttr('hand_attr.FKIK', {})", value), result)
                .isOk());
    }
    EXPECT_EQ(numberOf("hand_attr.FKIK"), 0.0);
    pose();
    blend(1.0);
    expectAt("hand_attr", at("hand_attr_offset"), 1e-8);
    EXPECT_NEAR((at("hand_attr") - at("hand")).length(), 10.0, 1e-6);
}

}  // namespace torvel::test
