// The FKIK system as it runs: its texts carry the joints' full paths, so most look-ups fail, and
// the run goes on to its closing line. What the host prints to each failure is part of the record.

#include <algorithm>

#include <fmt/format.h>

#include "plugin/fixtures/system_scene.h"

namespace torvel::test {

namespace {

const std::string kNameless = "error: No se pudo obtener el nombre del objeto.";
const std::string kNoRoot = "error: No se pudo inicializar MFnDagNode para el nodo raíz.";

std::string missing(const std::string& name) {
    return "No object matches name: " + name;
}
std::string notFound(const std::string& name) {
    return "error: No se encontró el objeto: " + name;
}
Lines mel(const std::string& text) {
    return {"mel plain: " + text};
}
Lines failedMel(const std::string& text, const std::string& error) {
    return {"language: // Error: line 1: " + error, "mel plain: " + text + " (failed)"};
}
Lines ranPython(const std::string& text) {
    return {"python plain: " + text};
}
Lines failedPython(const std::string& text, const std::string& type, int line,
                   const std::string& error, const std::string& form = "plain") {
    return {
        fmt::format("language: # Error: {}: file <maya console> line {}: {}", type, line, error),
        "python " + form + ": " + text + " (failed)"};
}

std::string connecting(const std::string& source, const std::string& target) {
    return "import maya.cmds as cmds\ncmds.connectAttr('" + source + "', '" + target +
           "', force=True)";
}
Lines noSource(const std::string& source, const std::string& target) {
    return failedPython(connecting(source, target), "RuntimeError", 2,
                        "The source attribute '" + source + "' cannot be found.");
}

}  // namespace

class FKIKSystemTest : public SystemScene {
  public:
    void build(const Lines& joints) { clickOn(joints, "btn_FKIKSystem"); }

    /// The run of the IK system on a selection of one joint.
    Lines lonelyIK(const std::string& start) {
        return Lines{"info: Creando sistema IK...", kNameless, kNameless} +
               failedMel("ikHandle -sj " + start + "-ee -sol ikRPsolver -n _handle;",
                         "Invalid arguments for flag 'ee'.  Expected string, got [ ]") +
               Lines{notFound("_handle"), kNameless, kNameless} +
               mel("circle -name \"_ctrl\" -nr 1 0 0;") +
               failedMel("matchTransform _ctrl ;", kOneObject) +
               failedMel("orientConstraint _ctrl ;",
                         "orientConstraint: Needs at least one target and the object to "
                         "constrain.") +
               mel("setAttr \"_ctrl.overrideEnabled\" 1;") +
               mel("setAttr \"_ctrl.overrideColor\" 17;") +
               failedMel("parent _handle _ctrl;", missing("_handle")) +
               failedMel("matchTransform _Offset ;", kOneObject) + mel("parent _ctrl _Offset;") +
               Lines{kNameless, kNameless} + mel("circle -name \"_ctrl\" -nr 1 0 0;") +
               failedMel("matchTransform _ctrl ;", "More than one object matches name: _ctrl") +
               failedMel("poleVectorConstraint _PV_ctrl _handle;", missing("_handle")) +
               mel("matchTransform _PV_Offset _PV_ctrl;") + mel("parent _PV_ctrl _PV_Offset;") +
               Lines{"info: Sistema IK creado exitosamente."};
    }

    /// The curve with the switch; nothing but its attribute finds it.
    Lines switchLines() {
        const std::string attr = e + "_attr", group = attr + "_offset";
        return failedMel("setAttr \"" + attr + ".overrideEnabled\" 1",
                         "setAttr: " + missing(attr + ".overrideEnabled")) +
               failedMel("setAttr \"" + attr + ".overrideColor\" 4",
                         "setAttr: " + missing(attr + ".overrideColor")) +
               failedPython("import maya.cmds as cmds\nhand_pos = cmds.xform('" + e +
                                "', q = True, ws = True, t = True)\n"
                                "handMargin = [hand_pos[0], hand_pos[1] -10, hand_pos[2]]\n"
                                "cmds.xform('" +
                                attr + "', ws = True, t = handMargin)\n",
                            "ValueError", 4, missing(attr)) +
               failedMel("matchTransform " + group + " " + attr, missing(group)) +
               failedMel("parent " + attr + " " + group, missing(attr)) +
               failedMel("parent -s " + group + " " + e + "_MAIN", missing(group)) +
               ranPython("cmds.addAttr('" + attrName +
                         "', ln='FKIK', at= 'float', min = 0, max = 1, k = True)");
    }

