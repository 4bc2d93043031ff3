// Local axes, draw style, radius and the two selecting buttons.

#include <QCheckBox>
#include <QWidget>

#include "plugin/fixtures/rigs.h"
#include "plugin/fixtures/tool_clicks.h"

namespace torvel::test {

namespace {

const Lines kRefused{"info: Please, select any 'Joint'", "info: Todos no son Joints"};

std::string axisScript(bool shown) {
    if (shown)
        return "python plain: sel = cmds.ls(sl=True)\n"
               "# Verificar que todos los objetos seleccionados sean de tipo 'Joint'\n"
               "all_joints = all(cmds.nodeType(obj) == 'joint' for obj in sel)\n"
               "if all_joints:\n"
               "   for i in sel:\n"
               "      iType = cmds.nodeType(i)\n"
               "      if iType != 'joint':\n"
               "         cmds.warning( i + ' no es un hueso')\n"
               "      else:\n"
               "         cmds.setAttr(i + '.displayLocalAxis', True)\n"
               "else:\n"
               "   cmds.warning('Debes seleccionar unicamente huesos')\n";
    return "python plain: def hideAxis():\n"
           "    sel = cmds.ls(sl=True)\n"
           "    # Verificar que todos los objetos seleccionados sean de tipo 'Joint'\n"
           "    all_joints = all(cmds.nodeType(obj) == 'joint' for obj in sel)\n"
           "    if all_joints:\n"
           "        for i in sel:\n"
           "            iType = cmds.nodeType(i)\n"
           "            if iType != 'joint':\n"
           "                cmds.warning( i + ' no es un hueso')\n"
           "            else:\n"
           "                cmds.setAttr(i + '.displayLocalAxis', False)\n"
           "    else:\n"
           "        cmds.warning('Debes seleccionar unicamente huesos')\n"
           "hideAxis()\n";
}

std::string notAJoint(const std::string& path) {
    return "info: " + path + " no es un joint. Por favor selecciona solo joints.";
}

}  // namespace

class DisplayToolsTest : public PluginScene {
  public:
    DisplayToolsTest() {
        makeChain(*this, {"hip", "knee", "ankle"});
        makeChain(*this, {"arm", "hand"});
        makeGroup(*this, "ctrl");
        forget();
    }

