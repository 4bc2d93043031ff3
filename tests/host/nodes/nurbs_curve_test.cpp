#include "nodes/shape/nurbs_curve.h"

#include <cmath>

#include "host/nodes/node_scene.h"
#include "nodes/shape/make_nurb_circle.h"
#include "nodes/shape/nurbs_curve_math.h"

namespace torvel::test {
namespace {

const double kReach = 1.1081941875543879;  // 3 / (2 + cos 45)
const double kCorner = kReach / std::sqrt(2.0);

NurbsCurveData curve(int degree, std::vector<V3d> cvs, std::vector<double> knots = {},
                     int form = 0) {
    NurbsCurveData data;
    data.degree = degree;
    data.form = form;
    data.spans = static_cast<int>(cvs.size()) - degree;
    data.knots = knots.empty() ? clampedKnots(cvs.size(), degree) : std::move(knots);
    data.cvs = std::move(cvs);
    return data;
}

NurbsCurveData circle(const V3d& normal, double radius = 1.0, int sections = 8,
                      double sweep = 2.0 * kPi, int degree = 3) {
    CircleForm form;
    form.normal = normal;
    form.radius = radius;
    form.sections = sections;
    form.sweep = sweep;
    form.degree = degree;
    return *circleCurve(form);
}

TEST(NurbsCurve, ABezierSpanIsItsPolynomial) {
    const NurbsCurveData bezier = curve(3, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}});
    const CurvePoint middle = curveAt(bezier, 0.5);
    expectNear(middle.position, V3d(0.5, 0.75, 0));
    expectNear(middle.tangent, V3d(1.5, 0, 0));
    expectNear(curveAt(bezier, 0.0).tangent, V3d(0, 3, 0));
    expectNear(curveAt(bezier, 1.0).tangent, V3d(0, -3, 0));
    expectNear(curveAt(bezier, 7.0).position, V3d(1, 0, 0));  // outside: the nearer end
    expectNear(curveAt(bezier, -1.0).position, V3d(0, 0, 0));
}

TEST(NurbsCurve, KnotsNeedNotStartAtNullNorBeEven) {
    const NurbsCurveData line = curve(1, {{0, 0, 0}, {4, 0, 0}, {4, 3, 0}}, {6, 10, 13});
    EXPECT_EQ(firstParameter(line), 6.0);
    EXPECT_EQ(lastParameter(line), 13.0);
    expectNear(curveAt(line, 8.0).position, V3d(2, 0, 0));
    expectNear(curveAt(line, 8.0).tangent, V3d(1, 0, 0));
    expectNear(curveAt(line, 11.0).position, V3d(4, 1, 0));
    EXPECT_NEAR(curveLength(line), 7.0, 1e-12);
    EXPECT_NEAR(curveLength(line, 9.0, 12.0), 3.0, 1e-12);
}

TEST(NurbsCurve, KnotsBeyondTheEndsBoundTheCurveByDegree) {
    // Equal steps -1/8 .. 9/8: the curve runs from 0 to 1 and a straight row of points keeps its
    // spacing.
    std::vector<double> knots;
    std::vector<V3d> points;
    for (int i = -2; i <= 18; ++i)
        knots.push_back(i / 16.0);
    for (int i = 0; i < 19; ++i)
        points.emplace_back(i, 0, 0);
    const NurbsCurveData even = curve(3, points, knots);
    EXPECT_TRUE(curveFault(even).empty());
    EXPECT_EQ(firstParameter(even), 0.0);
    EXPECT_EQ(lastParameter(even), 1.0);
    expectNear(curveAt(even, 0.0).position, V3d(1, 0, 0));
    expectNear(curveAt(even, 0.25).position, V3d(5, 0, 0));
    expectNear(curveAt(even, 1.0).position, V3d(17, 0, 0));
    EXPECT_NEAR(curveLength(even), 16.0, 1e-9);
}

TEST(NurbsCurve, WeightsMakeAQuarterCircle) {
    NurbsCurveData arc = curve(2, {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}});
    arc.rational = true;
    arc.weights = {1.0, std::sqrt(0.5), 1.0};
    for (double u : {0.0, 0.2, 0.5, 0.9, 1.0}) {
        const CurvePoint point = curveAt(arc, u);
        EXPECT_NEAR(point.position.length(), 1.0, 1e-12);
        EXPECT_NEAR(point.position ^ point.tangent, 0.0, 1e-12);
    }
    EXPECT_NEAR(curveLength(arc), kPi / 2.0, 1e-9);
}

TEST(NurbsCurve, FaultsAreNamed) {
    EXPECT_EQ(curveFault(curve(3, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, {0, 1, 2})),
              "A curve of degree 3 needs at least 4 points, not 3.");
    EXPECT_EQ(curveFault(curve(1, {{0, 0, 0}, {1, 0, 0}}, {0, 1, 2})),
              "2 points of degree 1 need 2 knots, not 3.");
    EXPECT_EQ(curveFault(curve(1, {{0, 0, 0}, {1, 0, 0}}, {1, 0})), "Knots must not descend.");
    EXPECT_EQ(clampedKnots(5, 3), (std::vector<double>{0, 0, 0, 1, 2, 2, 2}));
    EXPECT_EQ(clampedKnots(3, 1), (std::vector<double>{0, 1, 2}));
}