    /// `tieLine` is the line on which the tie of the source joints fails, at `tieName`.
    Lines tieLines(int tieLine, const std::string& tieName) {
        std::string text = "import maya.cmds as cmds\n";
        for (const std::string& joint : {s, m, e})
            text += "cmds.parentConstraint('" + joint + "_MAIN','" + joint + "');\n";
        return failedPython(text, "ValueError", tieLine, missing(tieName));
    }

    Lines blendLines() {
        Lines lines;
        int count = 0;
        for (const std::string& joint : {s, m, e}) {
            const std::string fk = joint + "_FK", ik = joint + "_IK", main = joint + "_MAIN",
                              reverse = fmt::format("reverse{}", ++count), attr = e + "_attr.FKIK";
            lines = lines +
                    failedPython("import maya.cmds as cmds; result = cmds.parentConstraint('" + fk +
                                     "', '" + ik + "', '" + main + "', mo=False, n='" + main +
                                     "_cnx'); result[0] if result else ''",
                                 "ValueError", 1, missing(fk), "stringResult") +
                    Lines{"mel string: shadingNode -asUtility reverse"} +
                    noSource(attr, reverse + ".inputX") +
                    failedPython(connecting(reverse + ".outputX", "." + fk + "W0"), "RuntimeError",
                                 2, "The destination attribute '." + fk + "W0' cannot be found.") +
                    noSource(attr, "." + ik + "W1");
        }
        return lines;
    }

    Lines visibilityLines(const std::string& ikGroup, const std::string& fkGroup) {
        const std::string attr = e + "_attr.FKIK";
        return noSource(attr, ikGroup + ".visibility") + noSource(attr, s + "_IK.visibility") +
               Lines{"mel string: shadingNode -asUtility reverse"} +
               noSource(attr, "reverse4.inputX") +
               ranPython(connecting("reverse4.outputX", fkGroup + ".visibility"));
    }

    /// Every node is where it was, and the skin too.
    void expectNothingLost(const Lines& joints) {
        const Lines before = dagPaths();
        const std::vector<V3d> rest = skinPoints();
        std::vector<M44d> worlds;
        for (const char* joint : kBoundJoints)
            worlds.push_back(worldOf(skeletonPath(joint)));
        build(joints);
        EXPECT_EQ(messages().back(), kSuccess);
        const Lines after = dagPaths();
        EXPECT_TRUE(std::includes(after.begin(), after.end(), before.begin(), before.end()));
        std::size_t i = 0;
        for (const char* joint : kBoundJoints)
            EXPECT_TRUE(worldOf(skeletonPath(joint)).equalWithAbsError(worlds[i++], 1e-6)) << joint;
        const std::vector<V3d> now = skinPoints();
        for (std::size_t k = 0; k < rest.size(); ++k)
            ASSERT_LE((now[k] - rest[k]).length(), 1e-5) << "vertex " << k;
    }
    /// Duplicates may bear the same names, so by the path; the arm hangs on `above`.
    std::string skeletonPath(const std::string& joint) {
        if (joint == "clavicle")
            return "|clavicle";
        std::string path = above;
        for (const char* name : {"shoulder", "elbow", "wrist", "hand"}) {
            path += std::string("|") + name;
            if (joint == name)
                break;
        }
        return path;
    }

    std::string s, m, e, attrName, above;
    static constexpr const char* kBoundJoints[] = {"clavicle", "shoulder", "elbow", "wrist",
                                                   "hand"};
    const std::string kOpening = "info: Creando sistema FKIK...";
    const std::string kSuccess = "info: Sistema FKIK creado exitosamente.";
    const std::string kOneObject = "matchTransform: Needs objects and the one to match, last.";
};

// --- A chain at the top of the scene ---

class FKIKTopTest : public FKIKSystemTest, public ::testing::WithParamInterface<bool> {
  public:
    void SetUp() override {
        makeJoints({{"shoulder", {0, 0, 0}},
                    {"elbow", {5, 0, -1}},
                    {"hand", {10, 0, 0}},
                    {"finger", {12, 0, 0}}});
        s = "|shoulder", m = s + "|elbow", e = m + "|hand", attrName = "shoulder_elbow_hand_attr";
        if (GetParam())
            click("rad_offsetAuto");
    }

