#include <cmath>

#include <gtest/gtest.h>

#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

class Keys : public testing::Test {
  protected:
    void SetUp() override { scene.make("joint", "arm"); }
    std::int64_t key(const char* attr, double time, double value) {
        const TestScene::Flags flags{flag("attribute", {attr}), flag("time", {time}),
                                     flag("value", {value})};
        return scene.call("setKeyframe", {"arm"}, flags).integer();
    }
    double at(const char* plug, double time) {
        scene.call("currentTime", {time});
        return scene.number(plug);
    }
    std::vector<double> asked(const char* what, const char* plug = "arm.rx") {
        return numbersOf(scene.call("keyframe", {plug}, {flag("query"), flag(what)}));
    }
    TestScene scene;
};

TEST_F(Keys, MakeOneCurveForEachAttribute) {
    EXPECT_EQ(key("rotateX", 0, 0), 1);
    EXPECT_EQ(key("rotateX", 15, 40), 1);
    EXPECT_EQ(key("rx", 30, -40), 1);
    EXPECT_EQ(key("translateY", 0, 2), 1);
    EXPECT_EQ(key("scaleZ", 0, 2), 1);
    EXPECT_EQ(scene.text("nodeType", {"arm_rotateX"}), "animCurveTA");
    EXPECT_EQ(scene.text("nodeType", {"arm_translateY"}), "animCurveTL");
    EXPECT_EQ(scene.text("nodeType", {"arm_scaleZ"}), "animCurveTU");
    EXPECT_EQ(scene.text("connectionInfo", {"arm.rx"}, {flag("sourceFromDestination")}),
              "arm_rotateX.output");
    EXPECT_NEAR(at("arm.rx", 15), 40, 1e-12);
    EXPECT_NEAR(at("arm.rx", 7.5), 20, 1e-12);
    EXPECT_NEAR(at("arm.rx", 22.5), 0, 1e-12);
    EXPECT_NEAR(at("arm.rx", 99), -40, 1e-12);
    expectNear(asked("timeChange"), {0, 15, 30});
    expectNear(asked("valueChange"), {0, 40, -40});
    EXPECT_EQ(scene.call("keyframe", {"arm.rx"}, {flag("query"), flag("keyframeCount")}).integer(),
              3);
    EXPECT_EQ(scene.text("keyframe", {"arm"}, {flag("query"), flag("name")}),
              "arm_rotateX arm_translateY arm_scaleZ");
}

TEST_F(Keys, TheTimeNodeAndTheTimeFlagMoveThem) {
    key("tx", 0, 0);
    key("tx", 10, 5);
    EXPECT_EQ(at("arm.tx", 0), 0);
    EXPECT_EQ(scene.call("getAttr", {"arm.tx"}, {flag("time", {10})}).number(), 5);
    EXPECT_EQ(scene.number("arm.tx"), 0);
    scene.set("time1.outTime", 10);
    EXPECT_EQ(scene.number("arm.tx"), 5);
}

TEST_F(Keys, ValueAndTimeDefaultToWhatIsShown) {
    scene.set("arm.ry", 33);
    scene.call("currentTime", {7});
    EXPECT_EQ(scene.call("setKeyframe", {"arm.ry"}).integer(), 1);
    expectNear(asked("timeChange", "arm.ry"), {7});
    expectNear(asked("valueChange", "arm.ry"), {33});
    scene.call("select", {"arm"});
    EXPECT_EQ(scene.call("setKeyframe").integer(), 10);  // t, r, s and visibility
    const TestScene::Flags twice{flag("attribute", {"t"}), flag("time", {1}), flag("time", {2})};
    EXPECT_EQ(scene.call("setKeyframe", {"arm"}, twice).integer(), 6);
}

TEST_F(Keys, DrivenAndLockedNumbersTakeNone) {
    scene.make("transform", "other");
    scene.call("connectAttr", {"other.tx", "arm.tx"});
    scene.call("setAttr", {"arm.ty"}, {flag("lock", {true})});
    EXPECT_EQ(key("tx", 1, 5), 0);
    EXPECT_EQ(key("ty", 1, 5), 0);
    EXPECT_EQ(key("translate", 1, 5), 1);
    EXPECT_EQ(key("nothing", 1, 5), 0);
    EXPECT_FALSE(scene.exists("arm_translateX"));
    EXPECT_EQ(scene.run("setKeyframe", {"gone"}).kind(), Status::Kind::Value);
}

TEST_F(Keys, CuttingKeepsTheShownValueAndCountsCurves) {
    for (const char* attr : {"rotateX", "rotateY", "rotateZ", "translateX"}) {
        key(attr, 0, 0);
        key(attr, 10, 20);
    }
    scene.make("transform", "bare");
    scene.call("currentTime", {10});
    EXPECT_EQ(scene.call("cutKey", {"arm", "bare"}, {flag("attribute", {"rotate"}), flag("clear")})
                  .integer(),
              3);
    EXPECT_FALSE(scene.exists("arm_rotateX"));
    EXPECT_TRUE(scene.exists("arm_translateX"));
    scene.call("currentTime", {0});
    expectNear(scene.numbers("arm.r"), {20, 20, 20});
    EXPECT_EQ(scene.call("cutKey", {"arm"}, {flag("time", {"5:20"})}).integer(), 1);
    expectNear(asked("timeChange", "arm.tx"), {0});
    EXPECT_EQ(scene.call("cutKey", {"arm"}, {flag("time", {"5:20"})}).integer(), 0);
    EXPECT_EQ(scene.call("cutKey", {"arm"}).integer(), 1);
    EXPECT_FALSE(scene.exists("arm_translateX"));
}

