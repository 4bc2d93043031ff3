#include <cmath>

#include <gtest/gtest.h>

#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

const double kReach = 1.1081941875543879;

class Curves : public testing::Test {
  protected:
    std::vector<double> cv(const std::string& name, bool world = false) {
        return numbersOf(
            scene.call("xform", {name}, {flag("q"), flag("t"), flag(world ? "ws" : "os")}));
    }
    std::string selected() { return scene.text("ls", {}, {flag("sl")}); }
    std::string shapeOf(const std::string& name) {
        return scene.text("listRelatives", {name}, {flag("s")});
    }
    RawFlag point(double x, double y, double z) { return flag("p", {x, y, z}); }

    TestScene scene;
};

TEST_F(Curves, CircleMakesTransformShapeAndMaker) {
    EXPECT_EQ(scene.text("circle"), "nurbsCircle1 makeNurbCircle1");
    EXPECT_EQ(shapeOf("nurbsCircle1"), "nurbsCircleShape1");
    EXPECT_EQ(selected(), "nurbsCircle1");
    EXPECT_EQ(scene.text("circle", {}, {flag("name", {"elbow_ctrl"}), flag("nr", {1, 0, 0})}),
              "elbow_ctrl makeNurbCircle2");
    EXPECT_EQ(shapeOf("elbow_ctrl"), "elbow_ctrlShape");
    expectNear(cv("elbow_ctrl.cv[7]"), {0, 0, -kReach}, 1e-12);
    EXPECT_EQ(scene.text("circle", {}, {flag("n", {"elbow_ctrl"})}), "elbow_ctrl1 makeNurbCircle3");
    EXPECT_EQ(scene.text("circle"), "nurbsCircle2 makeNurbCircle4");
}

TEST_F(Curves, CircleWithoutHistoryKeepsItsPoints) {
    EXPECT_EQ(scene.text("circle", {}, {flag("ch", {0}), flag("r", {3}), flag("c", {1, 0, 0})}),
              "nurbsCircle1");
    EXPECT_FALSE(scene.exists("makeNurbCircle1"));
    expectNear(cv("nurbsCircle1.cv[7]"), {1 + 3 * kReach, 0, 0}, 1e-12);
    EXPECT_EQ(scene.text("circle", {}, {flag("object", {0})}), "makeNurbCircle1");
    EXPECT_EQ(scene.text("ls", {}, {flag("type", {"nurbsCurve"})}), "nurbsCircleShape1");
}

TEST_F(Curves, CircleIsEditedAndQueriedThroughItsShape) {
    scene.call("circle", {}, {flag("n", {"ring"})});
    scene.call("circle", {"ring"}, {flag("e"), flag("r", {2}), flag("sw", {180}), flag("s", {4})});
    EXPECT_EQ(scene.call("circle", {"ringShape"}, {flag("q"), flag("radius")}).number(), 2.0);
    EXPECT_NEAR(scene.call("circle", {"ring"}, {flag("q"), flag("sweep")}).number(), 180.0, 1e-12);
    EXPECT_EQ(scene.number("ringShape.spans"), 4.0);
    EXPECT_EQ(scene.number("ringShape.form"), 0.0);
    expectNear(cv("ring.cv[0]"), {0, 2, 0}, 1e-12);
    expectNear(cv("ring.cv[6]"), {0, -2, 0}, 1e-12);
    EXPECT_EQ(scene.error("circle", {}, {flag("d", {2})}),
              "circle: The degree of a circle is 1 or 3.");
    EXPECT_EQ(scene.error("circle", {}, {flag("s", {2})}),
              "circle: A full circle needs at least 3 sections.");
    EXPECT_EQ(scene.error("circle", {}, {flag("colour", {2})}), "Invalid flag '-colour'.");
}

TEST_F(Curves, CurveNamesItsTransformAlone) {
    EXPECT_EQ(
        scene.text("curve", {},
                   {flag("d", {1}), flag("n", {"curveTemp"}), point(0, 0, 0), point(1, 2, 3)}),
        "curveTemp");
    EXPECT_EQ(shapeOf("curveTemp"), "curveShape1");
    EXPECT_EQ(
        scene.text("curve", {},
                   {flag("d", {1}), flag("n", {"curveTemp"}), point(0, 0, 0), point(1, 2, 3)}),
        "curveTemp1");
    EXPECT_EQ(shapeOf("curveTemp1"), "curveShape2");
    EXPECT_EQ(selected(), "curveTemp1");
    EXPECT_EQ(scene.text("curve", {}, {flag("d", {1}), point(0, 0, 0), point(1, 2, 3)}), "curve1");
    EXPECT_EQ(shapeOf("curve1"), "curveShape3") << "1 and 2 are taken";
    EXPECT_EQ(scene.number("curveShape2.spans"), 1.0);
    EXPECT_EQ(scene.number("curveShape2.degree"), 1.0);
}