    /// The copy named by the suffix. Its end joint keeps its children.
    Lines copyLines(const std::string& suffix) {
        const std::string root = "|shoulder" + suffix, elbow = root + "|elbow",
                          hand = elbow + suffix + "|hand", finger = hand + suffix + "|finger";
        return mel("duplicate -n " + root + " |shoulder;") +
               mel("rename \"" + elbow + "\" elbow" + suffix + ";") +
               mel("rename \"" + hand + "\" hand" + suffix + ";") +
               mel("rename \"" + finger + "\" finger" + suffix + ";") +
               Lines{notFound("|shoulder|elbow|hand" + suffix), kNoRoot};
    }
    Lines fkStage() {
        const bool withAuto = GetParam();
        const std::string top = std::string("|shoulder_FK_Offset") +
                                (withAuto ? "|shoulder_FK_Auto" : "") + "|shoulder_FK_Offset";
        const std::string elbow = "|shoulder_FK|elbow_FK", hand = elbow + "|hand_FK";
        return Lines{"info: Creando sistema FK..."} +
               fkLines("|shoulder_FK", "shoulder_FK", noHookLine("shoulder_FK"), withAuto) +
               fkLines(elbow, "elbow_FK", hookLine("elbow_FK", "shoulder_FK_ctrl"), withAuto) +
               fkLines(hand, "hand_FK", hookLine("hand_FK", "elbow_FK_ctrl"), withAuto) +
               fkLines(hand + "|finger_FK", "finger_FK", hookLine("finger_FK", "hand_FK_ctrl"),
                       withAuto) +
               mel("matchTransform shoulder_FK_ctrlGrp |shoulder_FK;") +
               failedMel("parent " + top + " shoulder_FK_ctrlGrp;", missing(top)) +
               mel("parent |shoulder_FK shoulder_FK_ctrlGrp;");
    }
    Lines ikStage() {
        Lines ik = lonelyIK("shoulder_IK");
        std::string top = "|_Offset|_Offset";
        if (GetParam()) {
            top = "|_Offset|_Auto|_Offset";
            const auto at = std::find(ik.begin(), ik.end(), "mel plain: parent _ctrl _Offset;");
            ik.insert(ik.erase(at), "mel plain: parent _Auto _Offset;");
            const Lines added =
                failedMel("matchTransform _Auto ;", kOneObject) + mel("parent _ctrl _Auto;");
            ik.insert(std::find(ik.begin(), ik.end(), "mel plain: parent _Auto _Offset;"),
                      added.begin(), added.end());
        }
        return failedMel("select -r |shoulder_IK |shoulder|elbow|hand_IK;",
                         missing("|shoulder|elbow|hand_IK")) +
               ik + mel("matchTransform |shoulder_IK_ctrlGrp |shoulder_IK;") +
               failedMel("parent " + top + " |shoulder_IK_ctrlGrp;", missing(top)) +
               failedMel("parent |shoulder|elbow_IK_PV_Offset |shoulder_IK_ctrlGrp;",
                         missing("|shoulder|elbow_IK_PV_Offset"));
    }
    Lines groupStage() {
        return mel("matchTransform |shoulder_FKIK |shoulder;") +
               mel("parent |shoulder_MAIN |shoulder_FKIK;") +
               mel("parent |shoulder_FK_ctrlGrp |shoulder_FKIK;") +
               mel("parent |shoulder_IK |shoulder_FKIK;") +
               visibilityLines("|shoulder_IK_ctrlGrp", "|shoulder_FKIK|shoulder_FK_ctrlGrp");
    }
};

TEST_P(FKIKTopTest, TheRecord) {
    build({s, e});
    EXPECT_EQ(record(), Lines{kOpening} + copyLines("_FK") + fkStage() + copyLines("_IK") +
                            ikStage() + copyLines("_MAIN") + switchLines() +
                            tieLines(3, "|shoulder|elbow_MAIN") + blendLines() + groupStage() +
                            Lines{kSuccess});
}

TEST_P(FKIKTopTest, TheScene) {
    build({s, e});
    EXPECT_EQ(topNodes(), (Lines{"shoulder", "shoulder_FK_Offset", "_Offset", "_PV_Offset",
                                 "shoulder_IK_ctrlGrp", "shoulder_elbow_hand_attr",
                                 "shoulder_elbow_hand_attr_offset", "shoulder_FKIK"}));
    EXPECT_EQ(tree("|shoulder"),
              (Lines{"shoulder", " elbow", "  hand", "   finger", " shoulder_parentConstraint1"}));
    EXPECT_EQ(tree("|shoulder_FKIK"),
              (Lines{"shoulder_FKIK", " shoulder_MAIN", "  elbow_MAIN", "   hand_MAIN",
                     "    finger_MAIN", " shoulder_FK_ctrlGrp", "  shoulder_FK", "   elbow_FK",
                     "    hand_FK", "     finger_FK", "      finger_FK_parentConstraint1",
                     "     hand_FK_parentConstraint1", "    elbow_FK_parentConstraint1",
                     "   shoulder_FK_parentConstraint1", " shoulder_IK", "  elbow_IK", "   hand_IK",
                     "    finger_IK"}));
    EXPECT_EQ(tree("|_PV_Offset"), (Lines{"_PV_Offset", " _PV_ctrl"}));
    EXPECT_EQ(tree("|_Offset").back().substr(GetParam() ? 2 : 1), "_ctrl");
}

// The copies are whole, and their FK controls do work.
TEST_P(FKIKTopTest, WhatWorksOfIt) {
    build({s, e});
    EXPECT_EQ(numberOf("shoulder_FK_ctrlGrp.visibility"), 1.0);
    set("elbow_FK_ctrl.rotate", {0, 0, 90});
    expectAt("hand_FK", {5, 5, 0}, 1e-8);
    expectAt("|shoulder|elbow|hand", {10, 0, 0});
    set("shoulder_MAIN.rotate", {0, 0, 90});
    expectAt("|shoulder|elbow|hand", {0, 10, 0}, 1e-8);
}

INSTANTIATE_TEST_SUITE_P(Modes, FKIKTopTest, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "auto" : "offset"; });

