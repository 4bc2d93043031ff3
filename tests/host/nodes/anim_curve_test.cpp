#include "nodes/animation/anim_curve.h"

#include "node_scene.h"
#include "nodes/animation/time_units.h"

namespace torvel::test {
namespace {

CurveShape ramp(int pre, int post) {
    CurveShape shape(
        {{10, 0, kLinearTangent, kLinearTangent}, {20, 5, kLinearTangent, kLinearTangent}});
    shape.pre = pre;
    shape.post = post;
    return shape;
}

TEST(CurveEnds, GoOnAsTheyAreTold) {
    struct Case {
        int kind;
        double at0, at14, at27, at35;
    };
    const Case cases[] = {
        {kConstantEnd, 0, 2, 5, 5},      {kLinearEnd, -5, 2, 8.5, 12.5},
        {kCycleEnd, 0, 2, 3.5, 2.5},     {kCycleOffsetEnd, -5, 2, 8.5, 12.5},
        {kOscillateEnd, 5, 2, 1.5, 2.5},
    };
    for (const Case& c : cases) {
        const CurveShape shape = ramp(c.kind, c.kind);
        EXPECT_NEAR(shape.value(0), c.at0, 1e-12) << c.kind;
        EXPECT_NEAR(shape.value(14), c.at14, 1e-12) << c.kind;
        EXPECT_NEAR(shape.value(27), c.at27, 1e-12) << c.kind;
        EXPECT_NEAR(shape.value(35), c.at35, 1e-12) << c.kind;
    }
    EXPECT_EQ(CurveShape().value(3), 0);
    CurveShape single({{4, 7}});
    single.post = kCycleEnd;
    EXPECT_EQ(single.value(100), 7);
}

TEST(CurveEnds, AutoSlopesStayBetweenTheNeighbours) {
    // the secant over both neighbours is 5.05; three times the flatter side, 0.1, is the limit
    const CurveShape shape({{0, 0}, {1, 0.1}, {2, 10.1}});
    EXPECT_NEAR(shape.keys[1].inSlope, 0.3, 1e-12);
    EXPECT_NEAR(shape.keys[1].outSlope, 0.3, 1e-12);
    for (double t = 0; t <= 1; t += 0.05)
        EXPECT_LE(shape.value(t), 0.1 + 1e-12);
}

class Curves : public NodeScene {};

TEST_F(Curves, FixedTangentsCountInSecondsOfTheScene) {
    const NodeHandle curve = make("animCurveTL", "");
    setKeys(scene, curve,
            {{0, 0, kFixedTangent, kFixedTangent}, {10, 0, kFixedTangent, kFixedTangent}});
    set(curve, "kox[0]", 1);
    set(curve, "koy[0]", 30);  // 30 units in a second
    setSceneTime(scene, 5);
    const double h10 = 0.5 * 0.25;  // of the slope at the start, half way
    EXPECT_NEAR(scene.number(plug(curve, "output")), h10 * 10 * 30 / 24.0, 1e-9);
    scene.changeDocument([](Document& document) {
        document.unitsText = "currentUnit -l centimeter -a degree -t ntsc;";
    });
    EXPECT_EQ(framesPerSecond(scene), 30);
    set(curve, "koy[0]", 60);
    EXPECT_NEAR(scene.number(plug(curve, "output")), h10 * 10 * 60 / 30.0, 1e-9);
}

TEST_F(Curves, ChangedKeysShowAtOnce) {
    const NodeHandle curve = make("animCurveTU", ""), to = make("transform", "to");
    link(curve, "output", to, "tx");
    setKeys(scene, curve, {{0, 1}, {10, 2}});
    setSceneTime(scene, 10);
    EXPECT_EQ(get(to, "t").x, 2);
    set(curve, "ktv[1].kv", 6);
    EXPECT_EQ(get(to, "t").x, 6);
    set(curve, "pst", kLinearEnd);
    set(curve, "kit[1]", kLinearTangent);
    set(curve, "kot[1]", kLinearTangent);
    set(curve, "ktv[2].kt", 20);
    set(curve, "ktv[2].kv", 8);
    setSceneTime(scene, 30);
    EXPECT_EQ(get(to, "t").x, 8);  // the last key is flat
    setKeys(scene, curve, {});
    EXPECT_EQ(get(to, "t").x, 0);
}

TEST_F(Curves, DrivenOnesFollowTheirInput) {
    const NodeHandle from = make("transform", "from"), curve = make("animCurveUU", ""),
                     to = make("transform", "to");
    link(from, "ty", curve, "input");
    link(curve, "output", to, "sx");
    setKeys(scene, curve,
            {{0, 1, kLinearTangent, kLinearTangent}, {10, 3, kLinearTangent, kLinearTangent}});
    EXPECT_EQ(get(to, "s").x, 1);
    set(from, "ty", 5);
    EXPECT_EQ(get(to, "s").x, 2);
    setSceneTime(scene, 77);
    EXPECT_EQ(get(to, "s").x, 2);
}

TEST(TimeUnits, AreReadByNameAndByNumber) {
    EXPECT_EQ(rateOfUnit("film"), 24);
    EXPECT_EQ(rateOfUnit("pal"), 25);
    EXPECT_EQ(rateOfUnit("ntscf"), 60);
    EXPECT_EQ(rateOfUnit("23.976fps"), 23.976);
    EXPECT_EQ(rateOfUnit("120fps"), 120);
    EXPECT_EQ(rateOfUnit("fps"), 0);
    EXPECT_EQ(rateOfUnit("fast"), 0);
    EXPECT_EQ(rateOfUnit("-3fps"), 0);
}

}  // namespace
}  // namespace torvel::test
