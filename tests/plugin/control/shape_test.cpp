// Every control shape against its page: degree, points, knots, extent, names, text.

#include <algorithm>
#include <cmath>
#include <regex>

#include <fmt/format.h>

#include <maya/MFnDagNode.h>
#include <maya/MFnNurbsCurve.h>
#include <maya/MString.h>

#include <QPushButton>

#include "control/shape_routines.h"
#include "plugin/fixtures/control_scene.h"
#include "plugin/fixtures/recorded_page.h"

namespace torvel::test {

namespace {

using Point = std::vector<double>;

double distance(const Point& a, const Point& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

/// Three decimals at most, no zero behind them.
std::string shortNumber(double value) {
    return fmt::format("{}", std::round(value * 1000) / 1000 + 0.0);
}

std::string pointText(const Point& p) {
    return fmt::format("({},{},{})", shortNumber(p[0]), shortNumber(p[1]), shortNumber(p[2]));
}

bool areEven(const std::vector<double>& knots) {
    const double step = (knots.back() - knots.front()) / (knots.size() - 1.0);
    for (std::size_t i = 0; i < knots.size(); ++i) {
        if (std::abs(knots[i] - knots.front() - step * i) > 1e-12)
            return false;
    }
    return true;
}

// Each span as long as its chord, in one proportion for the whole curve.
bool areChords(const std::vector<double>& knots, const Points& points) {
    std::vector<double> lengths{0.0};
    for (std::size_t i = 1; i < points.size(); ++i)
        lengths.push_back(lengths.back() + distance(points[i], points[i - 1]));
    for (std::size_t i = 0; i < knots.size(); ++i) {
        if (std::abs(knots[i] - lengths[i] * knots.back() / lengths.back()) > 2e-4)
            return false;
    }
    return knots.size() == points.size();
}

// Whether every point has its mirror image among the points.
bool standsMirrored(const Points& points, int axis) {
    return std::all_of(points.begin(), points.end(), [&](Point image) {
        image[axis] = -image[axis];
        return std::any_of(points.begin(), points.end(),
                           [&](const Point& point) { return distance(point, image) < 4e-6; });
    });
}

std::string extentText(const Points& points) {
    std::string text, mirrors;
    for (int axis = 0; axis < 3; ++axis) {
        const auto [low, high] = std::minmax_element(
            points.begin(), points.end(),
            [axis](const Point& a, const Point& b) { return a[axis] < b[axis]; });
        text += fmt::format(", {} {} to {}", "xyz"[axis], shortNumber((*low)[axis]),
                            shortNumber((*high)[axis]));
        if (standsMirrored(points, axis))
            mirrors += "xyz"[axis];
    }
    return text + (mirrors.empty() ? "" : ", mirrored along " + mirrors);
}

/// The text with its lists of numbers and points left out.
std::string templateOf(const std::string& text) {
    const std::string number = "-?[0-9.]+(e-?[0-9]+)?", numbers = number + "(," + number + ")*",
                      point = "\\(" + number + "," + number + "," + number + "\\)";
    const std::string knots =
        std::regex_replace(text, std::regex("knot=\\[" + numbers + "\\]"), "knot=[...]");
    return std::regex_replace(knots, std::regex("point=\\[" + point + "(," + point + ")*\\]"),
                              "point=[...]");
}

std::string nameOf(const MObject& node) {
    return MFnDagNode(node).name().asChar();
}

}  // namespace

class ControlShapeTest : public ControlScene {
  public:
    std::string curveText(const std::string& shape) {
        const MFnNurbsCurve curve(object(shape));
        const Points all = points(shape);
        const std::vector<double> values = knots(shape);
        EXPECT_EQ(values.size(), all.size() + curve.degree() - 1) << shape;
        for (std::size_t i = 1; i < all.size(); ++i)
            EXPECT_NE(all[i], all[i - 1]) << shape << ": a line of no length, point " << i;
        const char* const forms[] = {"", "open", "closed", "periodic"};
        return fmt::format("{}, degree {}, {} points from {}, {} knots {} to {}",
                           forms[curve.form()], curve.degree(), all.size(), pointText(all[0]),
                           areEven(values)          ? "even"
                           : areChords(values, all) ? "chord"
                                                    : "odd",
                           shortNumber(values.front()), shortNumber(values.back())) +
               extentText(all);
    }
};

TEST_F(ControlShapeTest, ThePaletteAsItsPageShows) {
    python("ctl.circle('a')");
    Lines page;
    for (QPushButton* button :
         widget<QWidget>("scrollArea_content")->findChildren<QPushButton*>()) {
        const std::string name = button->objectName().toStdString();
        clickOn({"a"}, name.c_str());
        ASSERT_EQ(shapesOf("a").size(), 1u) << name;
        const std::string shape = shapesOf("a")[0], made = messages().at(1);
        page.push_back(name + " " + made.substr(made.rfind(' ') + 1) + ": " + curveText(shape));
        const Lines ran = scripts();
        for (std::size_t i = 0; i + 1 < ran.size(); ++i)  // the last replaces the shape
            page.push_back("  " + templateOf(ran[i]));
        if (ran.size() == 1) {
            std::string all;
            for (const Point& point : points(shape))
                all += " " + pointText(point);
            page.push_back("  no text:" + all);
        }
    }
    EXPECT_EQ(pythonText("cmds.ls(type='nurbsCurve')"), shapesOf("a")[0]);
    EXPECT_EQ(languageErrors(), 0);
    EXPECT_EQ(nameOf(createShape36()), "eyesCtrl");
    EXPECT_EQ(selected(), Lines{"|eyesCtrl"});
    for (const std::string ring : {"|eyesCtrl|leftEyeCtrl", "|eyesCtrl|rightEyeCtrl"})
        page.push_back(ring + ": " + curveText(shapesOf(ring).at(0)));
    expectPage("control_shapes", page);
}

TEST_F(ControlShapeTest, TheCircleFacesXAndKeepsItsHistory) {
    EXPECT_EQ(nameOf(createShape01()), "nurbsCircle1");
    EXPECT_EQ(pythonText("cmds.listConnections('nurbsCircleShape1.create')"), "makeNurbCircle1");
    for (const Point& p : points("nurbsCircleShape1")) {
        EXPECT_NEAR(p[0], 0, 1e-9);
        EXPECT_NEAR(std::hypot(p[1], p[2]), 1.1081941875543879, 1e-6);
    }
}

TEST_F(ControlShapeTest, ATakenNameIsNumbered) {
    createShape04();
    EXPECT_EQ(nameOf(createShape04()), "curveTemp1");
    createShape09();
    EXPECT_NE(nameOf(createShape46()), "curve1");
}

}  // namespace torvel::test
