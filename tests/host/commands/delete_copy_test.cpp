#include <gtest/gtest.h>

#include "support/test_scene.h"

using namespace torvel;
using namespace torvel::test;

namespace {

class DeleteAndCopy : public testing::Test {
  protected:
    TestScene scene;
};

TEST_F(DeleteAndCopy, EverythingResolvesBeforeAnythingGoes) {
    scene.make("transform", "a");
    EXPECT_EQ(scene.error("delete", {"a", "nothing"}), "No object matches name: nothing");
    EXPECT_TRUE(scene.exists("a"));
    scene.make("transform", "b", "a");
    scene.call("delete", {"a", "|a|b"});
    EXPECT_FALSE(scene.exists("a"));
}

TEST_F(DeleteAndCopy, ConversionsGoButDriversStay) {
    scene.make("transform", "driver");
    scene.make("transform", "driven");
    scene.call("connectAttr", {"driver.tx", "driven.rx"});
    scene.set("driver.tx", 45);
    scene.call("delete", {"driven"});
    EXPECT_FALSE(scene.exists("unitConversion1"));
    EXPECT_TRUE(scene.exists("driver"));
}

TEST_F(DeleteAndCopy, ChannelsOfADeletedDriverKeepTheirValue) {
    scene.make("transform", "driver");
    scene.make("transform", "driven");
    scene.call("connectAttr", {"driver.t", "driven.t"});
    scene.set("driver.t", 1, 2, 3);
    scene.call("delete", {"driver"});
    expectNear(scene.numbers("driven.t"), {1, 2, 3});
    scene.set("driven.tx", 9);
    EXPECT_DOUBLE_EQ(scene.number("driven.tx"), 9.0);
}

TEST_F(DeleteAndCopy, LockedAndDefaultNodesStay) {
    scene.make("transform", "a");
    scene.make("transform", "b");
    scene.call("lockNode", {"a"}, {flag("l", {true})});
    EXPECT_NE(scene.error("delete", {"b", "a"}), "ok");
    EXPECT_TRUE(scene.exists("b"));
    EXPECT_NE(scene.error("delete", {"time1"}), "ok");
}

TEST_F(DeleteAndCopy, HandleGoesWithItsStartJoint) {
    scene.make("joint", "a");
    scene.make("joint", "b", "a");
    scene.make("ikEffector", "eff", "a");
    scene.make("ikHandle", "handle");
    scene.call("connectAttr", {"a.message", "handle.startJoint"});
    scene.call("connectAttr", {"eff.message", "handle.endEffector"});
    scene.call("delete", {"a"});
    EXPECT_FALSE(scene.exists("handle"));
    EXPECT_FALSE(scene.exists("eff"));
}

TEST_F(DeleteAndCopy, CopyIsASiblingWithBumpedNameAndSameLeaves) {
    scene.make("transform", "P");
    scene.make("joint", "a", "P");
    scene.make("joint", "b", "a");
    scene.make("joint", "c", "b");
    scene.set("b.t", 1, 2, 3);
    scene.call("setAttr", {"b.ty"}, {flag("lock", {true})});
    scene.call("addAttr", {"c"}, {flag("ln", {"liw"}), flag("at", {"bool"}), flag("k", {true})});
    scene.set("c.liw", 1);
    scene.call("connectAttr", {"a.s", "b.is"});
    EXPECT_EQ(scene.text("duplicate", {"a"}), "a1 b c");
    EXPECT_EQ(scene.text("listRelatives", {"P"}), "a a1");
    expectNear(scene.numbers("a1|b.t"), {1, 2, 3});
    EXPECT_TRUE(scene.call("getAttr", {"a1|b.ty"}, {flag("lock")}).truth());
    EXPECT_TRUE(scene.call("getAttr", {"a1|b|c.liw"}).truth());
    EXPECT_TRUE(scene.call("isConnected", {"a1.s", "a1|b.is"}).truth());
    EXPECT_TRUE(scene.call("isConnected", {"a.s", "a|b.is"}).truth());
    EXPECT_EQ(scene.text("ls", {}, {flag("sl")}), "a1");
}

TEST_F(DeleteAndCopy, DrivenChannelsFreezeInTheCopy) {
    scene.make("transform", "driver");
    scene.make("transform", "a");
    scene.call("connectAttr", {"driver.t", "a.t"});
    scene.set("driver.t", 4, 5, 6);
    EXPECT_EQ(scene.text("duplicate", {"a"}, {flag("n", {"copy"})}), "copy");
    expectNear(scene.numbers("copy.t"), {4, 5, 6});
    EXPECT_TRUE(scene.call("listConnections", {"copy"}).isNone());
    scene.call("duplicate", {"a"}, {flag("n", {"fed"}), flag("ic")});
    EXPECT_TRUE(scene.call("isConnected", {"driver.t", "fed.t"}).truth());
}

TEST_F(DeleteAndCopy, FlagsLimitWhatIsCopied) {
    scene.make("transform", "a");
    scene.make("transform", "b", "a");
    scene.call("duplicate", {"a"}, {flag("po"), flag("n", {"alone"})});
    EXPECT_TRUE(scene.call("listRelatives", {"alone"}).isNone());
    EXPECT_EQ(scene.text("duplicate", {"a"}, {flag("rr")}), "a1");
    EXPECT_EQ(scene.text("duplicate", {"a"}, {flag("rc")}), "a2 b1");
    EXPECT_EQ(scene.run("duplicate", {"a"}, {flag("un")}).kind(), Status::Kind::Type);
    EXPECT_EQ(scene.text("duplicate", {"a"}, {flag("n", {"|a|hand_FK"}), flag("po")}), "a_hand_FK");
}

TEST_F(DeleteAndCopy, MeshCopyShowsWhatTheOriginalShows) {
    scene.call("polyCube", {}, {flag("n", {"box"})});
    scene.call("move", {0, 1, 0, "box.vtx[0]"}, {flag("r")});
    const std::vector<double> before =
        numbersOf(scene.call("xform", {"box.vtx[0]"}, {flag("q"), flag("ws"), flag("t")}));
    scene.call("duplicate", {"box"}, {flag("n", {"other"})});
    expectNear(numbersOf(scene.call("xform", {"other.vtx[0]"}, {flag("q"), flag("ws"), flag("t")})),
               before, 1e-6);
    scene.call("delete", {"box"});
    EXPECT_FALSE(scene.exists("polyCube1")) << "the maker goes with its shape";
    EXPECT_TRUE(scene.exists("other"));
}

}  // namespace