    double value(const std::string& path, const char* attribute) {
        return scene().number(plug(path, attribute));
    }
    /// Presses a selecting button of a fresh window.
    void pick(const Lines& selection, const char* button, bool ignoreLast = false) {
        QWidget* window = openTool();
        check(window, "cBox_ignoreLastChild", ignoreLast);
        select(selection);
        forget();
        press(window, button);
        window->close();
    }
};

TEST_F(DisplayToolsTest, AxesAreShownAndHiddenOnTheSelectedJoints) {
    clickOn(*this, {"|hip|knee", "|arm"}, "btn_showAxis");
    EXPECT_EQ(transcript(), Lines{axisScript(true)});
    EXPECT_EQ(value("|hip|knee", "displayLocalAxis"), 1.0);
    EXPECT_EQ(value("|arm", "displayLocalAxis"), 1.0);
    EXPECT_EQ(value("|hip", "displayLocalAxis"), 0.0);
    clickOn(*this, {"|hip|knee"}, "btn_hideAxis");
    EXPECT_EQ(transcript(), Lines{axisScript(false)});
    EXPECT_EQ(value("|hip|knee", "displayLocalAxis"), 0.0);
    EXPECT_EQ(value("|arm", "displayLocalAxis"), 1.0);
    EXPECT_EQ(languageErrors(), 0);
}

TEST_F(DisplayToolsTest, AMixedSelectionShowsNoAxis) {
    for (const char* button : {"btn_showAxis", "btn_hideAxis"}) {
        clickOn(*this, {"|hip", "|ctrl"}, button);
        Lines warnings;
        for (const RecordEntry& entry : session().record().entries()) {
            if (!entry.isScript && entry.channel == Channel::Warning)
                warnings.push_back(entry.text);
        }
        EXPECT_EQ(warnings, Lines{"# Warning: Debes seleccionar unicamente huesos"}) << button;
        EXPECT_EQ(value("|hip", "displayLocalAxis"), 0.0);
    }
}

TEST_F(DisplayToolsTest, NothingSelectedIsSilentForAxesAndStyle) {
    clickOn(*this, {}, "btn_showAxis");
    clickOn(*this, {}, "btn_hideAxis");
    EXPECT_EQ(messages(), Lines{});
    EXPECT_EQ(languageErrors(), 0);
    clickOn(*this, {}, "btn_drawBone");
    EXPECT_EQ(transcript(), Lines{});
}

// One script leaves its variables behind, the other keeps them to itself.
TEST_F(DisplayToolsTest, WhereTheScriptsKeepTheirVariables) {
    python("globals().pop('sel', None)");
    clickOn(*this, {"|hip|knee"}, "btn_hideAxis");
    EXPECT_FALSE(python("'sel' in globals()").truth());
    clickOn(*this, {"|hip|knee"}, "btn_showAxis");
    EXPECT_EQ(pythonText("sel"), "knee");
    EXPECT_EQ(pythonText("iType"), "joint");
}

TEST_F(DisplayToolsTest, EachButtonSetsItsStyle) {
    struct Style {
        const char* button;
        int number;
    };
    for (const Style& style : {Style{"btn_drawJoint", 3}, Style{"btn_drawNone", 2},
                               Style{"btn_drawBox", 1}, Style{"btn_drawBone", 0}}) {
        clickOn(*this, {"|hip|knee"}, style.button);
        EXPECT_EQ(transcript(), (Lines{"info: |hip|knee Drawing bones style",
                                       "python plain: cmds.setAttr('|hip|knee.drawStyle', " +
                                           std::to_string(style.number) + ")"}));
        EXPECT_EQ(value("|hip|knee", "drawStyle"), style.number);
        EXPECT_EQ(value("|hip", "drawStyle"), 0.0);
    }
}

TEST_F(DisplayToolsTest, AMixedSelectionIsStyledByItsJoints) {
    clickOn(*this, {"|hip", "|ctrl", "|arm|hand"}, "btn_drawJoint");
    EXPECT_EQ(transcript(), (Lines{"info: |hip Drawing bones style",
                                   "python plain: cmds.setAttr('|hip.drawStyle', 3)",
                                   notAJoint("|ctrl"), "info: |arm|hand Drawing bones style",
                                   "python plain: cmds.setAttr('|arm|hand.drawStyle', 3)"}));
    EXPECT_EQ(value("|hip", "drawStyle"), 3.0);
    EXPECT_EQ(value("|arm|hand", "drawStyle"), 3.0);
    EXPECT_EQ(selected(), (Lines{"|hip", "|ctrl", "|arm|hand"}));
}

TEST_F(DisplayToolsTest, TheRadiusChangesByOne) {
    const double radius = value("|hip|knee", "radius");
    clickOn(*this, {"|hip|knee", "|arm"}, "btn_plusRadius");
    EXPECT_EQ(
        transcript(),
        (Lines{"info: |hip|knee Plus Radius",
               "python plain: cmds.setAttr('|hip|knee.radius', cmds.getAttr('|hip|knee.radius') "
               "+ 1)",
               "info: |arm Plus Radius",
               "python plain: cmds.setAttr('|arm.radius', cmds.getAttr('|arm.radius') + 1)"}));
    EXPECT_EQ(value("|hip|knee", "radius"), radius + 1);
    EXPECT_EQ(value("|arm", "radius"), radius + 1);
    clickOn(*this, {"|hip|knee"}, "btn_minusRadius");
    EXPECT_EQ(
        transcript(),
        (Lines{"info: |hip|knee Minus Radius",
               "python plain: cmds.setAttr('|hip|knee.radius', cmds.getAttr('|hip|knee.radius') "
               "- 1)"}));
    EXPECT_EQ(value("|hip|knee", "radius"), radius);
}

// The attribute takes nothing below zero: that joint is left, the next one is still tried.
TEST_F(DisplayToolsTest, BelowTheSmallestRadiusTheNextJointIsTried) {
    python("cmds.setAttr('hip.radius', 0.5); cmds.setAttr('arm.radius', 4)");
    clickOn(*this, {"|hip", "|arm"}, "btn_minusRadius");
    EXPECT_EQ(messages(), (Lines{"info: |hip Minus Radius", "info: |arm Minus Radius"}));
    EXPECT_EQ(scripts().front(),
              "python plain: cmds.setAttr('|hip.radius', cmds.getAttr('|hip.radius') - 1) "
              "(failed)");
    EXPECT_EQ(value("|hip", "radius"), 0.5);
    EXPECT_EQ(value("|arm", "radius"), 3.0);
}

TEST_F(DisplayToolsTest, RadiusRefusesAMixedSelection) {
    for (const char* button : {"btn_minusRadius", "btn_plusRadius"}) {
        clickOn(*this, {"|hip", "|ctrl"}, button);
        EXPECT_EQ(transcript(), Lines{"info: Por favor, selecciona solo joints."});
        clickOn(*this, {}, button);
        EXPECT_EQ(transcript(), (Lines{"info: Please, select any 'Joint'",
                                       "info: Por favor, selecciona solo joints."}));
    }
}

TEST_F(DisplayToolsTest, TheWholeHierarchyFromItsTop) {
    pick({"|hip|knee", "|arm|hand", "|hip|knee|ankle"}, "btn_selAllHierar");
    EXPECT_EQ(messages(), (Lines{"info: |hip", "info: |arm"}));
    EXPECT_EQ(selected(), (Lines{"|hip", "|hip|knee", "|hip|knee|ankle", "|arm", "|arm|hand"}));
}

TEST_F(DisplayToolsTest, ChildrenFromTheSelectedJoints) {
    pick({"|hip|knee", "|arm|hand"}, "btn_selChild");
    EXPECT_EQ(transcript(), Lines{});
    EXPECT_EQ(selected(), (Lines{"|hip|knee", "|hip|knee|ankle", "|arm|hand"}));
}

TEST_F(DisplayToolsTest, LastJointsStayOut) {
    pick({"|hip|knee"}, "btn_selAllHierar", true);
    EXPECT_EQ(selected(), (Lines{"|hip", "|hip|knee"}));
    pick({"|hip"}, "btn_selChild", true);
    EXPECT_EQ(selected(), (Lines{"|hip", "|hip|knee"}));
    pick({"|hip|knee|ankle"}, "btn_selChild", true);
    EXPECT_EQ(selected(), Lines{"|hip|knee|ankle"}) << "a selected joint always stays";
}

// The box counts for the two buttons alone.
TEST_F(DisplayToolsTest, LastJointsAreDrawnLikeOthers) {
    QWidget* window = openTool();
    check(window, "cBox_ignoreLastChild", true);
    select({"|hip|knee|ankle"});
    press(window, "btn_drawNone");
    press(window, "btn_plusRadius");
    EXPECT_EQ(value("|hip|knee|ankle", "drawStyle"), 2.0);
    EXPECT_EQ(value("|hip|knee|ankle", "radius"), value("|hip", "radius") + 1);
}

TEST_F(DisplayToolsTest, AHalfCheckedBoxCountsAsUnchecked) {
    auto* box = openTool()->findChild<QCheckBox*>("cBox_ignoreLastChild");
    box->setTristate(true);
    forget();
    box->setCheckState(Qt::PartiallyChecked);
    EXPECT_EQ(messages(), Lines{"info: NO se ignorará lastJnt"});
}

TEST_F(DisplayToolsTest, SelectingRefusesWhatIsNoJoint) {
    for (const char* button : {"btn_selAllHierar", "btn_selChild"}) {
        pick({}, button);
        EXPECT_EQ(transcript(), kRefused);
        pick({"|hip", "|ctrl"}, button);
        EXPECT_EQ(transcript(), Lines{"info: Todos no son Joints"});
        EXPECT_EQ(selected(), (Lines{"|hip", "|ctrl"}));
    }
}

}  // namespace torvel::test
