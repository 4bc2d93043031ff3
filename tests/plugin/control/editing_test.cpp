// Colour, scale, rotation and free modify of the selected controls' curves.

#include <QCheckBox>
#include <QLabel>
#include <QLayout>
#include <QSlider>

#include "plugin/fixtures/control_scene.h"
#include "support/test_scene.h"

namespace torvel::test {

namespace {

std::string colorLine(const std::string& shape, const std::string& r, const std::string& g,
                      const std::string& b) {
    return "python plain: import maya.cmds as cmds\n"
           "cmds.setAttr('" +
           shape +
           ".overrideEnabled', 1)\n"
           "cmds.setAttr('" +
           shape +
           ".overrideRGBColors', 1)\n"
           "cmds.setAttr('" +
           shape + ".overrideColorR', " + r +
           ")\n"
           "cmds.setAttr('" +
           shape + ".overrideColorG', " + g +
           ")\n"
           "cmds.setAttr('" +
           shape + ".overrideColorB', " + b + ")";
}

std::string rotateLine(const std::string& node, const std::string& angles) {
    return "python plain: import maya.cmds as cmds\n"
           "cmds.select('" +
           node +
           "')\n"
           "transform = cmds.ls(sl=True)[0]\n"
           "shape = cmds.listRelatives(transform, s=True)[0]\n"
           "cmds.selectMode(component=True)\n"
           "each_cvs = cmds.select(str(shape) + '.cv[*]')\n"
           "cmds.rotate(" +
           angles +
           ", each_cvs)\n"
           "cmds.selectMode(object=True)\n";
}

const char* const kOnlyCurves = "error: Please select NurbsCurve controls only.";
const char* const kNothing = "info: Por favor, selecciona algún control NURBS.";

}  // namespace

class ControlEditingTest : public ControlScene {
  public:
    /// A control of its own form, so that no turn leaves it looking the same.
    void makeControl(const std::string& name) {
        python("cmds.curve(degree=1, knot=[0,1,2,3], point=[(1,0,0),(0,2,0),(0,0,3),(1,2,3)], n='" +
               name + "')");
    }
    std::string shapeOf(const std::string& name) { return shapesOf(name).at(0); }

    const Points kForm = {{1, 0, 0}, {0, 2, 0}, {0, 0, 3}, {1, 2, 3}};
};

TEST_F(ControlEditingTest, ColourOfSeveralControls) {
    makeControl("a");
    makeControl("b");
    const std::string first = shapeOf("a"), second = shapeOf("b");
    select({"a", "b"});
    forget();
    pickColor(QColor(255, 128, 0));
    EXPECT_EQ(transcript(), (Lines{colorLine(first, "1", "0.501961", "0"),
                                   colorLine(second, "1", "0.501961", "0")}));
    EXPECT_EQ(scene().number(plug(first, "overrideEnabled")), 1.0);
    EXPECT_EQ(scene().number(plug(first, "overrideRGBColors")), 1.0);
    EXPECT_NEAR(scene().number(plug(second, "overrideColorG")), 128 / 255.0, 1e-5);
    EXPECT_EQ(scene().number(plug("a", "overrideEnabled")), 0.0) << "never on the transform";
    EXPECT_EQ(widget<QLabel>("label_colorPicked")->styleSheet(),
              "background-color: rgb(255,128,0);");
    EXPECT_EQ(selected(), (Lines{"|a", "|b"}));
}

TEST_F(ControlEditingTest, TheNextPickStartsFromTheLast) {
    makeControl("a");
    select({"a"});
    EXPECT_EQ(pickColor(QColor(1, 2, 3)), QColor(0, 0, 0));
    EXPECT_EQ(pickColor(QColor(0, 255, 0)), QColor(1, 2, 3));
    EXPECT_EQ(scene().number(plug(shapeOf("a"), "overrideColorG")), 1.0);
}

TEST_F(ControlEditingTest, ACancelledPickChangesNothing) {
    makeControl("a");
    select({"a"});
    forget();
    EXPECT_TRUE(pickColor(QColor()).isValid()) << "the dialog came up";
    EXPECT_EQ(transcript(), Lines{});
    EXPECT_EQ(widget<QLabel>("label_colorPicked")->styleSheet(), "background-color: colorVar;");
}

TEST_F(ControlEditingTest, AnyMouseButtonOpensTheDialog) {
    for (Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton})
        EXPECT_TRUE(pickColor(QColor(), button).isValid());
}

