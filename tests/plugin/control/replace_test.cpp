// The palette's buttons on selected controls: texts, lines, what stays and what goes.

#include <algorithm>

#include "plugin/fixtures/control_scene.h"
#include "support/test_scene.h"

namespace torvel::test {

namespace {

std::string squareHead() {
    return "python string: curveName = cmds.curve(degree=1, knot=[0,1,2,3,4,5,6], "
           "point=[(0,0,0),(0,5.6,0),(-0.7,5.6,0),(-0.7,7,0),(0.7,7,0),(0.7,5.6,0),(0,5.6,0)], "
           "n='curveTemp'); curveName";
}

const Points kSquareHead = {{0, 0, 0},   {0, 5.6, 0},   {-0.7, 5.6, 0}, {-0.7, 7, 0},
                            {0.7, 7, 0}, {0.7, 5.6, 0}, {0, 5.6, 0}};

std::string replaceLine(const std::string& control, const std::string& curve) {
    return "python plain: cmds.select('" + control +
           "')\n"
           "oldTransform = cmds.ls(sl=True)[0]\n"
           "oldShape = cmds.listRelatives(oldTransform, s=True)\n"
           "cmds.delete(oldShape)\n"
           "newShape = cmds.listRelatives('" +
           curve +
           "', s=True)[0]\n"
           "cmds.parent(newShape, oldTransform, r=True, s=True)\n"
           "cmds.delete('" +
           curve + "')\n";
}

}  // namespace

using ControlReplaceTest = ControlScene;

TEST_F(ControlReplaceTest, ThreeControlsOneAfterAnother) {
    for (const char* name : {"a", "b", "c"})
        makeCircle(name);
    python("cmds.move(1, 2, 3, 'b')");
    clickOn({"a", "b", "c"}, "btnShape43");
    EXPECT_EQ(transcript(),
              (Lines{"info: Changing Shapes", squareHead(), "info: NewCurve: curveTemp",
                     "info: oldCurv: a", replaceLine("a", "curveTemp"), squareHead(),
                     "info: NewCurve: curveTemp", "info: oldCurv: b", replaceLine("b", "curveTemp"),
                     squareHead(), "info: NewCurve: curveTemp", "info: oldCurv: c",
                     replaceLine("c", "curveTemp")}));
    EXPECT_EQ(selected(), (Lines{"|a", "|b", "|c"}));
    EXPECT_FALSE(exists("curveTemp"));
    for (const char* name : {"a", "b", "c"}) {
        ASSERT_EQ(shapesOf(name).size(), 1u) << name;
        expectPoints(points(shapesOf(name)[0]), kSquareHead);
    }
    EXPECT_EQ(pythonText("cmds.ls(type='nurbsCurve')").find("aShape"), std::string::npos);
    EXPECT_EQ(scene().number(plug("b", "translateY")), 2.0);
    EXPECT_EQ(languageErrors(), 0);
}

TEST_F(ControlReplaceTest, ShapesWithoutScript) {
    makeCircle("a");
    clickOn({"a"}, "btnShape46");
    EXPECT_EQ(transcript(), (Lines{"info: Changing Shapes", "info: NewCurve: curve1",
                                   "info: oldCurv: a", replaceLine("a", "curve1")}));
    ASSERT_EQ(shapesOf("a"), Lines{"curveShape1"});
    expectPoints(points("curveShape1"),
                 {{0, -1, 1}, {0, 1, 1}, {0, 1, -1}, {0, -1, -1}, {0, -1, 1}});
    EXPECT_FALSE(exists("curve1"));
}

TEST_F(ControlReplaceTest, TheCircleComesWithItsHistory) {
    python("cmds.circle(name='a')");
    clickOn({"a"}, "btnShape01");
    EXPECT_EQ(transcript(),
              (Lines{"info: Changing Shapes",
                     "python string: curveName = cmds.circle(nr=(1,0,0))[0]; curveName",
                     "info: NewCurve: nurbsCircle1", "info: oldCurv: a",
                     replaceLine("a", "nurbsCircle1")}));
    ASSERT_EQ(shapesOf("a"), Lines{"nurbsCircleShape1"});
    const std::string maker = pythonText("cmds.listConnections('nurbsCircleShape1.create')");
    ASSERT_EQ(maker.find("makeNurbCircle"), 0u);
    python("cmds.setAttr('" + maker + ".radius', 2)");
    EXPECT_NEAR(points("nurbsCircleShape1")[1][1], 2 * 1.1081941875543879, 1e-6);
}

TEST_F(ControlReplaceTest, AControlWithHistory) {
    python("cmds.circle(name='a', radius=3)");
    clickOn({"a"}, "btnShape43");
    ASSERT_EQ(shapesOf("a").size(), 1u);
    expectPoints(points(shapesOf("a")[0]), kSquareHead);
    EXPECT_EQ(pythonText("cmds.listConnections('" + shapesOf("a")[0] + ".create') or []"), "");
}

TEST_F(ControlReplaceTest, SeveralOldShapesLeaveOne) {
    makeCircle("a");
    makeCircle("b");
    python("cmds.parent('bShape', 'a', r=True, s=True)");
    ASSERT_EQ(shapesOf("a").size(), 2u);
    clickOn({"a"}, "btnShape43");
    ASSERT_EQ(shapesOf("a").size(), 1u);
    expectPoints(points(shapesOf("a")[0]), kSquareHead);
}

TEST_F(ControlReplaceTest, ChildTransformsStay) {
    makeCircle("a");
    makeCircle("b");
    python("cmds.parent('b', 'a')\ncmds.move(4, 5, 6, 'b')\ncmds.move(1, 0, 0, 'a')");
    const std::string before = pythonText("[str(n) for n in cmds.xform('b', q=True, m=True)]");
    clickOn({"a"}, "btnShape03");
    EXPECT_EQ(pythonText("cmds.listRelatives('a', type='transform')"), "b");
    EXPECT_EQ(pythonText("[str(n) for n in cmds.xform('b', q=True, m=True)]"), before);
    EXPECT_EQ(shapesOf("b"), Lines{"bShape"});
}

TEST_F(ControlReplaceTest, ConnectionsOfTheTransformStayAndItsShapesColourGoes) {
    makeCircle("a");
    makeCircle("b");
    python(
        "cmds.connectAttr('b.translateX', 'a.translateY')\n"
        "cmds.setAttr('aShape.overrideEnabled', 1)\ncmds.setAttr('aShape.overrideColor', 13)");
    clickOn({"a"}, "btnShape35");
    EXPECT_EQ(pythonText("cmds.listConnections('a.translateY', s=True, d=False)"), "b");
    const std::string shape = shapesOf("a").at(0);
    EXPECT_EQ(scene().number(plug(shape, "overrideEnabled")), 0.0);
    EXPECT_EQ(scene().number(plug(shape, "overrideColor")), 0.0);
}

TEST_F(ControlReplaceTest, OfTheEyesTheOutlineAlone) {
    makeCircle("a");
    clickOn({"a"}, "btnShape36");
    ASSERT_EQ(shapesOf("a").size(), 1u);
    EXPECT_EQ(points(shapesOf("a")[0]).size(), 19u);
    for (const char* name : {"eyesCtrl", "leftEyeCtrl", "rightEyeCtrl"})
        EXPECT_FALSE(exists(name)) << name;
    EXPECT_EQ(pythonText("cmds.ls(type='nurbsCurve')"), shapesOf("a")[0]);
    EXPECT_EQ(selected(), Lines{"|a"});
}

TEST_F(ControlReplaceTest, EveryButtonHasItsOwnShape) {
    makeCircle("a");
    std::vector<Points> seen;
    for (int number = 1; number <= 46; ++number) {
        const std::string name =
            std::string("btnShape") + (number < 10 ? "0" : "") + std::to_string(number);
        if (!window->findChild<QWidget*>(name.c_str()))
            continue;
        clickOn({"a"}, name.c_str());
        ASSERT_EQ(shapesOf("a").size(), 1u) << name;
        const Points now = points(shapesOf("a")[0]);
        EXPECT_EQ(std::find(seen.begin(), seen.end(), now), seen.end()) << name;
        seen.push_back(now);
    }
    EXPECT_EQ(seen.size(), 35u);
    EXPECT_EQ(pythonText("cmds.ls(type='nurbsCurve')"), shapesOf("a")[0]);
    EXPECT_EQ(languageErrors(), 0);
}

TEST_F(ControlReplaceTest, NothingSelected) {
    clickOn({}, "btnShape03");
    EXPECT_EQ(transcript(),
              (Lines{"info: Changing Shapes", "info: Por favor, selecciona algún control NURBS.",
                     "info: Select just controls type NurbsCurves"}));
}

TEST_F(ControlReplaceTest, AForeignNodeAmongTheSelected) {
    makeCircle("a");
    python("cmds.joint(name='bone')");
    clickOn({"a", "bone"}, "btnShape03");
    EXPECT_EQ(transcript(),
              (Lines{"info: Changing Shapes", "info: Select just controls type NurbsCurves"}));
    EXPECT_EQ(shapesOf("a"), Lines{"aShape"});
}

TEST_F(ControlReplaceTest, ABareCurveShapeIsPassedOver) {
    makeCircle("a");
    clickOn({"aShape"}, "btnShape03");
    EXPECT_EQ(transcript(), Lines{"info: Changing Shapes"});
    EXPECT_EQ(shapesOf("a"), Lines{"aShape"});
}

}  // namespace torvel::test
