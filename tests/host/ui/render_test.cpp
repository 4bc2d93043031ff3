#include <cmath>
#include <functional>

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include "host/ui/desktop.h"
#include "commands/host/render.h"
#include "draw/painter.h"

namespace torvel::test {

namespace {

const QColor kBackground(58, 60, 63), kLead(67, 255, 163), kWhite(255, 255, 255);
using Test = std::function<bool(const QColor&)>;

const Test isRed = [](const QColor& c) { return c.red() > 240 && c.green() < 12 && c.blue() < 12; };

Test same(const QColor& wanted) {
    return [wanted](const QColor& c) { return c.rgb() == wanted.rgb(); };
}

const Test isDrawn = [](const QColor& c) { return c.rgb() != kBackground.rgb(); };

int count(const QImage& picture, const Test& test) {
    int found = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            found += test(picture.pixelColor(x, y)) ? 1 : 0;
    return found;
}

// The smallest rectangle around the pixels that pass.
QRect around(const QImage& picture, const Test& test) {
    QRect box;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (test(picture.pixelColor(x, y)))
                box = box.united(QRect(x, y, 1, 1));
    return box;
}

// A picture of 200 x 200 pixels that shows 20 units: 10 pixels a unit, the origin in the middle.
ViewFrame frontFrame() {
    ViewFrame frame;
    EXPECT_TRUE(ViewFrame::named("front", frame));
    frame.height = 20.0;
    return frame;
}

class RenderTest : public ::testing::Test {
  protected:
    RenderTest() {
        application();
        options.grid = false;
    }
    QImage draw(const ViewFrame& frame = frontFrame()) {
        return ScenePainter(host.scene(), options).image({200, 200}, frame);
    }
    // A square of side 4 in the XY plane.
    void square(const std::string& name) {
        TestScene::Flags flags{flag("d", {1}), flag("n", {name})};
        for (const V3d& p :
             {V3d(-2, -2, 0), V3d(2, -2, 0), V3d(2, 2, 0), V3d(-2, 2, 0), V3d(-2, -2, 0)})
            flags.push_back(flag("p", {p.x, p.y, p.z}));
        host.call("curve", {}, flags);
        host.call("select", {}, {flag("cl")});
    }
    void joint(const std::string& name, double x, double y) {
        host.call("joint", {}, {flag("n", {name}), flag("p", {x, y, 0.0})});
    }

