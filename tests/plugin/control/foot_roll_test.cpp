// The foot roll's two steps and the report of the selection that follows each.

#include <QLineEdit>
#include <QPushButton>

#include "plugin/fixtures/control_scene.h"
#include "plugin/fixtures/rigs.h"

namespace torvel::test {

class FootRollTest : public ControlScene {
  public:
    QString text() { return widget<QPushButton>("btn_footRoll")->text(); }
    QString sheet() { return widget<QPushButton>("btn_footRoll")->styleSheet(); }
    void pose(const std::vector<std::string>& selection = {}) {
        clickOn(selection, "btn_footRoll");
    }
    static std::string circleLine(const std::string& name, const std::string& normal) {
        return "mel plain: circle -name \"" + name + "_ctrl\" -nr " + normal + ";";
    }
    static std::string matchLine(const std::string& name) {
        return "mel plain: matchTransform " + name + "_ctrl " + name + ";";
    }

    const QString kBlue = "background-color: rgb(0, 85, 255); color: rgb(255, 255, 255); ";
    const std::string kTransform = "info: Nodo seleccionado: kTransform";
    const std::string kCurve = "info: ? Tiene una curva NURBS (kNurbsCurve) como shape.";
    const std::string kEmpty = "info: No hay objetos seleccionados.";
};

TEST_F(FootRollTest, TheFourStepsTwiceRound) {
    makeChain(*this, {"foot"});
    python("cmds.move(1, 2, 3, '|foot')");
    for (const char* circle : {"foot_ctrl", "foot_ctrl1"}) {
        pose({"|foot"});
        EXPECT_EQ(transcript(), (Lines{"info: Creating footRooll", circleLine("foot", "1 0 0"),
                                       matchLine("foot"), kTransform, kCurve}));
        EXPECT_EQ(text(), "Confirm guides");
        EXPECT_EQ(sheet(), kBlue);
        EXPECT_TRUE(exists(circle));

        pose({"|foot"});
        EXPECT_EQ(transcript(), (Lines{"info: Done", "info: Nodo seleccionado: kJoint"}));
        EXPECT_EQ(text(), "Pose guides");
        EXPECT_EQ(sheet(), "");
    }
    EXPECT_EQ(scene().number(plug("foot_ctrl", "translateY")), 2.0);

    pose({"|foot"});
    forget();
    click("btn_cancelRoll");
    EXPECT_EQ(transcript(), Lines{"info: Cancelling footRoll"});
    EXPECT_EQ(text(), "Pose guides");
    EXPECT_EQ(sheet(), "");
    EXPECT_TRUE(exists("foot_ctrl2")) << "a cancel keeps the circle";

    forget();
    click("btn_cancelRoll");
    EXPECT_EQ(transcript(), Lines{"info: Cancelling footRoll"});
    EXPECT_EQ(text(), "Pose guides");
}

TEST_F(FootRollTest, ACancelBeforeAnyPoseChangesTheLetterAlone) {
    EXPECT_EQ(text(), "Pose Guides");
    click("btn_cancelRoll");
    EXPECT_EQ(transcript(), Lines{"info: Cancelling footRoll"});
    EXPECT_EQ(text(), "Pose guides");
    EXPECT_EQ(sheet(), "");
}

TEST_F(FootRollTest, TheNormalFollowsThePrimaryAxis) {
    makeChain(*this, {"foot"});
    click("rad_Y");
    pose({"|foot"});
    EXPECT_EQ(scripts(), (Lines{circleLine("foot", "0 1 0"), matchLine("foot")}));
    click("btn_footRoll");
    click("rad_Z");
    pose({"|foot"});
    EXPECT_EQ(scripts(), (Lines{circleLine("foot", "0 0 1"), matchLine("foot")}));
}

TEST_F(FootRollTest, AnEmptySelection) {
    pose();
    const Lines ran = scripts();
    ASSERT_EQ(ran.size(), 2u);
    EXPECT_EQ(ran[0], circleLine("", "1 0 0"));
    EXPECT_EQ(ran[1].find("mel plain: matchTransform _ctrl ;"), 0u);
    EXPECT_EQ(text(), "Confirm guides");

    pose();
    EXPECT_EQ(transcript(), (Lines{"info: Done", kEmpty}));
    EXPECT_EQ(text(), "Pose guides");
}

TEST_F(FootRollTest, OnlyTheFirstOfTwoObjectsGetsACircle) {
    makeChain(*this, {"heel"});
    makeCircle("toe");
    widget<QLineEdit>("lineEdit_2")->setText("R");
    pose({"toe", "|heel"});
    EXPECT_EQ(scripts(), (Lines{circleLine("toe", "1 0 0"), matchLine("toe")}));
    EXPECT_FALSE(exists("heel_ctrl"));
}

TEST_F(FootRollTest, TwoWindowsHaveAStateEach) {
    makeChain(*this, {"foot"});
    pose({"|foot"});
    QWidget* second = openControls();
    select({"|foot"});
    forget();
    press(second, "btn_footRoll");
    EXPECT_EQ(messages().front(), "info: Creating footRooll");
}

TEST_F(FootRollTest, TheReportNamesEveryKindOfChild) {
    makeCircle("ring");
    python(
        "cmds.polyCube(name='box')\ncmds.group(em=True, name='below', parent='box')\n"
        "cmds.createNode('transform', name='mark')\ncmds.createNode('locator', parent='mark')");
    click("btn_footRoll");
    clickOn({"ring", "box", "mark", "ringShape"}, "btn_footRoll");
    EXPECT_EQ(transcript(), (Lines{"info: Done", kTransform, kCurve, kTransform,
                                   "info: ? Tiene una malla (kMesh) como shape.",
                                   "info: ? Hijo no malla/curva, tipo: kTransform", kTransform,
                                   "info: ? Hijo no malla/curva, tipo: kLocator",
                                   "info: Nodo seleccionado: kNurbsCurve"}));
}

TEST_F(FootRollTest, NodesOutsideTheDagAreLeftOut) {
    python("cmds.createNode('time', name='clock')");
    click("btn_footRoll");
    clickOn({"clock"}, "btn_footRoll");
    EXPECT_EQ(transcript(), Lines{"info: Done"});
}

}  // namespace torvel::test
