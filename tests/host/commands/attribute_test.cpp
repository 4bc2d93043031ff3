#include <gtest/gtest.h>

#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

class Attributes : public testing::Test {
  protected:
    void SetUp() override { scene.make("transform", "a"); }
    TestScene scene;
};

TEST_F(Attributes, ScalarsComeBackInScriptUnits) {
    scene.set("a.rotateX", 30.0);
    EXPECT_NEAR(scene.number("a.rx"), 30.0, 1e-12);
    EXPECT_NEAR(scene.scene().number(scene.plug("a.rotateX")), 0.52359877559829882, 1e-15);
    scene.set("a.translateY", 2.5);
    EXPECT_DOUBLE_EQ(scene.number(" a.ty "), 2.5);
    EXPECT_TRUE(scene.call("getAttr", {"a.visibility"}).isBool());
    EXPECT_TRUE(scene.call("getAttr", {"a.rotateOrder"}).isInt());
}

TEST_F(Attributes, CompoundIsAListOfOneTuple) {
    scene.set("a.translate", 1.0, 2.0, 3.0);
    const Value value = scene.call("getAttr", {"a.t"});
    ASSERT_TRUE(value.isList());
    ASSERT_EQ(value.list().size(), 1u);
    ASSERT_TRUE(value.list()[0].isTuple());
    expectNear(numbersOf(value), {1.0, 2.0, 3.0});
}

TEST_F(Attributes, MatrixHasSixteenNumbersInRows) {
    scene.set("a.translate", 4.0, 5.0, 6.0);
    const std::vector<double> world = scene.numbers("a.worldMatrix");
    expectNear(world, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 4, 5, 6, 1});
    TestScene::Args args{"a.offsetParentMatrix", 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 7, 1};
    scene.call("setAttr", args, {flag("type", {"matrix"})});
    expectNear(scene.worldPosition("a"), {4.0, 5.0, 13.0});
}

TEST_F(Attributes, MissingPlugHasOneClassForReadingAndOneForWriting) {
    EXPECT_EQ(scene.run("getAttr", {"a.nothing"}).kind(), Status::Kind::Value);
    EXPECT_EQ(scene.error("getAttr", {"a.nothing"}), "No object matches name: a.nothing");
    EXPECT_EQ(scene.run("setAttr", {"a.nothing", 1}).kind(), Status::Kind::Runtime);
    EXPECT_EQ(scene.error("setAttr", {"b.tx", 1}), "setAttr: No object matches name: b.tx");
}

TEST_F(Attributes, LockedAndDrivenPlugsRefuseValues) {
    scene.make("transform", "b");
    scene.call("setAttr", {"a.tx"}, {flag("lock", {true})});
    EXPECT_EQ(
        scene.error("setAttr", {"a.tx", 1}),
        "setAttr: The attribute 'a.translateX' is locked or connected and cannot be modified.");
    scene.call("connectAttr", {"b.ty", "a.ty"});
    EXPECT_NE(scene.error("setAttr", {"a.ty", 1}), "ok");
    EXPECT_NE(scene.error("setAttr", {"a.t", 1, 2, 3}), "ok") << "a child is locked";
    EXPECT_DOUBLE_EQ(scene.number("a.tz"), 0.0);
    scene.call("setAttr", {"a.tx", 3}, {flag("lock", {false})});
    EXPECT_DOUBLE_EQ(scene.number("a.tx"), 3.0) << "unlocking comes before the value";
}

TEST_F(Attributes, LockedNodeKeepsItsLocks) {
    scene.call("setAttr", {"a.tx"}, {flag("lock", {true})});
    scene.call("lockNode", {"a"}, {flag("lock", {true})});
    EXPECT_EQ(scene.error("setAttr", {"a.tx"}, {flag("lock", {false})}),
              "setAttr: Attribute 'a.translateX' is from a locked node, so it cannot be unlocked.");
}