TEST_F(Curves, WrongKnotsMakeNothing) {
    const auto refused = [&](TestScene::Flags flags) { return scene.error("curve", {}, flags); };
    EXPECT_EQ(refused({flag("d", {1}), flag("k", {0}), point(0, 0, 0), point(1, 0, 0)}),
              "curve: 2 points of degree 1 need 2 knots, not 1.");
    EXPECT_EQ(refused({point(0, 0, 0), point(1, 0, 0), point(2, 0, 0)}),
              "curve: A curve of degree 3 needs at least 4 points, not 3.");
    EXPECT_EQ(refused({flag("d", {1})}), "curve: Needs points (-point).");
    EXPECT_EQ(
        refused({flag("per", {1}), point(0, 0, 0), point(1, 0, 0), point(2, 0, 0), point(0, 0, 0)}),
        "curve: A periodic curve needs its knots (-knot).");
    EXPECT_EQ(
        refused({flag("d", {1}), flag("per", {1}), point(0, 0, 0), point(1, 0, 0), point(2, 0, 0)}),
        "curve: The last 1 points of a periodic curve must repeat its first ones.");
    EXPECT_EQ(scene.text("ls", {}, {flag("type", {"nurbsCurve"})}), "");
}

TEST_F(Curves, PeriodicCurvesCountTheirOwnPoints) {
    TestScene::Flags flags{flag("d", {2}), flag("per", {1})};
    for (const V3d& p :
         {V3d(0, 0, 0), V3d(2, 0, 0), V3d(2, 2, 0), V3d(0, 2, 0), V3d(0, 0, 0), V3d(2, 0, 0)})
        flags.push_back(point(p.x, p.y, p.z));
    for (int i = -1; i < 6; ++i)
        flags.push_back(flag("k", {i}));
    const std::string made = scene.text("curve", {}, flags);
    EXPECT_EQ(scene.number("curveShape1.form"), 2.0);
    scene.call("select", {made + ".cv[*]"});
    EXPECT_EQ(selected(), "curve1.cv[0:3]");
    scene.call("move", {1, 0, 0, "curve1.cv[0]"}, {flag("r")});
    EXPECT_NEAR(scene.call("pointOnCurve", {made}, {flag("pr", {4})}).list()[0].number(), 1.5,
                1e-12);
}

TEST_F(Curves, AppendedPointsLengthenTheCurve) {
    scene.call("curve", {}, {point(0, 0, 0), point(1, 0, 0), point(2, 0, 0), point(3, 0, 0)});
    EXPECT_NEAR(scene.call("arclen", {"curve1"}).number(), 3.0, 1e-9);
    scene.call("move", {0, 5, 0, "curve1"});
    EXPECT_EQ(
        scene.text("curve", {"curve1"}, {flag("a"), flag("ws"), point(4, 5, 0), point(6, 5, 0)}),
        "curve1");
    EXPECT_NEAR(scene.call("arclen", {"curve1"}).number(), 6.0, 1e-9);
    EXPECT_EQ(scene.number("curveShape1.spans"), 3.0);
    expectNear(cv("curve1.cv[5]"), {6, 0, 0}, 1e-12);
    scene.call("curve", {"curve1"}, {flag("r"), flag("d", {1}), point(0, 0, 0), point(0, 0, 9)});
    EXPECT_NEAR(scene.call("arclen", {"curve1"}).number(), 9.0, 1e-12);
}

TEST_F(Curves, ComponentsAreNamedAfterTheTransform) {
    scene.call("circle", {}, {flag("n", {"ring"})});
    scene.call("select", {"ringShape.cv[*]"});
    EXPECT_EQ(selected(), "ring.cv[0:7]");
    EXPECT_EQ(scene.text("ls", {}, {flag("sl"), flag("o")}), "ringShape");
    scene.call("select", {"ring.cv[3]"}, {flag("add")});
    EXPECT_EQ(selected(), "ring.cv[0:7] ring.cv[3]");
    scene.call("select", {"ring.cv[6:40]"});
    EXPECT_EQ(scene.text("ls", {}, {flag("sl"), flag("fl")}), "ring.cv[6] ring.cv[7]");
    scene.call("hilite", {"ring"});
    EXPECT_EQ(scene.text("ls", {}, {flag("hl")}), "ring");
    EXPECT_EQ(scene.error("select", {"ring.cv[8]"}), "No object matches name: ring.cv[8]");
    EXPECT_EQ(scene.error("select", {"ring.vtx[0]"}), "No object matches name: ring.vtx[0]");
}