TEST_F(ControlEditingTest, ARefusedColourStillFillsTheSwatch) {
    makeControl("a");
    python("cmds.joint(name='bone')");
    select({"a", "bone"});
    forget();
    pickColor(QColor(9, 8, 7));
    EXPECT_EQ(transcript(), Lines{kOnlyCurves});
    EXPECT_EQ(widget<QLabel>("label_colorPicked")->styleSheet(), "background-color: rgb(9,8,7);");
    select({});
    forget();
    EXPECT_EQ(pickColor(QColor(1, 1, 1)), QColor(9, 8, 7));
    EXPECT_EQ(transcript(), (Lines{kNothing, kOnlyCurves}));
}

TEST_F(ControlEditingTest, ADragCompoundsItsSteps) {
    makeControl("a");
    makeCircle("b");
    const Points circle = points("bShape");
    select({"a", "b"});
    forget();
    slide(1);
    expectPoints(points(shapeOf("a")), scaled(kForm, 1.05));
    slide(2);
    slide(3);
    expectPoints(points(shapeOf("a")), scaled(kForm, 1.05 * 1.10 * 1.15));
    expectPoints(points("bShape"), scaled(circle, 1.05 * 1.10 * 1.15));
    slide(2);
    slide(1);
    slide(0);
    expectPoints(points(shapeOf("a")), scaled(kForm, 1.05 * 1.10 * 1.15 * 1.10 * 1.05));
    EXPECT_EQ(transcript(), Lines{});
    EXPECT_EQ(selected(), (Lines{"|a", "|b"}));
}

TEST_F(ControlEditingTest, AtTheLowEndEverythingCollapsesForGood) {
    makeControl("a");
    select({"a"});
    slide(-10);
    expectPoints(points(shapeOf("a")), scaled(kForm, 0.5));
    slide(-20);
    const Points nothing(4, {0, 0, 0});
    expectPoints(points(shapeOf("a")), nothing);
    slide(0);
    slide(20);
    expectPoints(points(shapeOf("a")), nothing);
}

TEST_F(ControlEditingTest, ScaleOfACircleWithHistoryLasts) {
    python("cmds.circle(name='a')");
    const Points before = points("aShape");
    select({"a"});
    slide(20);
    expectPoints(points("aShape"), scaled(before, 2), 1e-6);
    python("cmds.setAttr('makeNurbCircle1.radius', 2)");
    expectPoints(points("aShape"), scaled(before, 3), 1e-6);  // kept as an offset of one radius
}

TEST_F(ControlEditingTest, ScaleIsAboutTheShapesOwnOrigin) {
    makeControl("a");
    python("cmds.move(10, 0, 0, 'a')\ncmds.rotate(0, 30, 0, 'a')");
    select({"a"});
    slide(10);
    expectPoints(points(shapeOf("a")), scaled(kForm, 1.5));
    EXPECT_EQ(scene().number(plug("a", "translateX")), 10.0);
    EXPECT_EQ(scene().number(plug("a", "scaleX")), 1.0);
}

TEST_F(ControlEditingTest, AllCurvesOfAControlAreScaledAndNoOther) {
    makeControl("a");
    makeControl("b");
    makeControl("c");
    const std::string own = shapeOf("a"), added = shapeOf("b");
    python("cmds.parent('" + added + "', 'a', r=True, s=True)\ncmds.parent('c', 'a')");
    select({"a"});
    slide(10);
    expectPoints(points(own), scaled(kForm, 1.5));
    expectPoints(points(added), scaled(kForm, 1.5));
    expectPoints(points(shapeOf("c")), kForm);
}

TEST_F(ControlEditingTest, ARefusedScale) {
    slide(1);
    python("cmds.joint(name='bone')");
    select({"bone"});
    slide(2);
    EXPECT_EQ(messages(), (Lines{kNothing, "error: Selecciona solo controles tipo NurbsCurve.",
                                 "error: Selecciona solo controles tipo NurbsCurve."}));
}