TEST_F(Attributes, RangeRaisesUnlessClamped) {
    scene.call("addAttr", {"a"},
               {flag("longName", {"FKIK"}), flag("attributeType", {"float"}), flag("minValue", {0}),
                flag("maxValue", {1}), flag("keyable", {true})});
    EXPECT_DOUBLE_EQ(scene.number("a.FKIK"), 0.0);
    EXPECT_EQ(scene.error("setAttr", {"a.FKIK", 2}),
              "setAttr: Cannot set the attribute 'a.FKIK' past its maximum value of 1.");
    EXPECT_DOUBLE_EQ(scene.number("a.FKIK"), 0.0);
    scene.call("setAttr", {"a.FKIK", 2}, {flag("clamp")});
    EXPECT_DOUBLE_EQ(scene.number("a.FKIK"), 1.0);
    EXPECT_TRUE(scene.call("getAttr", {"a.FKIK"}, {flag("keyable")}).truth());
}

TEST_F(Attributes, TextNeedsItsType) {
    scene.call("addAttr", {"a"}, {flag("ln", {"note"}), flag("dt", {"string"})});
    EXPECT_TRUE(scene.call("getAttr", {"a.note"}).isNone());
    EXPECT_NE(scene.error("setAttr", {"a.note", "x"}), "ok");
    scene.call("setAttr", {"a.note", "hello"}, {flag("type", {"string"})});
    EXPECT_EQ(scene.text("getAttr", {"a.note"}), "hello");
}

TEST_F(Attributes, AddedTwiceIsRefused) {
    scene.call("addAttr", {"a"}, {flag("ln", {"x1"}), flag("at", {"double"})});
    EXPECT_EQ(scene.error("addAttr", {"a"}, {flag("ln", {"x1"}), flag("at", {"double"})}),
              "addAttr: Found no valid items to add the attribute to.");
    scene.call("deleteAttr", {"a.x1"});
    EXPECT_FALSE(
        scene.call("attributeQuery", {"x1"}, {flag("node", {"a"}), flag("exists")}).truth());
    EXPECT_NE(scene.error("deleteAttr", {"a.tx"}), "ok") << "attributes of the type stay";
}

TEST_F(Attributes, EnumReadsAsNumberAndText) {
    scene.call("addAttr", {"a"},
               {flag("ln", {"space"}), flag("at", {"enum"}), flag("en", {"world:hip:chest"})});
    scene.set("a.space", 2);
    EXPECT_EQ(scene.call("getAttr", {"a.space"}).integer(), 2);
    EXPECT_EQ(scene.text("getAttr", {"a.space"}, {flag("asString")}), "chest");
}

TEST_F(Attributes, ListAttrFindsUserAttributes) {
    EXPECT_TRUE(scene.call("listAttr", {"a"}, {flag("userDefined")}).isNone());
    scene.call("addAttr", {"a"}, {flag("ln", {"one"}), flag("at", {"bool"})});
    scene.call("addAttr", {"a"}, {flag("ln", {"two"}), flag("at", {"long"})});
    EXPECT_EQ(scene.text("listAttr", {"a"}, {flag("userDefined")}), "one two");
}

TEST_F(Attributes, UnknownFlagIsNamed) {
    const Status status = scene.run("getAttr", {"a.tx"}, {flag("fancy")});
    EXPECT_EQ(status.kind(), Status::Kind::Type);
    EXPECT_NE(status.text().find("fancy"), std::string::npos);
}

// --- connections --------------------------------------------------------------------------------

TEST_F(Attributes, ConnectionErrorsTellBothEnds) {
    scene.make("transform", "b");
    scene.make("transform", "c");
    EXPECT_EQ(scene.text("connectAttr", {"a.tx", "b.tx"}),
              "Connected a.translateX to b.translateX.");
    EXPECT_EQ(scene.error("connectAttr", {"c.tx", "b.tx"}),
              "'b.translateX' already has an incoming connection from 'a.translateX'.");
    EXPECT_EQ(scene.error("connectAttr", {"a.zz", "b.tx"}),
              "The source attribute 'a.zz' cannot be found.");
    EXPECT_EQ(scene.error("connectAttr", {"a.tx", "b.zz"}),
              "The destination attribute 'b.zz' cannot be found.");
    EXPECT_EQ(scene.error("disconnectAttr", {"c.tx", "b.tx"}),
              "There is no connection from 'c.translateX' to 'b.translateX' to disconnect");
    scene.clearLines();
    EXPECT_EQ(scene.error("connectAttr", {"a.tx", "b.tx"}), "Maya command error");
    ASSERT_EQ(scene.lines().size(), 1u);
    EXPECT_EQ(scene.lines()[0].channel, Channel::Warning);
    scene.call("connectAttr", {"c.tx", "b.tx"}, {flag("force")});
    EXPECT_EQ(scene.text("connectionInfo", {"b.tx"}, {flag("sourceFromDestination")}),
              "c.translateX");
    EXPECT_EQ(scene.text("connectionInfo", {"a.tx"}, {flag("sourceFromDestination")}), "");
}