// --- A chain below another joint ---

class FKIKBelowTest : public FKIKSystemTest {
  public:
    FKIKBelowTest() {
        makeJoints({{"chest", {0, 0, 0}},
                    {"shoulder", {1, 0, 0}},
                    {"elbow", {6, 0, -1}},
                    {"hand", {11, 0, 0}}});
        s = "|chest|shoulder", m = s + "|elbow", e = m + "|hand";
        attrName = "chest_shoulder_elbow_hand_attr";
    }

    /// The copy gets another name than the one that is looked up: neither root nor end is found.
    Lines copyLines(const std::string& suffix) {
        return mel("duplicate -n " + s + suffix + " " + s + ";") +
               Lines{notFound(s + suffix), "error: No se pudo obtener el MDagPath del nodo raíz.",
                     notFound(e + suffix), kNoRoot};
    }
    Lines fkStage() {
        return Lines{"info: Creando sistema FK...", "info: Please, select any 'Joint'",
                     "info: No todo son Joints..."} +
               failedMel("matchTransform chest_shoulder_FK_ctrlGrp " + s + "_FK;",
                         missing(s + "_FK")) +
               failedMel("parent  chest_shoulder_FK_ctrlGrp;",
                         "parent: Needs objects and their new parent.") +
               failedMel("parent " + s + "_FK chest_shoulder_FK_ctrlGrp;", missing(s + "_FK"));
    }
    Lines ikStage() {
        const std::string group = "|chest_shoulder_IK_ctrlGrp", pole = m + "_IK_PV_Offset";
        return failedMel("select -r " + s + "_IK " + e + "_IK;", missing(s + "_IK")) +
               lonelyIK("chest_shoulder_IK") +
               failedMel("matchTransform " + group + " " + s + "_IK;", missing(s + "_IK")) +
               failedMel("parent |_Offset|_Offset " + group + ";", missing("|_Offset|_Offset")) +
               failedMel("parent " + pole + " " + group + ";", missing(pole));
    }
    Lines groupStage() {
        const std::string top = "|chest_shoulder_FKIK";
        return mel("matchTransform " + top + " " + s + ";") +
               failedMel("parent " + s + "_MAIN " + top + ";", missing(s + "_MAIN")) +
               mel("parent |chest_shoulder_FK_ctrlGrp " + top + ";") +
               failedMel("parent " + s + "_IK " + top + ";", missing(s + "_IK")) +
               visibilityLines("|chest_shoulder_IK_ctrlGrp", top + "|chest_shoulder_FK_ctrlGrp");
    }
};

TEST_F(FKIKBelowTest, TheRecord) {
    build({s, e});
    EXPECT_EQ(record(), Lines{kOpening} + copyLines("_FK") + fkStage() + copyLines("_IK") +
                            ikStage() + copyLines("_MAIN") + switchLines() +
                            tieLines(2, s + "_MAIN") + blendLines() + groupStage() +
                            Lines{kSuccess});
}