TEST_F(ControlEditingTest, ResetCentresTheSliderAlone) {
    makeControl("a");
    select({"a"});
    slide(20);
    click("btn_reset");
    EXPECT_EQ(widget<QSlider>("hSlider_scalar")->value(), 0);
    expectPoints(points(shapeOf("a")), scaled(kForm, 2));
    select({});
    forget();
    click("btn_reset");
    EXPECT_EQ(transcript(), Lines{}) << "no signal from a slider that stands at 0";
}

TEST_F(ControlEditingTest, QuarterAndHalfTurnsOnEachAxis) {
    for (char axis : {'x', 'y', 'z'}) {
        const std::string radio = std::string("rad_rotShp_") + static_cast<char>(axis - 32);
        click(radio.c_str());
        for (int angle : {90, 180}) {
            const std::string name = std::string("c") + axis + std::to_string(angle);
            makeControl(name);
            clickOn({name}, angle == 90 ? "btnRot90" : "btnRot180");
            const std::string number = std::to_string(angle);
            Lines wanted;
            if (axis == 'x')
                wanted = {"info: Rotating shape on X axis: " + number,
                          rotateLine(name, number + ",0,0")};
            else if (axis == 'y')
                wanted = {rotateLine(name, "0," + number + ",0")};
            else
                wanted = {rotateLine(name, "0,0," + number)};
            EXPECT_EQ(transcript(), wanted);
            expectPoints(points(shapeOf(name)), turned(kForm, axis, angle), 1e-9);
            EXPECT_EQ(selected(), Lines{"|" + name});
            EXPECT_EQ(scene().number(plug(name, "rotateX")), 0.0);
        }
    }
    EXPECT_EQ(languageErrors(), 0);
}

TEST_F(ControlEditingTest, AControlWithTwoChildrenTurnsTwice) {
    makeControl("a");
    python("cmds.group(em=True, name='below', parent='a')");
    clickOn({"a"}, "btnRot90");
    const std::string said = "info: Rotating shape on X axis: 90";
    EXPECT_EQ(transcript(),
              (Lines{said, rotateLine("a", "90,0,0"), said, rotateLine("a", "90,0,0")}));
    expectPoints(points(shapeOf("a")), turned(kForm, 'x', 180), 1e-9);
}

TEST_F(ControlEditingTest, OfSeveralControlsTheLastStaysSelected) {
    makeControl("a");
    makeControl("b");
    python("cmds.move(3, 4, 5, 'a')");
    clickOn({"a", "b"}, "btnRot90");
    expectPoints(points(shapeOf("a")), turned(kForm, 'x', 90), 1e-9);
    expectPoints(points(shapeOf("b")), turned(kForm, 'x', 90), 1e-9);
    EXPECT_EQ(selected(), Lines{"|b"});
    EXPECT_EQ(pythonText("cmds.ls(sl=True)"), "b") << "no points are left selected";
}

TEST_F(ControlEditingTest, OnlyTheFirstShapeTurns) {
    makeControl("a");
    makeControl("b");
    const std::string first = shapeOf("a"), second = shapeOf("b");
    python("cmds.parent('" + second + "', 'a', r=True, s=True)");
    clickOn({"a"}, "btnRot90");
    expectPoints(points(first), turned(kForm, 'x', 180), 1e-9);
    expectPoints(points(second), kForm);
}

TEST_F(ControlEditingTest, ATurnOfACircleWithHistoryLasts) {
    python("cmds.circle(name='a')");
    const Points before = points("aShape");
    clickOn({"a"}, "btnRot90");
    expectPoints(points("aShape"), turned(before, 'x', 90), 1e-6);
    EXPECT_EQ(pythonText("cmds.listConnections('aShape.create')"), "makeNurbCircle1");
}

TEST_F(ControlEditingTest, ARefusedTurn) {
    clickOn({}, "btnRot90");
    EXPECT_EQ(transcript(), (Lines{kNothing, kOnlyCurves}));
    python("cmds.joint(name='bone')");
    clickOn({"bone"}, "btnRot180");
    EXPECT_EQ(transcript(), Lines{kOnlyCurves});
}