TEST_F(Curves, SelectedPointsTurnAboutTheirObject) {
    scene.call("circle", {}, {flag("n", {"ring"}), flag("nr", {1, 0, 0})});
    scene.call("move", {10, 0, 0, "ring"});
    scene.call("select", {"ring"});
    scene.call("selectMode", {}, {flag("component")});
    EXPECT_EQ(selected(), "");
    scene.call("select", {"ringShape.cv[*]"});
    scene.call("rotate", {90, 0, 0});
    scene.call("selectMode", {}, {flag("object")});
    EXPECT_EQ(selected(), "ring");
    expectNear(cv("ring.cv[1]", true), {10, 0, kReach}, 1e-12);
    expectNear(cv("ring.cv[1]"), {0, 0, kReach}, 1e-12);
    scene.call("scale", {2, 2, 2, "ring.cv[*]"});
    expectNear(cv("ring.cv[1]"), {0, 0, 2 * kReach}, 1e-12);
    scene.set("makeNurbCircle1.radius", 2);  // the history adds, what was moved stays
    expectNear(cv("ring.cv[1]"), {0, kReach, 2 * kReach}, 1e-12);
}

TEST_F(Curves, AShapeMovesToAnotherTransformWithItsHistory) {
    scene.call("circle", {}, {flag("n", {"control"})});
    scene.call("move", {3, 0, 0, "control"});
    scene.call("circle", {}, {flag("nr", {1, 0, 0})});
    scene.call("delete", {"controlShape"});
    EXPECT_FALSE(scene.exists("makeNurbCircle1"));
    scene.call("parent", {"nurbsCircleShape1", "control"}, {flag("r"), flag("s")});
    scene.call("delete", {"nurbsCircle1"});
    EXPECT_EQ(shapeOf("control"), "nurbsCircleShape1");
    EXPECT_TRUE(scene.exists("makeNurbCircle2"));
    expectNear(cv("control.cv[1]", true), {3, kReach, 0}, 1e-12);
    scene.set("makeNurbCircle2.radius", 2);
    expectNear(cv("control.cv[1]"), {0, 2 * kReach, 0}, 1e-12);
    scene.call("delete", {"control"}, {flag("ch")});
    EXPECT_FALSE(scene.exists("makeNurbCircle2"));
    expectNear(cv("control.cv[1]"), {0, 2 * kReach, 0}, 1e-12);
}

TEST_F(Curves, AShapeOutlivesItsMaker) {
    for (const bool cut : {false, true}) {
        const std::string ring = cut ? "cut" : "deleted", maker = "makeNurbCircle1";
        scene.call("circle", {}, {flag("n", {ring}), flag("r", {2})});
        scene.call("scale", {2, 2, 2, ring + ".cv[*]"});
        if (cut)
            scene.call("disconnectAttr", {maker + ".outputCurve", ring + "Shape.create"});
        else
            scene.call("delete", {maker});
        expectNear(cv(ring + ".cv[7]"), {4 * kReach, 0, 0}, 1e-12);
        EXPECT_EQ(scene.number(ring + "Shape.tweak"), 0.0);
        scene.call("scale", {0.5, 0.5, 0.5, ring + ".cv[7]"});
        expectNear(cv(ring + ".cv[7]"), {2 * kReach, 0, 0}, 1e-12);
    }
}

TEST_F(Curves, PointsAreReadAndSetLikeAttributes) {
    scene.call("circle", {}, {flag("n", {"ring"}), flag("r", {2})});
    EXPECT_EQ(scene.call("getAttr", {"ring.cv[*]"}).list().size(), 8u);
    expectNear(scene.call("getAttr", {"ring.cv[7]"}).tuple().items, {2 * kReach, 0, 0}, 1e-12);
    scene.call("setAttr", {"ring.cv[7]", 5, 6, 7});
    expectNear(cv("ring.cv[7]"), {5, 6, 7}, 1e-12);
    scene.call("setAttr", {"ringShape.cv[0:1]", 1, 0, 0, 0, 1, 0});
    expectNear(cv("ring.cv[1]"), {0, 1, 0}, 1e-12);
    EXPECT_EQ(scene.error("setAttr", {"ring.cv[7]", 5}),
              "setAttr: Each point needs three numbers.");
    EXPECT_EQ(scene.error("setAttr", {"ring.cv[8]", 5, 6, 7}),
              "setAttr: No object matches name: ring.cv[8]");
}