    TestScene host;
    PaintOptions options;
};

TEST(ViewFrame, ThePlainViewsLookAlongTheirAxis) {
    const QSize size(100, 100);
    ViewFrame frame;
    const auto at = [&](const char* view, const V3d& world) {
        EXPECT_TRUE(ViewFrame::named(view, frame));
        frame.height = 10.0;
        return frame.toScreen(frame.toView(world), size);
    };
    EXPECT_NEAR(at("front", {1, 2, 3}).x(), 60.0, 1e-9);
    EXPECT_NEAR(at("front", {1, 2, 3}).y(), 30.0, 1e-9);
    EXPECT_NEAR(at("side", {1, 2, 3}).x(), 20.0, 1e-9);
    EXPECT_NEAR(at("side", {1, 2, 3}).y(), 30.0, 1e-9);
    EXPECT_NEAR(at("top", {1, 2, 3}).x(), 60.0, 1e-9);
    EXPECT_NEAR(at("top", {1, 2, 3}).y(), 80.0, 1e-9);
    EXPECT_FALSE(ViewFrame::named("back", frame));
}

TEST(ViewFrame, ViewSpaceAndWorldAreInverse) {
    ViewFrame frame;
    ASSERT_TRUE(ViewFrame::named("persp", frame));
    frame.center = {3, -1, 7};
    const V3d world(0.3, 12, -5);
    EXPECT_LT((frame.toWorld(frame.toView(world)) - world).length(), 1e-12);
    EXPECT_LT(frame.toView(frame.center).length(), 1e-12);
    EXPECT_GT(frame.pixels(1, {0, 0, 5}, {100, 100}), frame.pixels(1, {0, 0, -5}, {100, 100}));
}

TEST(ViewFrame, FittingLeavesTheMarginAndNotMuchMore) {
    std::vector<V3d> points;
    for (int i = 0; i < 8; ++i)
        points.emplace_back(i & 1 ? 40.0 : 10.0, i & 2 ? 8.0 : -2.0, i & 4 ? 3.0 : -60.0);
    for (const char* view : {"persp", "front", "side", "top"})
        for (const QSize& size : {QSize(400, 100), QSize(100, 400)}) {
            ViewFrame frame;
            ASSERT_TRUE(ViewFrame::named(view, frame));
            frame.fit(points, size, 0.1);
            double widest = 0.0;
            for (const V3d& point : points) {
                const QPointF at = frame.toScreen(frame.toView(point), size);
                widest = std::max({widest, std::abs(at.x() / size.width() - 0.5),
                                   std::abs(at.y() / size.height() - 0.5)});
            }
            EXPECT_LE(widest, 0.4 + 1e-9) << view;
            EXPECT_GE(widest, frame.perspective ? 0.3 : 0.4 - 1e-9) << view;
        }
}

TEST_F(RenderTest, ACurveShowsItsOverrideColor) {
    square("frame");
    EXPECT_EQ(count(draw(), isRed), 0);
    host.set("frame.overrideColor", 13);
    EXPECT_EQ(count(draw(), isRed), 0) << "not enabled";
    host.set("frame.overrideEnabled", 1);
    const QImage red = draw();
    EXPECT_GT(count(red, isRed), 150);
    EXPECT_TRUE(QRect(78, 78, 45, 45).contains(around(red, isRed)));
    EXPECT_FALSE(isDrawn(red.pixelColor(100, 100)));
    host.set("curveShape1.overrideEnabled",
             1);  // the shape's own colour counts before its parent's
    host.set("curveShape1.overrideRGBColors", 1);
    host.set("curveShape1.overrideColorG", 1);
    EXPECT_GT(count(draw(), same(QColor(0, 255, 0))), 150);
    EXPECT_EQ(count(draw(), isRed), 0);
}

TEST_F(RenderTest, TheSelectionIsHighlighted) {
    square("a");
    square("b");
    host.call("move", {5, 0, 0, "b"});
    EXPECT_EQ(count(draw(), same(kLead)), 0);
    host.call("select", {"a", "b"});
    const QImage both = draw();
    EXPECT_GT(count(both, same(kLead)), 150);
    EXPECT_GT(around(both, same(kLead)).left(), 120) << "the last one is green";
    EXPECT_LT(around(both, same(kWhite)).right(), 125);
    host.call("select", {"a.cv[0]"});
    const QRect dot = around(draw(), same(QColor(255, 230, 40)));
    EXPECT_TRUE(dot.contains(QPoint(80, 120))) << "the corner (-2, -2)";
    EXPECT_LT(dot.width(), 9);
}

TEST_F(RenderTest, NothingHiddenIsDrawn) {
    square("frame");
    EXPECT_GT(count(draw(), isDrawn), 100);
    for (const char* attr : {"frame.visibility", "curveShape1.visibility", "frame.lodVisibility"}) {
        host.set(attr, 0);
        EXPECT_EQ(count(draw(), isDrawn), 0) << attr;
        EXPECT_TRUE(ScenePainter(host.scene()).points().empty()) << attr;
        host.set(attr, 1);
    }
    host.set("curveShape1.intermediateObject", 1);
    EXPECT_EQ(count(draw(), isDrawn), 0);
}

TEST_F(RenderTest, JointsShowTheirRadiusAndDrawStyle) {
    joint("hip", 0, 0);
    host.call("select", {}, {flag("cl")});
    host.set("hip.radius", 8);  // a ball of radius 4: 40 pixels
    EXPECT_NEAR(around(draw(), isDrawn).width(), 80, 4);
    host.set("hip.radius", 0);
    EXPECT_LT(around(draw(), isDrawn).width(), 10);
    EXPECT_GT(count(draw(), isDrawn), 4) << "never invisible";
    host.set("hip.drawStyle", 2);
    EXPECT_EQ(count(draw(), isDrawn), 0);
    host.set("hip.drawStyle", 0);
    host.call("select", {"hip"});
    joint("knee", 6, 0);
    host.call("select", {}, {flag("cl")});
    EXPECT_TRUE(isDrawn(draw().pixelColor(130, 100))) << "the bone";
    host.set("hip.drawStyle", 3);
    EXPECT_FALSE(isDrawn(draw().pixelColor(130, 100)));
}

TEST_F(RenderTest, LocalAxesTurnWithTheirJoint) {
    joint("hip", 0, 0);
    host.call("select", {}, {flag("cl")});
    const auto red = [](const QColor& c) {
        return c.red() > 200 && c.green() < 90 && c.blue() < 90;
    };
    EXPECT_EQ(count(draw(), red), 0);
    host.set("hip.displayLocalAxis", 1);
    const QRect level = around(draw(), red);
    EXPECT_GT(level.right(), 106);
    EXPECT_LT(level.height(), 6);
    host.set("hip.rotateZ", 90);
    const QRect upright = around(draw(), red);
    EXPECT_LT(upright.top(), 94);
    EXPECT_LT(upright.width(), 6);
}

TEST_F(RenderTest, FramingLeavesNoClippedMesh) {
    host.call("polyCube", {},
              {flag("n", {"box"}), flag("w", {30}), flag("h", {4}), flag("d", {9})});
    host.call("move", {100, -50, 20, "box"});
    host.call("select", {}, {flag("cl")});
    for (const char* view : {"persp", "front", "side", "top"}) {
        ViewFrame frame;
        ASSERT_TRUE(ViewFrame::named(view, frame));
        const ScenePainter painter(host.scene(), options);
        frame.fit(painter.points(), {200, 200});
        const QRect shown = around(painter.image({200, 200}, frame), isDrawn);
        EXPECT_TRUE(QRect(4, 4, 192, 192).contains(shown)) << view;
        EXPECT_GT(std::max(shown.width(), shown.height()), 130) << view;
    }
}

TEST_F(RenderTest, WireLeavesTheInsideOfFacesEmpty) {
    host.call("polyPlane", {},
              {flag("w", {10}), flag("h", {10}), flag("sx", {1}), flag("sy", {1}),
               flag("ax", {0, 0, 1})});
    host.call("select", {}, {flag("cl")});
    EXPECT_TRUE(isDrawn(draw().pixelColor(110, 85)));
    options.wire = true;
    EXPECT_FALSE(isDrawn(draw().pixelColor(110, 85)));
    EXPECT_GT(count(draw(), isDrawn), 100);
}

TEST_F(RenderTest, InstancesAreDrawnWhereTheyAre) {
    square("a");
    host.make("transform", "b");
    host.call("parent", {"curveShape1", "b"}, {flag("s"), flag("add")});
    host.call("select", {}, {flag("cl")});
    host.set("a.translateX", -5);
    host.set("b.translateX", 5);
    const QRect both = around(draw(), isDrawn);
    EXPECT_NEAR(both.left(), 30, 2);
    EXPECT_NEAR(both.right(), 170, 2);
}

TEST_F(RenderTest, ASequenceHasOneFramingAndGivesTheTimeBack) {
    QTemporaryDir dir;
    square("frame");
    host.set("frame.overrideEnabled", 1);
    host.set("frame.overrideColor", 13);
    for (const int at : {-1, 10})
        host.call(
            "setKeyframe", {"frame.translateX"},
            {flag("t", {at}), flag("v", {at}), flag("itt", {"linear"}), flag("ott", {"linear"})});
    host.call("currentTime", {7});
    const std::string file = dir.filePath("move.png").toStdString();
    const auto written = textsOf(host.call("hostRender", {},
                                           {flag("file", {file}), flag("view", {"front"}),
                                            flag("size", {320, 100}), flag("frames", {-1, 10})}));
    ASSERT_EQ(written.size(), 12u);
    EXPECT_EQ(written.front(), dir.filePath("move.-0001.png").toStdString());
    EXPECT_EQ(written.back(), dir.filePath("move.0010.png").toStdString());
    EXPECT_DOUBLE_EQ(host.call("currentTime", {}, {flag("q")}).number(), 7.0);
    const QImage first(QString::fromStdString(written.front())),
        last(QString::fromStdString(written.back()));
    const QRect a = around(first, isRed), b = around(last, isRed);
    EXPECT_EQ(first.size(), QSize(320, 100));
    EXPECT_NEAR(a.width(), b.width(), 1);
    EXPECT_NEAR(a.height(), b.height(), 1);
    EXPECT_NEAR(b.left() - a.left(), a.width() * 11.0 / 4.0, 8.0);
    EXPECT_GT(a.left(), 5);
    EXPECT_LT(b.right(), 315);
}

TEST_F(RenderTest, ObjectsNamedFillThePicture) {
    QTemporaryDir dir;
    square("near");
    square("far");
    host.call("move", {1000, 0, 0, "far"});
    const std::string file = dir.filePath("one.png").toStdString();
    host.call("hostRender", {"near"},
              {flag("f", {file}), flag("v", {"front"}), flag("sz", {100, 100}), flag("g", {0})});
    EXPECT_GT(around(QImage(QString::fromStdString(file)), isDrawn).width(), 80);
    EXPECT_EQ(host.error("hostRender", {"nobody"}, {flag("f", {file})}),
              "No object matches name: nobody");
}

TEST_F(RenderTest, WrongValuesAreNamed) {
    const auto refused = [&](TestScene::Flags flags) {
        return host.error("hostRender", {}, flags);
    };
    EXPECT_EQ(refused({flag("f", {"a.jpg"})}),
              "hostRender: A picture's name ends in .png, not as in 'a.jpg'.");
    EXPECT_EQ(refused({flag("f", {"a.png"}), flag("v", {"back"})}),
              "hostRender: There is no view 'back': the views are persp, front, side and top.");
    EXPECT_EQ(refused({flag("f", {"a.png"}), flag("sz", {0, 10})}),
              "hostRender: A picture is 1 to 16384 pixels wide and high.");
    EXPECT_EQ(refused({flag("f", {"a.png"}), flag("fr", {5, 4})}),
              "hostRender: The frames run from a lower to a higher number.");
    EXPECT_EQ(refused({flag("f", {"/no/such/folder/a.png"})}),
              "hostRender: Cannot write the picture /no/such/folder/a.png.");
    QSize size;
    int first = 0, last = 0;
    EXPECT_TRUE(pictureSize("640x480", size));
    EXPECT_EQ(size, QSize(640, 480));
    EXPECT_FALSE(pictureSize("640", size) || pictureSize("0x4", size) || pictureSize("4x4x", size));
    EXPECT_TRUE(frameRange("-3:4", first, last));
    EXPECT_TRUE(first == -3 && last == 4);
    EXPECT_FALSE(frameRange("4:3", first, last) || frameRange("", first, last) ||
                 frameRange("1:2:3", first, last));
}

TEST_F(RenderTest, AnEmptySceneIsAnEmptyPicture) {
    EXPECT_EQ(count(draw(), isDrawn), 0);
    options.grid = true;
    EXPECT_GT(count(draw(), isDrawn), 100);
}

}  // namespace

}  // namespace torvel::test