TEST_F(Keys, AreMovedAndAskedByRange) {
    for (int i = 0; i < 4; ++i)
        key("rx", i * 10, i);
    RawFlag range = flag("time", {Value::doubles({5, 25})});
    range.fromPython = true;
    scene.call("keyframe", {"arm.rx"},
               {flag("edit"), flag("relative"), flag("timeChange", {1}), range});
    expectNear(asked("timeChange"), {0, 11, 21, 30});
    scene.call("keyframe", {"arm.rx"},
               {flag("edit"), flag("valueChange", {90}), flag("index", {0})});
    expectNear(asked("valueChange"), {90, 1, 2, 3});
    EXPECT_NE(scene.error("keyframe", {"arm.rx"}, {flag("timeChange", {11}), flag("index", {0})}),
              "ok");
    expectNear(asked("timeChange"), {0, 11, 21, 30});
    expectNear(numbersOf(scene.call("keyframe", {"arm.rx"},
                                    {flag("query"), flag("eval"), flag("time", {11})})),
               {1});
    EXPECT_EQ(
        scene.call("findKeyframe", {"arm"}, {flag("which", {"next"}), flag("time", {11})}).number(),
        21);
    EXPECT_EQ(scene.call("findKeyframe", {"arm"}, {flag("which", {"previous"}), flag("time", {0})})
                  .number(),
              30);
}

TEST_F(Keys, TangentsAreSetAndAsked) {
    key("tx", 0, 0);
    key("tx", 24, 24);
    EXPECT_NEAR(at("arm.tx", 6), 24 * (3.0 / 16 - 2.0 / 64), 1e-12);  // flat ends
    scene.call("keyTangent", {"arm.tx"},
               {flag("inTangentType", {"linear"}), flag("outTangentType", {"linear"})});
    EXPECT_NEAR(at("arm.tx", 6), 6, 1e-12);
    // 24 units in one second are a slope of 24
    const TestScene::Flags first{flag("query"), flag("outAngle"), flag("index", {0})};
    const std::vector<double> angle = numbersOf(scene.call("keyTangent", {"arm.tx"}, first));
    EXPECT_NEAR(std::tan(angle.at(0) * 3.14159265358979323846 / 180), 24, 1e-9);
    scene.call("keyTangent", {"arm.tx"}, {flag("outTangentType", {"step"}), flag("time", {0})});
    EXPECT_EQ(at("arm.tx", 23), 0);
    EXPECT_EQ(scene.text("keyTangent", {"arm.tx"}, {flag("query"), flag("outTangentType")}),
              "step linear");
    EXPECT_EQ(scene.text("keyTangent", {}, {flag("query"), flag("global"), flag("outTangentType")}),
              "auto");
    scene.call(
        "keyTangent", {},
        {flag("global"), flag("inTangentType", {"linear"}), flag("outTangentType", {"linear"})});
    key("ty", 0, 0);
    key("ty", 10, 10);
    EXPECT_NEAR(at("arm.ty", 2.5), 2.5, 1e-12);
    EXPECT_NE(scene.error("keyTangent", {"arm.tx"}, {flag("inTangentType", {"wavy"})}), "ok");
}

TEST_F(Keys, DriveOverAnotherAttribute) {
    scene.make("transform", "dial");
    const auto drive = [&](double driver, double value) {
        return scene
            .call("setDrivenKeyframe", {"arm.rx"},
                  {flag("currentDriver", {"dial.rz"}), flag("driverValue", {driver}),
                   flag("value", {value}), flag("inTangentType", {"linear"}),
                   flag("outTangentType", {"linear"})})
            .integer();
    };
    EXPECT_EQ(drive(0, 10), 1);
    EXPECT_EQ(drive(90, 100), 1);
    EXPECT_EQ(scene.text("nodeType", {"arm_rotateX"}), "animCurveUA");
    scene.set("dial.rz", 45);
    EXPECT_NEAR(scene.number("arm.rx"), 55, 1e-9);
    scene.call("currentTime", {50});
    EXPECT_NEAR(scene.number("arm.rx"), 55, 1e-9);
    EXPECT_EQ(scene.text("setDrivenKeyframe", {"arm.rx"}, {flag("query"), flag("driver")}),
              "dial.rotateZ");
    EXPECT_NE(scene.error("setDrivenKeyframe", {"arm.rx"}, {flag("currentDriver", {"dial.tx"})}),
              "ok");
    EXPECT_NE(scene.error("setDrivenKeyframe", {"arm.ry"}), "ok");
}