TEST_F(Curves, TheParameterRangeIsThatOfTheKnots) {
    scene.call("curve", {},
               {flag("d", {1}), flag("k", {6}), flag("k", {8}), flag("k", {11}), point(0, 0, 0),
                point(1, 0, 0), point(2, 0, 0)});
    EXPECT_EQ(scene.number("curveShape1.minValue"), 6.0);
    EXPECT_EQ(scene.number("curveShape1.maxValue"), 11.0);
    scene.call("circle", {}, {flag("s", {12}), flag("n", {"ring"})});
    EXPECT_EQ(scene.number("ringShape.maxValue"), 12.0);
    scene.set("makeNurbCircle1.sections", 6);
    EXPECT_EQ(scene.number("ringShape.maxValue"), 6.0);
}

TEST_F(Curves, RenamingATransformRenamesItsShape) {
    scene.call("circle");
    EXPECT_EQ(scene.text("rename", {"nurbsCircle1", "ball"}), "ball");
    EXPECT_EQ(shapeOf("ball"), "ballShape");
    scene.call("circle");
    scene.call("rename", {"nurbsCircle1", "leg3"});
    EXPECT_EQ(shapeOf("leg3"), "legShape3");
    scene.call("curve", {}, {flag("d", {1}), flag("n", {"plain"}), point(0, 0, 0), point(1, 0, 0)});
    scene.call("rename", {"plain", "fancy"});
    EXPECT_EQ(shapeOf("fancy"), "curveShape1");
}

TEST_F(Curves, BoxesOfInstancesStandWhereTheyAre) {
    scene.call("polyCube", {}, {flag("n", {"box"})});
    scene.make("transform", "above");
    scene.make("transform", "other", "above");
    scene.call("parent", {"boxShape", "other"}, {flag("addObject"), flag("shape")});
    scene.set("above.translateY", 3);
    scene.set("other.translateX", 7);
    const auto boxOf = [this](const char* name) {
        return numbersOf(scene.call("exactWorldBoundingBox", {name}));
    };
    expectNear(boxOf("box"), {-0.5, -0.5, -0.5, 0.5, 0.5, 0.5});
    expectNear(boxOf("other"), {6.5, 2.5, -0.5, 7.5, 3.5, 0.5});
    expectNear(boxOf("above"), {6.5, 2.5, -0.5, 7.5, 3.5, 0.5});
}

TEST_F(Curves, BoxesGoAroundPointsOrTheCurve) {
    scene.call("circle", {}, {flag("n", {"ring"})});
    scene.call("move", {1, 0, 0, "ring"});
    expectNear(numbersOf(scene.call("exactWorldBoundingBox", {"ring"})),
               {1 - kReach, -kReach, 0, 1 + kReach, kReach, 0}, 1e-12);
    expectNear(numbersOf(scene.call("exactWorldBoundingBox", {"ring"}, {flag("ce")})),
               {0, -1, 0, 2, 1, 0}, 1e-12);
    expectNear(numbersOf(scene.call("xform", {"ring"}, {flag("q"), flag("bb"), flag("ws")})),
               {1 - kReach, -kReach, 0, 1 + kReach, kReach, 0}, 1e-12);
    scene.call("polyCube", {}, {flag("n", {"box"})});
    expectNear(numbersOf(scene.call("exactWorldBoundingBox", {"box", "ring"}, {flag("ce")})),
               {-0.5, -1, -0.5, 2, 1, 0.5}, 1e-7);
    EXPECT_EQ(scene.call("polyEvaluate", {"box"}, {flag("v")}).number(), 8);
    EXPECT_EQ(scene.call("polyEvaluate", {"box"}, {flag("e")}).number(), 12);
    EXPECT_EQ(scene.call("polyEvaluate", {"box"}, {flag("t")}).number(), 12);
    EXPECT_NEAR(scene.call("polyEvaluate", {"box"}, {flag("wa")}).number(), 6.0, 1e-6);
    expectNear(numbersOf(scene.call("pointPosition", {"ring.cv[7]"})), {1 + kReach, 0, 0}, 1e-12);
}

}  // namespace