TEST_F(Attributes, LockedDestinationTakesNoConnection) {
    scene.make("transform", "b");
    scene.call("setAttr", {"b.tx"}, {flag("lock", {true})});
    EXPECT_EQ(scene.error("connectAttr", {"a.tx", "b.tx"}),
              "Connection not made: 'a.translateX' -> 'b.translateX'.  Destination attribute must "
              "be writable.");
}

// One of whatever unit a script sees arrives as one of the other's.
TEST_F(Attributes, EveryScalarDrivesEveryOther) {
    const char* kinds[] = {"double", "float", "long",        "short",        "byte",
                           "bool",   "enum",  "doubleAngle", "doubleLinear", "time"};
    const auto add = [this](const char* node, const std::string& name, const char* kind) {
        scene.call("addAttr", {node},
                   {flag("ln", {name}), flag("at", {kind}), flag("en", {"off:on"})});
    };
    scene.make("transform", "b");
    for (const char* from : kinds) {
        add("a", from, from);
        for (const char* to : kinds) {
            add("b", std::string(from) + "_" + to, to);
            scene.call("connectAttr",
                       {"a." + std::string(from), "b." + std::string(from) + "_" + to});
        }
        scene.set("a." + std::string(from), 1.0);
        for (const char* to : kinds) {
            const Value got = scene.call("getAttr", {"b." + std::string(from) + "_" + to});
            EXPECT_NEAR(got.isBool() ? got.truth() : got.number(), 1.0, 1e-6)
                << from << " > " << to;
        }
    }
}

TEST_F(Attributes, PlainNumberDrivesAngleThroughAConversion) {
    scene.make("transform", "b");
    scene.call("addAttr", {"a"}, {flag("ln", {"turn"}), flag("at", {"double"})});
    scene.call("connectAttr", {"a.turn", "b.rx"});
    EXPECT_TRUE(scene.exists("unitConversion1"));
    EXPECT_NEAR(scene.number("unitConversion1.conversionFactor"), 0.017453292519943295, 1e-15);
    scene.set("a.turn", 90.0);
    EXPECT_NEAR(scene.number("b.rx"), 90.0, 1e-9);
    EXPECT_FALSE(scene.call("isConnected", {"a.turn", "b.rx"}).truth());
    EXPECT_TRUE(scene.call("isConnected", {"a.turn", "b.rx"}, {flag("iuc")}).truth());
    EXPECT_EQ(scene.text("listConnections", {"b.rx"}, {flag("scn", {true}), flag("d", {false})}),
              "a");
    scene.call("disconnectAttr", {"a.turn", "b.rx"});
    EXPECT_FALSE(scene.exists("unitConversion1"));
    EXPECT_NEAR(scene.number("b.rx"), 90.0, 1e-9) << "a number keeps its last value";
    scene.call("connectAttr", {"a.rx", "b.ry"});
    EXPECT_FALSE(scene.exists("unitConversion2")) << "angle to angle goes direct";
}

TEST_F(Attributes, ListConnectionsGivesNothingAsNone) {
    EXPECT_TRUE(scene.call("listConnections", {"a"}).isNone());
    scene.make("transform", "b");
    scene.call("connectAttr", {"a.tx", "b.tz"});
    EXPECT_EQ(scene.text("listConnections", {"b"}, {flag("p", {true}), flag("c", {true})}),
              "b.translateZ a.translateX");
    EXPECT_TRUE(scene.call("listConnections", {"b"}, {flag("s", {false})}).isNone());
    EXPECT_TRUE(scene.call("listConnections", {"b"}, {flag("type", {"joint"})}).isNone());
}

}  // namespace