TEST_F(Keys, PlaybackRangeAndPlay) {
    const auto ask = [&](const char* what) {
        return scene.call("playbackOptions", {}, {flag("query"), flag(what)}).number();
    };
    EXPECT_EQ(ask("maxTime"), 120);
    scene.call("playbackOptions", {}, {flag("minTime", {0}), flag("maxTime", {300})});
    EXPECT_EQ(ask("minTime"), 0);
    EXPECT_EQ(ask("maxTime"), 300);
    EXPECT_EQ(ask("animationEndTime"), 300);
    EXPECT_EQ(ask("animationStartTime"), 0);
    scene.call("playbackOptions", {}, {flag("maxTime", {135}), flag("loop", {"once"})});
    EXPECT_EQ(scene.text("playbackOptions", {}, {flag("query"), flag("loop")}), "once");
    EXPECT_NE(scene.error("playbackOptions", {}, {flag("loop", {"never"})}), "ok");
    scene.call("playbackOptions", {}, {flag("edit"), flag("maxPlaybackSpeed", {1.0})});
    key("tx", 0, 0);
    key("tx", 135, 7);
    scene.call("currentTime", {0});
    scene.call("play", {}, {flag("forward", {true}), flag("wait")});
    EXPECT_EQ(scene.call("currentTime", {}, {flag("query")}).number(), 135);
    EXPECT_EQ(scene.number("arm.tx"), 7);
}

TEST_F(Keys, TimeUnitsKeepKeysOnTheClock) {
    key("tx", 0, 0);
    key("tx", 24, 24);
    scene.call("keyTangent", {"arm.tx"},
               {flag("outTangentType", {"linear"}), flag("inTangentType", {"linear"})});
    EXPECT_EQ(scene.text("currentUnit", {}, {flag("query"), flag("time")}), "film");
    EXPECT_EQ(scene.call("currentTime", {"1sec"}).number(), 24);
    scene.call("currentUnit", {}, {flag("time", {"ntsc"})});
    EXPECT_EQ(scene.call("currentTime", {}, {flag("query")}).number(), 30);
    expectNear(asked("timeChange", "arm.tx"), {0, 30});
    EXPECT_NEAR(at("arm.tx", 15), 12, 1e-9);
    EXPECT_NE(scene.error("currentUnit", {}, {flag("time", {"moon"})}), "ok");
    EXPECT_NE(scene.error("currentUnit", {}, {flag("linear", {"mile"})}), "ok");
}

TEST_F(Keys, UnitsOfConnectionsAreConverted) {
    scene.make("transform", "other");
    scene.call("connectAttr", {"arm.rx", "other.tx"});
    scene.set("arm.rx", 30);
    EXPECT_NEAR(scene.number("other.tx"), 30, 1e-12);
    EXPECT_NEAR(scene.number("unitConversion1.conversionFactor"), 57.295779513082323, 1e-12);
    scene.call("connectAttr", {"time1.outTime", "other.ty"});
    EXPECT_NEAR(at("other.ty", 36), 36, 1e-12);
    EXPECT_NEAR(scene.number("unitConversion2.conversionFactor"), 24.0 / 6000, 1e-15);
    scene.make("blendColors", "mix");
    scene.call("connectAttr", {"arm.r", "mix.c1"}, {flag("force")});
    EXPECT_EQ(scene.text("connectionInfo", {"mix.c1"}, {flag("sourceFromDestination")}),
              "unitConversion3.output");
    EXPECT_TRUE(
        scene.call("isConnected", {"arm.r", "mix.c1"}, {flag("ignoreUnitConversion")}).truth());
    scene.set("mix.b", 1);
    scene.set("arm.r", 10, 20, 30);
    expectNear(scene.numbers("mix.op"), {10, 20, 30}, 1e-5);
    scene.call("disconnectAttr", {"arm.r", "mix.c1"});
    EXPECT_FALSE(scene.exists("unitConversion3"));
    // every kind of number takes every other
    const char* const kinds[] = {"bool",  "byte",   "short",       "long",         "enum",
                                 "float", "double", "doubleAngle", "doubleLinear", "time"};
    for (const char* kind : kinds)
        scene.call("addAttr", {"arm"},
                   {flag("longName", {std::string("k_") + kind}), flag("attributeType", {kind})});
    for (const char* from : kinds)
        for (const char* to : kinds)
            if (std::string(from) != to) {
                SCOPED_TRACE(std::string(from) + " -> " + to);
                const Value::List ends{Value("arm.k_" + std::string(from)),
                                       Value("other.k_" + std::string(to))};
                scene.call(
                    "addAttr", {"other"},
                    {flag("longName", {std::string("k_") + to}), flag("attributeType", {to})});
                scene.set("arm.k_" + std::string(from), 1);
                scene.call("connectAttr", {ends[0], ends[1]});
                EXPECT_NEAR(scene.number("other.k_" + std::string(to)), 1, 1e-9);
                scene.call("disconnectAttr", {ends[0], ends[1]});
                scene.call("deleteAttr", {"other.k_" + std::string(to)});
            }
}

}  // namespace