TEST(NurbsCurve, TheDefaultCircleHasElevenPoints) {
    const NurbsCurveData ring = circle({0, 0, 1});
    ASSERT_EQ(ring.cvs.size(), 11u);
    EXPECT_EQ(ring.spans, 8);
    EXPECT_EQ(ring.form, 2);
    EXPECT_EQ(ring.knots, (std::vector<double>{-2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    expectNear(ring.cvs[0], V3d(kCorner, kCorner, 0));
    expectNear(ring.cvs[1], V3d(0, kReach, 0));
    expectNear(ring.cvs[3], V3d(-kReach, 0, 0));
    expectNear(ring.cvs[5], V3d(0, -kReach, 0));
    expectNear(ring.cvs[7], V3d(kReach, 0, 0));
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(ring.cvs[8 + i], ring.cvs[i]);
}

TEST(NurbsCurve, TheNormalTurnsTheCircle) {
    const NurbsCurveData y = circle({0, 1, 0}), x = circle({5, 0, 0}), none = circle({0, 0, 0});
    expectNear(y.cvs[0], V3d(kCorner, 0, -kCorner));
    expectNear(y.cvs[1], V3d(0, 0, -kReach));
    expectNear(y.cvs[7], V3d(kReach, 0, 0));
    expectNear(x.cvs[0], V3d(0, kCorner, -kCorner));
    expectNear(x.cvs[1], V3d(0, kReach, 0));
    expectNear(x.cvs[7], V3d(0, 0, -kReach));
    expectNear(none.cvs[7], V3d(kReach, 0, 0));
    const V3d oblique(1, 2, -3);
    for (const V3d& normal : {oblique, V3d(0, 0, -1)})
        for (const V3d& cv : circle(normal).cvs) {
            EXPECT_NEAR(cv ^ normal, 0.0, 1e-12);
            EXPECT_GT(cv.length(), 1.0);
        }
}

TEST(NurbsCurve, CirclesRunThroughTheirSections) {
    for (int sections : {3, 4, 8, 20}) {
        const NurbsCurveData ring = circle({0, 0, 1}, 2.5, sections);
        for (int i = 0; i <= sections; ++i) {
            const double angle = kPi / 2.0 + 2.0 * kPi * i / sections;
            expectNear(curveAt(ring, i).position, V3d(std::cos(angle), std::sin(angle), 0) * 2.5,
                       1e-12);
        }
        expectNear(curveAt(ring, sections + 1.0).position, curveAt(ring, 1.0).position,
                   1e-12);  // wraps
    }
    EXPECT_NEAR(curveLength(circle({0, 0, 1}, 1.0, 64)), 2.0 * kPi, 1e-6);
    const NurbsCurveData square = circle({0, 0, 1}, 1.0, 4, 2.0 * kPi, 1);
    EXPECT_EQ(square.cvs.size(), 5u);
    EXPECT_NEAR(curveLength(square), 4.0 * std::sqrt(2.0), 1e-12);
}

TEST(NurbsCurve, ArcsAreOpenAndTouchTheCircleAtTheirKnots) {
    for (int sections : {1, 2, 3, 6}) {
        const NurbsCurveData arc = circle({0, 0, 1}, 3.0, sections, kPi);
        EXPECT_EQ(arc.form, 0);
        EXPECT_EQ(arc.spans, sections);
        EXPECT_TRUE(curveFault(arc).empty());
        for (int i = 0; i <= sections; ++i) {
            const double angle = kPi / 2.0 + kPi * i / sections;
            expectNear(curveAt(arc, i).position, V3d(std::cos(angle), std::sin(angle), 0) * 3.0,
                       1e-12);
        }
        EXPECT_NEAR(curveAt(arc, 0.0).tangent.normalized() ^ V3d(-1, 0, 0), 1.0, 1e-12);
    }
}

TEST(NurbsCurve, APolylineHasAllStepsAndBothEnds) {
    EXPECT_EQ(curvePolyline(circle({0, 0, 1}), 4).size(), 33u);
    EXPECT_EQ(curvePolyline(curve(1, {{0, 0, 0}, {1, 0, 0}})).size(), 2u);
}

class CurveShape : public NodeScene {
  protected:
    CurveShape() {
        transform = make("transform", "ring");
        shape = make("nurbsCurve", "ringShape", transform);
        maker = make("makeNurbCircle", "maker");
        link(maker, "outputCurve", shape, "create");
    }
    NodeHandle transform, shape, maker;
};

TEST_F(CurveShape, FollowsItsMaker) {
    set(maker, "radius", 2.0);
    expectNear(curveOf(scene, shape)->cvs[7], V3d(2.0 * kReach, 0, 0));
    set(maker, "sections", 12);
    EXPECT_EQ(scene.number(plug(shape, "spans")), 12.0);
    EXPECT_EQ(scene.number(plug(shape, "form")), 2.0);
    set(maker, "center", 0, 0, 4);
    EXPECT_NEAR(curveOf(scene, shape)->cvs[3].z, 4.0, 1e-12);
}

TEST_F(CurveShape, MovedPointsStayMovedWhenTheMakerChanges) {
    std::vector<V3d> points = curveOf(scene, shape)->cvs;
    for (V3d& point : points)
        point *= 5.0;
    ASSERT_TRUE(setCurvePoints(scene, shape, points));
    expectNear(curveOf(scene, shape)->cvs[7], V3d(5.0 * kReach, 0, 0));
    expectNear(get(shape, "controlPoints[7]"), V3d(4.0 * kReach, 0, 0));
    EXPECT_EQ(scene.number(plug(shape, "tweak")), 1.0);
    ASSERT_TRUE(setCurvePoints(scene, shape, points));  // the same points once more add nothing
    expectNear(get(shape, "controlPoints[7]"), V3d(4.0 * kReach, 0, 0));
    set(maker, "radius", 2.0);
    expectNear(curveOf(scene, shape)->cvs[7], V3d(6.0 * kReach, 0, 0));
}

}  // namespace
}  // namespace torvel::test