TEST_F(ControlEditingTest, ABareCurveShapeIsSkippedInSilence) {
    makeControl("a");
    const std::string shape = shapeOf("a");
    clickOn({shape}, "btnRot90");
    slide(5);
    pickColor(QColor(1, 2, 3));
    EXPECT_EQ(transcript(), Lines{});
    expectPoints(points(shape), kForm);
}

class FreeModifyTest : public ControlEditingTest {
  public:
    Lines disabled() {
        Lines names;
        for (const char* name : {"frame_rotShp", "frame_scalar", "scrollArea_content"}) {
            if (!widget<QWidget>(name)->isEnabled())
                names.push_back(name);
        }
        if (!window->findChild<QLayout*>("frame_color")->isEnabled())
            names.push_back("frame_color");
        return names;
    }
    QString rowSheet() { return widget<QWidget>("frame_freeModify")->styleSheet(); }
    void tick(bool on) {
        forget();
        check(window, "cBox_freeModify", on);
    }

    const Lines kAll{"frame_rotShp", "frame_scalar", "scrollArea_content", "frame_color"};
    const std::string kOn = "info: Modo de modificaci\xEF\xBF\xBDn libre ACTIVADO.";
    const std::string kOff = "info: Modo de modificaci\xEF\xBF\xBDn libre DESACTIVADO.";
    const std::string kNone = "error: No hay objetos seleccionados para modificar.";
    const std::string kPoints =
        "python plain: cmds.selectMode(component = True)\ncmds.select('a' + '.cv[*]');\n";
    const std::string kObjects =
        "python plain: cmds.selectMode(object = True)\ncmds.setToolTo('Move')";
};

TEST_F(FreeModifyTest, InAndOut) {
    makeControl("a");
    makeControl("b");
    select({"a", "b"});
    tick(true);
    EXPECT_EQ(transcript(), (Lines{kOn, kPoints}));
    EXPECT_EQ(disabled(), kAll);
    EXPECT_EQ(rowSheet(), "background-color:red;");
    EXPECT_EQ(pythonText("cmds.ls(sl=True)"), "a.cv[0:3]");
    EXPECT_TRUE(widget<QWidget>("label_colorPicked")->isEnabled()) << "the swatch stays clickable";
    EXPECT_TRUE(widget<QWidget>("btn_FKsystem")->isEnabled());

    tick(false);
    EXPECT_EQ(transcript(), (Lines{kOff, kObjects}));
    EXPECT_EQ(disabled(), Lines{});
    EXPECT_EQ(rowSheet(), "");
    EXPECT_EQ(languageErrors(), 0);
}

TEST_F(FreeModifyTest, NothingSelectedOnTheWayIn) {
    tick(true);
    EXPECT_EQ(transcript(), Lines{kNone});
    EXPECT_EQ(disabled(), Lines{});
    EXPECT_TRUE(widget<QCheckBox>("cBox_freeModify")->isChecked());
}

TEST_F(FreeModifyTest, NothingSelectedOnTheWayOutLeavesTheModeOn) {
    makeControl("a");
    select({"a"});
    tick(true);
    python("cmds.select(clear=True)");
    tick(false);
    EXPECT_EQ(transcript(), Lines{kNone});
    EXPECT_EQ(disabled(), kAll);
    EXPECT_EQ(rowSheet(), "background-color:red;");
    EXPECT_FALSE(widget<QCheckBox>("cBox_freeModify")->isChecked());

    select({"a"});
    tick(true);
    tick(false);
    EXPECT_EQ(disabled(), Lines{});
}

TEST_F(FreeModifyTest, AHalfCheckedBoxLeavesTheMode) {
    makeControl("a");
    select({"a"});
    auto* box = widget<QCheckBox>("cBox_freeModify");
    box->setTristate(true);
    box->setCheckState(Qt::PartiallyChecked);
    EXPECT_EQ(messages(), Lines{kOff});
}

}  // namespace torvel::test
