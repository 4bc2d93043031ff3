// Every control shape against its row: degree, points, knots, extent, names.

#include <algorithm>
#include <cmath>
#include <map>
#include <regex>

#include <maya/MFnDagNode.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MString.h>

#include "control/shape_routines.h"
#include "plugin/fixtures/control_scene.h"

namespace torvel::test {

namespace {

struct Range {
    double low, high;
};

struct ShapeRow {
    int number;
    MObject (*routine)();
    int degree, count;
    Range knots;  // first and last
    bool chord;   // knots by the distance of the points instead of even ones
    Range extent[3];
};

constexpr Range kZero{0, 0};

constexpr Range even(int count) {
    return {0, count - 1.0};
}

const ShapeRow kRows[] = {
    {2, createShape02, 1, 17, even(17), false, {{-5, 5}, {-5, 5}, {-5, 5}}},
    {3, createShape03, 1, 8, even(8), false, {{-2, 1}, {-1, 1}, {-1, 1}}},
    {4, createShape04, 1, 11, even(11), false, {{-4, 4}, kZero, {-2, 2}}},
    {5, createShape05, 1, 44, even(44), false, {{-3, 3}, {-0.593, 0.593}, {-3, 3.593}}},
    {6, createShape06, 1, 32, even(32), false, {{-3.972, 3.972}, {1.242, 3.664}, {-0.239, 0.239}}},
    {7, createShape07, 1, 24, even(24), false, {{-3.813, 3.813}, {-0.5, 0.5}, {-0.5, 0.5}}},
    {8, createShape08, 1, 56, even(56), false, {{-0.934, 0.934}, {0.297, 2.209}, {-1.994, 1.994}}},
    {9, createShape09, 1, 8, even(8), false, {{-2, 2}, {-2, 2}, {-2, 2}}},
    {10, createShape10, 1, 53, even(53), false, {{-1, 1}, {-1, 1}, {-1, 1}}},
    {12, createShape12, 1, 42, even(42), false, {{-0.846, 0.846}, kZero, {-2.12, 2.183}}},
    {13, createShape13, 1, 25, even(25), false, {{-4.5, 4.5}, kZero, {-4.5, 4.5}}},
    {14, createShape14, 1, 91, even(91), false, {{-2.514, 2.514}, {0, 2.514}, {-2.514, 2.514}}},
    {15,
     createShape15,
     1,
     73,
     {0, 133.995},
     true,
     {{-2.613, 2.613}, {0.046, 2.434}, {-2.613, 2.613}}},
    {16, createShape16, 1, 41, even(41), false, {{-1.473, 1.473}, {0, 2.434}, {-2.613, 2.613}}},
    {17, createShape17, 1, 13, {0, 51.2}, true, {{-2.56, 2.56}, {-2.56, 2.56}, kZero}},
    {18, createShape18, 1, 13, even(13), false, {{-3, 3}, kZero, {-3, 3}}},
    {19, createShape19, 1, 38, {0, 236.793}, true, {{-2, 2}, {0, 5.6}, {-2, 2}}},
    {20, createShape20, 1, 38, {0, 236.793}, true, {{-2, 2}, {0, 5.6}, {-2, 2}}},
    {21, createShape21, 1, 30, {0, 70.935}, true, {{-0.8, 0.8}, {0, 7.2}, kZero}},
    {22, createShape22, 1, 30, {0, 70.935}, true, {{-0.8, 0.8}, {-0.8, 6.4}, kZero}},
    {23, createShape23, 1, 25, even(25), false, {{-2, 2}, kZero, {-2, 2}}},
    {26, createShape26, 1, 13, {0, 74.912}, true, {{-0.8, 0.8}, {0, 3.2}, {-0.8, 0.8}}},
    {27, createShape27, 1, 42, {0, 86.186}, true, {{-4.047, 3.2}, kZero, {-3.2, 3.2}}},
    {29, createShape29, 1, 11, {6, 16}, false, {{-2.086, 2.086}, kZero, {-2.828, 2.828}}},
    {32, createShape32, 1, 77, even(77), false, {{-4, 4}, kZero, {-4, 4}}},
    {34, createShape34, 3, 19, {-0.125, 1.125}, false, {kZero, {0.846, 2.567}, {-2.567, 2.567}}},
    {35, createShape35, 1, 8, even(8), false, {kZero, {0, 4.8}, {-2.4, 2.4}}},
    {36, createShape36, 3, 19, {-0.125, 1.125}, false, {kZero, {-2.206, 2.206}, {-3.903, 3.903}}},
    {38, createShape38, 1, 49, even(49), false, {{-5.6, 5.6}, kZero, {-5.6, 5.6}}},
    {39, createShape39, 1, 16, even(16), false, {{-4, 4}, kZero, {-3.804, 3.804}}},
    {40, createShape40, 1, 31, even(31), false, {{-0.8, 0.8}, {0, 7.2}, kZero}},
    {42, createShape42, 1, 56, {0, 117.138}, true, {{-1.49, 1.49}, {0, 4.421}, {-1.49, 1.49}}},
    {43, createShape43, 1, 7, even(7), false, {{-0.7, 0.7}, {0, 7}, kZero}},
    {46, createShape46, 1, 5, even(5), false, {kZero, {-1, 1}, {-1, 1}}},
};

bool byScript(const ShapeRow& row) {
    return row.number != 9 && row.number != 46;
}

std::string nameOf(const MObject& node) {
    return MFnDagNode(node).name().asChar();
}

void expectEvenKnots(const ShapeRow& row, const std::vector<double>& knots) {
    const double step = (row.knots.high - row.knots.low) / (knots.size() - 1.0);
    for (std::size_t i = 0; i < knots.size(); ++i)
        EXPECT_NEAR(knots[i], row.knots.low + step * i, 1e-12) << "knot " << i;
}

// Each span as long as its chord, in one proportion for the whole curve.
void expectChordKnots(const std::vector<double>& knots, const Points& points) {
    double length = 0;
    std::vector<double> chords{0.0};
    for (std::size_t i = 1; i < points.size(); ++i) {
        length += std::hypot(points[i][0] - points[i - 1][0], points[i][1] - points[i - 1][1],
                             points[i][2] - points[i - 1][2]);
        chords.push_back(length);
    }
    for (std::size_t i = 0; i < knots.size(); ++i)
        EXPECT_NEAR(knots[i], chords[i] * knots.back() / length, 2e-4) << "knot " << i;
}

Range extentOf(const Points& points, int axis) {
    Range range{points[0][axis], points[0][axis]};
    for (const std::vector<double>& point : points) {
        range.low = std::min(range.low, point[axis]);
        range.high = std::max(range.high, point[axis]);
    }
    return range;
}

void expectExtent(const Points& points, const Range (&wanted)[3]) {
    for (int axis = 0; axis < 3; ++axis) {
        const Range range = extentOf(points, axis);
        EXPECT_NEAR(range.low, wanted[axis].low, 1e-3) << "axis " << axis;
        EXPECT_NEAR(range.high, wanted[axis].high, 1e-3) << "axis " << axis;
    }
}

// Whether every point has its mirror image among the points.
bool standsMirrored(const Points& points, int axis) {
    return std::all_of(points.begin(), points.end(), [&](std::vector<double> image) {
        image[axis] = -image[axis];
        return std::any_of(points.begin(), points.end(), [&](const std::vector<double>& point) {
            return std::hypot(point[0] - image[0], point[1] - image[1], point[2] - image[2]) < 4e-6;
        });
    });
}

}  // namespace

using ControlShapeTest = ControlScene;

TEST_F(ControlShapeTest, EveryRow) {
    for (const ShapeRow& row : kRows) {
        SCOPED_TRACE("shape " + std::to_string(row.number));
        const MObject made = row.routine();
        ASSERT_FALSE(made.isNull());
        ASSERT_TRUE(made.hasFn(MFn::kTransform));
        const std::string name = nameOf(made);
        EXPECT_EQ(name, row.number == 36 ? "eyesCtrl" : byScript(row) ? "curveTemp" : "curve1");
        EXPECT_EQ(MFnDagNode(made).fullPathName(), MString(("|" + name).c_str()));

        const Lines shapes = shapesOf(name);
        ASSERT_EQ(shapes.size(), 1u);
        MFnNurbsCurve curve(object(shapes[0]));
        EXPECT_EQ(curve.degree(), row.degree);
        EXPECT_EQ(curve.numCVs(), row.count);
        EXPECT_EQ(curve.form(), MFnNurbsCurve::kOpen);
        const Points all = points(shapes[0]);
        const std::vector<double> values = knots(shapes[0]);
        ASSERT_EQ(values.size(), all.size() + row.degree - 1);
        EXPECT_NEAR(values.front(), row.knots.low, 1e-12);
        EXPECT_NEAR(values.back(), row.knots.high, 1e-12);
        if (row.chord)
            expectChordKnots(values, all);
        else
            expectEvenKnots(row, values);
        expectExtent(all, row.extent);
        python("cmds.delete('" + name + "')");
    }
}

TEST_F(ControlShapeTest, NoShapeHasALineOfNoLength) {
    for (const ShapeRow& row : kRows) {
        const std::string name = nameOf(row.routine());
        const Points all = points(shapesOf(name).at(0));
        for (std::size_t i = 1; i < all.size(); ++i)
            EXPECT_NE(all[i], all[i - 1]) << "shape " << row.number << " point " << i;
        python("cmds.delete('" + name + "')");
    }
}

// Letters of the axes whose sign can be turned without changing the set of points.
TEST_F(ControlShapeTest, FormsThatLookAlikeFromBothSides) {
    const std::map<int, std::string> mirrors = {
        {2, "xyz"}, {4, "xz"},  {6, "xz"},  {7, "xyz"}, {8, "xz"},  {10, "xyz"},
        {12, "x"},  {13, "xz"}, {14, "xz"}, {15, "xz"}, {16, "xz"}, {17, "xy"},
        {18, "xz"}, {21, "x"},  {22, "x"},  {23, "xz"}, {26, "xz"}, {27, "z"},
        {29, "z"},  {32, "xz"}, {34, "z"},  {35, "z"},  {36, "yz"}, {38, "xz"},
        {39, "xz"}, {40, "x"},  {42, "xz"}, {43, "x"},  {46, "yz"}};
    for (const ShapeRow& row : kRows) {
        const auto found = mirrors.find(row.number);
        const std::string name = nameOf(row.routine());
        const Points all = points(shapesOf(name).at(0));
        for (char axis : found == mirrors.end() ? std::string() : found->second)
            EXPECT_TRUE(standsMirrored(all, axis - 'x')) << row.number << " along " << axis;
        python("cmds.delete('" + name + "')");
    }
}

TEST_F(ControlShapeTest, TheTextsKeepToTheirTemplate) {
    const std::string numbers = "-?[0-9.]+(e-?[0-9]+)?";
    const std::string point = "\\(" + numbers + "," + numbers + "," + numbers + "\\)";
    const std::string list =
        "knot=\\[" + numbers + "(," + numbers + ")*\\], point=\\[" + point + "(," + point + ")*\\]";
    const std::regex single("python string: curveName = cmds\\.curve\\(degree=[13], " + list +
                            ", n='curveTemp'\\); curveName");
    for (const ShapeRow& row : kRows) {
        forget();
        row.routine();
        if (!byScript(row)) {
            EXPECT_EQ(transcript(), Lines{}) << row.number;
        } else if (row.number != 36) {
            ASSERT_EQ(transcript().size(), 1u) << row.number;
            EXPECT_TRUE(std::regex_match(transcript()[0], single)) << transcript()[0];
        }
    }
}

TEST_F(ControlShapeTest, TheGivenTexts) {
    const struct {
        MObject (*routine)();
        const char* text;
    } given[] = {
        {createShape01, "curveName = cmds.circle(nr=(1,0,0))[0]; curveName"},
        {createShape03,
         "curveName = cmds.curve(degree=1, knot=[0,1,2,3,4,5,6,7], "
         "point=[(-2,0,0),(1,0,1),(1,0,-1),(-2,0,0),(1,1,0),(1,0,0),(1,-1,0),(-2,0,0)], "
         "n='curveTemp'); curveName"},
        {createShape43,
         "curveName = cmds.curve(degree=1, knot=[0,1,2,3,4,5,6], "
         "point=[(0,0,0),(0,5.6,0),(-0.7,5.6,0),(-0.7,7,0),(0.7,7,0),(0.7,5.6,0),(0,5.6,0)], "
         "n='curveTemp'); curveName"},
        {createShape29,
         "curveName = cmds.curve(degree=1, knot=[6,7,8,9,10,11,12,13,14,15,16], "
         "point=[(-2.085786,0,0),(2.085786,0,2.828427),(1.590596,0,2.221061),"
         "(1.222963,0,1.528966),(0.993534,0,0.779625),(0.914213,0,0),(0.993534,0,-0.779625),"
         "(1.222963,0,-1.528966),(1.590596,0,-2.221061),(2.085786,0,-2.828427),"
         "(-2.085786,0,0)], n='curveTemp'); curveName"},
    };
    for (const auto& row : given) {
        forget();
        row.routine();
        EXPECT_EQ(transcript(), Lines{std::string("python string: ") + row.text});
    }
}

TEST_F(ControlShapeTest, ThePointsGivenForTheTwoWithoutScript) {
    createShape09();
    expectPoints(points("curveShape1"), {{-2, 0, 0},
                                         {2, 0, 0},
                                         {0, 0, 0},
                                         {0, 0, 2},
                                         {0, 0, -2},
                                         {0, 0, 0},
                                         {0, 2, 0},
                                         {0, -2, 0}});
    createShape46();
    expectPoints(points("curveShape2"),
                 {{0, -1, 1}, {0, 1, 1}, {0, 1, -1}, {0, -1, -1}, {0, -1, 1}});
    EXPECT_EQ(MFnNurbsCurve(object("curveShape2")).form(), MFnNurbsCurve::kOpen);
}

TEST_F(ControlShapeTest, TheCircleFacesXAndKeepsItsHistory) {
    const MObject made = createShape01();
    EXPECT_EQ(nameOf(made), "nurbsCircle1");
    EXPECT_EQ(pythonText("cmds.listConnections('nurbsCircleShape1.create')"), "makeNurbCircle1");
    const Points all = points("nurbsCircleShape1");
    ASSERT_EQ(all.size(), 11u);
    for (const std::vector<double>& p : all) {
        EXPECT_NEAR(p[0], 0, 1e-9);
        EXPECT_NEAR(std::hypot(p[1], p[2]), 1.1081941875543879, 1e-6);
    }
}

TEST_F(ControlShapeTest, TheEyesHaveTwoRings) {
    forget();
    const MObject made = createShape36();
    EXPECT_EQ(nameOf(made), "eyesCtrl");
    EXPECT_EQ(pythonText("cmds.listRelatives('eyesCtrl', type='transform')"),
              "leftEyeCtrl rightEyeCtrl");
    const Range left[3] = {kZero, {-1.551472, 1.551472}, {-3.551472, -0.448528}};
    const Range right[3] = {kZero, {-1.551472, 1.551472}, {0.448528, 3.551472}};
    for (const char* name : {"leftEyeCtrl", "rightEyeCtrl"}) {
        const Lines shapes = shapesOf(name);
        ASSERT_EQ(shapes.size(), 1u) << name;
        const Points all = points(shapes[0]);
        EXPECT_EQ(all.size(), 11u);
        EXPECT_EQ(MFnNurbsCurve(object(shapes[0])).degree(), 3);
        EXPECT_EQ(knots(shapes[0]),
                  (std::vector<double>{-2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
        expectExtent(all, std::string(name) == "leftEyeCtrl" ? left : right);
    }
    const Lines ran = transcript();
    ASSERT_EQ(ran.size(), 1u);
    EXPECT_EQ(ran[0].find("python string: eyesCtrl = cmds.curve(degree=3, knot=[-0.125,-0.0625,0,"
                          "0.0625,"),
              0u);
    const std::string tail =
        ", n='rightEyeCtrl');cmds.parent(leftEyeCtrl, eyesCtrl);cmds.parent(rightEyeCtrl, "
        "eyesCtrl);cmds.select(eyesCtrl, replace=True);eyesCtrl";
    ASSERT_GT(ran[0].size(), tail.size());
    EXPECT_EQ(ran[0].substr(ran[0].size() - tail.size()), tail);
    EXPECT_NE(ran[0].find(", n='eyesCtrl');leftEyeCtrl = cmds.curve(degree=3, knot=[-2,-1,0,1,2,3,"
                          "4,5,6,7,8,9,10], point=["),
              std::string::npos);
    EXPECT_EQ(selected(), Lines{"|eyesCtrl"});
}

TEST_F(ControlShapeTest, ATakenNameIsNumbered) {
    createShape04();
    EXPECT_EQ(nameOf(createShape04()), "curveTemp1");
    createShape09();
    EXPECT_NE(nameOf(createShape46()), "curve1");
}

}  // namespace torvel::test
