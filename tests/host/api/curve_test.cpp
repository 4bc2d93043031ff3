#include <maya/MDoubleArray.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>
#include <maya/MStringArray.h>

#include "host/api/api_scene.h"

namespace torvel::test {
namespace {

class CurveTest : public ApiTest {
  protected:
    MObject makeSquare(MFnNurbsCurve& fn, const MObject& parent = MObject::kNullObj,
                       unsigned int knotCount = 5, MStatus* status = nullptr) {
        MPointArray points;
        for (const double x : {-1.0, 1.0})
            points.append(x, 0, x), points.append(x, 0, -x);
        points.append(points[0]);
        MDoubleArray knots;
        for (unsigned int i = 0; i < knotCount; ++i)
            knots.append(i);
        return fn.create(points, knots, 1, MFnNurbsCurve::kOpen, false, false, parent, status);
    }
};

TEST_F(CurveTest, createWithoutParentGivesTheTransformAndAttachesToTheShape) {
    MFnNurbsCurve fn;
    const MObject made = makeSquare(fn);
    EXPECT_EQ(nameOf(made), "curve1");
    EXPECT_TRUE(made.hasFn(MFn::kTransform));
    EXPECT_EQ(text(fn.fullPathName()), "|curve1|curveShape1");
    EXPECT_EQ(fn.numCVs(), 5);
    EXPECT_EQ(fn.degree(), 1);
    EXPECT_EQ(fn.numSpans(), 4);
    EXPECT_EQ(fn.form(), MFnNurbsCurve::kOpen);
}

TEST_F(CurveTest, createBelowATransformGivesTheShape) {
    const MObject parent = make("transform", "holder");
    MFnNurbsCurve fn;
    const MObject made = makeSquare(fn, parent);
    EXPECT_EQ(made.apiType(), MFn::kNurbsCurve);
    EXPECT_TRUE(MFnDagNode(parent).hasChild(made));
}

TEST_F(CurveTest, aWrongKnotCountMakesNothing) {
    const std::size_t before = scene.scene().nodeCount();
    MFnNurbsCurve fn;
    MStatus status;
    EXPECT_TRUE(makeSquare(fn, MObject::kNullObj, 6, &status).isNull());
    EXPECT_EQ(status, MS::kInvalidParameter);
    EXPECT_EQ(scene.scene().nodeCount(), before);
}

TEST_F(CurveTest, pointsAreReadAndWrittenInBothSpaces) {
    MFnNurbsCurve made;
    makeSquare(made);
    scene.set("curve1.translate", 10, 0, 0);
    MFnNurbsCurve fn(path("curve1"));
    MPointArray points;
    EXPECT_TRUE(fn.getCVs(points, MSpace::kWorld));
    ASSERT_EQ(points.length(), 5u);
    EXPECT_TRUE(points[0].isEquivalent(MPoint(9, 0, -1)));
    EXPECT_TRUE(fn.getCVs(points));
    for (unsigned int i = 0; i < points.length(); ++i)
        points[i] *= 3.0;
    EXPECT_TRUE(fn.setCVs(points, MSpace::kObject));
    EXPECT_TRUE(fn.updateCurve());
    fn.getCVs(points);
    EXPECT_TRUE(points[0].isEquivalent(MPoint(-3, 0, -3)));
    points.setLength(2);
    EXPECT_FALSE(fn.setCVs(points));
    EXPECT_FALSE(made.getCVs(points, MSpace::kWorld)) << "an object has no path";
}

TEST_F(CurveTest, scalingTheElevenPointsOfALiveCircleLasts) {
    scene.call("circle", {}, {flag("n", {"ring"}), flag("nr", {1, 0, 0})});
    MFnNurbsCurve fn(path("ring"));
    MPointArray points;
    EXPECT_TRUE(fn.getCVs(points, MSpace::kObject));
    EXPECT_EQ(fn.numCVs(), 11);
    EXPECT_EQ(fn.numKnots(), 13);
    EXPECT_EQ(fn.form(), MFnNurbsCurve::kPeriodic);
    ASSERT_EQ(points.length(), 11u);
    for (unsigned int i = 0; i < points.length(); ++i)
        points[i] *= 5.0;
    EXPECT_TRUE(fn.setCVs(points, MSpace::kObject));
    EXPECT_TRUE(fn.updateCurve());
    EXPECT_TRUE(fn.getCVs(points));
    EXPECT_TRUE(points[1].isEquivalent(MPoint(0, 5.0 * 1.1081941875543879, 0), 1e-9));
    EXPECT_TRUE(points[9].isEquivalent(points[1]));
    scene.set("makeNurbCircle1.radius", 2);
    EXPECT_TRUE(fn.getCVs(points));
    EXPECT_TRUE(points[1].isEquivalent(MPoint(0, 6.0 * 1.1081941875543879, 0), 1e-9))
        << "5 - 1 + 2";
}

TEST_F(CurveTest, shapeNamesAreFreeInTheWholeScene) {
    MFnNurbsCurve fn;
    makeSquare(fn);
    scene.call("rename", {"curve1", "other"}, {flag("ignoreShape")});
    const MObject made = makeSquare(fn);
    EXPECT_EQ(nameOf(made), "curve1");
    EXPECT_EQ(text(fn.fullPathName()), "|curve1|curveShape2");
}

TEST_F(CurveTest, componentsAreAddedByName) {
    MFnNurbsCurve fn;
    makeSquare(fn);
    MSelectionList list;
    EXPECT_TRUE(list.add("curve1.cv[1:3]"));
    EXPECT_FALSE(list.add("curve1.cv[5]"));
    EXPECT_FALSE(list.add("curve1.vtx[0]"));
    ASSERT_EQ(list.length(), 1u);
    MStringArray names;
    list.getSelectionStrings(names);
    ASSERT_EQ(names.length(), 1u);
    EXPECT_EQ(text(names[0]), "curve1.cv[1:3]");
    MDagPath where;
    EXPECT_TRUE(list.getDagPath(0, where));
    EXPECT_TRUE(where.hasFn(MFn::kNurbsCurve));
}

}  // namespace
}  // namespace torvel::test