TEST_F(FKIKBelowTest, TheScene) {
    build({s, e});
    EXPECT_EQ(tree("|chest"),
              (Lines{"chest", " shoulder", "  elbow", "   hand", " chest_shoulder_FK", "  elbow",
                     "   hand", " chest_shoulder_IK", "  elbow", "   hand", " chest_shoulder_MAIN",
                     "  elbow", "   hand"}));
    EXPECT_EQ(tree("|chest_shoulder_FKIK"),
              (Lines{"chest_shoulder_FKIK", " chest_shoulder_FK_ctrlGrp"}));
}

// --- Both ---

TEST_F(FKIKSystemTest, NothingOfTheBoundArmIsLost) {
    openArm();
    above = "|clavicle";
    expectNothingLost({"|clavicle|shoulder", "|clavicle|shoulder|elbow|wrist"});
}

TEST_F(FKIKSystemTest, NorWhenItStandsAtTheTop) {
    openArm();
    python("cmds.parent('shoulder', world=True)");
    expectNothingLost({"|shoulder", "|shoulder|elbow|wrist"});
}

TEST_F(FKIKSystemTest, RefusedSelections) {
    makeArmChain();
    makeJoints({{"leg", {0, 0, 5}}, {"hand", {0, -5, 5}}});
    makeCircle("ring");
    const Lines before = dagPaths();
    build({});
    EXPECT_EQ(record(), (Lines{kOpening, "info: Please, select any 'Joint'"}));
    build({"|leg|hand", "|shoulder|elbow|hand"});
    EXPECT_EQ(record(), (Lines{kOpening, "info: Hay dos elementos con el mismo nombre",
                               "info: Nombre duplicado: hand"}));
    build({"|shoulder", "ring"});
    EXPECT_EQ(record(), Lines{kOpening});
    EXPECT_EQ(dagPaths(), before);
}

TEST_F(FKIKSystemTest, OneJointRunsThroughWithoutHarm) {
    makeArmChain();
    const Lines before = dagPaths();
    build({"|shoulder"});
    EXPECT_EQ(record().front(), kOpening);
    EXPECT_EQ(messages()[1], kNameless);
    EXPECT_EQ(messages().back(), kSuccess);
    const Lines after = dagPaths();
    EXPECT_TRUE(std::includes(after.begin(), after.end(), before.begin(), before.end()));
    expectAt("|shoulder|elbow|hand", {10, 0, 0});
}

TEST_F(FKIKSystemTest, ASecondClickKeepsTheSkeleton) {
    makeArmChain();
    const Lines before = dagPaths();
    for (int click = 0; click < 3; ++click) {
        build({"|shoulder", "|shoulder|elbow|hand"});
        EXPECT_EQ(messages().back(), kSuccess);
        const Lines after = dagPaths();
        EXPECT_TRUE(std::includes(after.begin(), after.end(), before.begin(), before.end()));
        expectAt("|shoulder|elbow|hand", {10, 0, 0}, 1e-6);
    }
}

TEST_F(FKIKSystemTest, TheSwitchCurve) {
    makeArmChain();
    build({"|shoulder", "|shoulder|elbow|hand"});
    const std::string curve = "shoulder_elbow_hand_attr", shape = shapesOf(curve).at(0);
    const double h = 3.2, r = 0.8;
    expectPoints(points(shape), {{-r, h, r},
                                 {r, h, r},
                                 {r, h, -r},
                                 {-r, h, -r},
                                 {-r, h, r},
                                 {0, 0, 0},
                                 {r, h, r},
                                 {r, h, -r},
                                 {0, 0, 0},
                                 {-r, h, -r},
                                 {-r, h, r},
                                 {0, 0, 0},
                                 {r, h, r}});
    const std::vector<double> expected{0,         4,         8,         12,        16,
                                       24.485281, 32.970563, 36.970563, 45.455844, 53.941125,
                                       57.941125, 66.426407, 74.911688};
    EXPECT_EQ(knots(shape), expected);
    EXPECT_EQ(numberOf(shape + ".degree"), 1);
    EXPECT_EQ(numberOf(shape + ".form"), 0) << "open";
    EXPECT_EQ(numberOf(curve + ".FKIK"), 0);
    EXPECT_EQ(pythonText("str(cmds.addAttr('" + curve + ".FKIK', query=True, attributeType=True))"),
              "float");
    EXPECT_EQ(
        pythonText("' '.join(cmds.listAttr('" + curve + "', userDefined=True, keyable=True))"),
        "FKIK");
}

}  // namespace torvel::test
