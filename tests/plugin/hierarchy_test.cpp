#include <maya/MFnDagNode.h>

#include "plugin/fixtures/rigs.h"
#include "toolkit/hierarchy.h"
#include "toolkit/nodes.h"

namespace torvel::test {

/// hip with two children: knee|ankle, and a locator "pad" with the joint "spur" below it.
class HierarchyTest : public PluginScene {
  public:
    HierarchyTest() {
        makeChain(*this, {"hip", "knee", "ankle"});
        makeGroup(*this, "pad", "|hip");
        makeChain(*this, {"spur"}, "|hip|pad");
        forget();
    }

    const Lines kAll{"|hip", "|hip|knee", "|hip|knee|ankle", "|hip|pad|spur"};
};

TEST_F(HierarchyTest, WalksInPreOrderThroughOtherNodes) {
    EXPECT_EQ(pathsOf(getJointHierarchy(object("|hip"))), kAll);
    EXPECT_EQ(pathsOf(getJointHierarchy(object("|hip|pad"))), Lines{"|hip|pad|spur"});
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(HierarchyTest, GroupOfTwoChainsGivesBothInChildOrder) {
    makeGroup(*this, "grp");
    makeChain(*this, {"b", "b1"}, "|grp");
    makeChain(*this, {"a"}, "|grp");
    EXPECT_EQ(pathsOf(getJointHierarchy(object("|grp"))), (Lines{"|grp|b", "|grp|b|b1", "|grp|a"}));
}

TEST_F(HierarchyTest, NothingBelowForeignObjects) {
    EXPECT_EQ(getJointHierarchy(MObject()).length(), 0u);
    EXPECT_EQ(getJointHierarchy(object("time1")).length(), 0u);
    MObjectArray roots = objects({"time1", "|hip|pad"});
    roots.append(MObject());
    EXPECT_EQ(pathsOf(getJointsOfRoots(roots)), Lines{"|hip|pad|spur"});
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(HierarchyTest, OverlappingRootsListSharedJointsTwice) {
    EXPECT_EQ(pathsOf(getJointsOfRoots(objects({"|hip|knee", "|hip"}))),
              (Lines{"|hip|knee", "|hip|knee|ankle", "|hip", "|hip|knee", "|hip|knee|ankle",
                     "|hip|pad|spur"}));
}

TEST_F(HierarchyTest, RootJointIsReachedThroughJointsOnly) {
    EXPECT_EQ(findRootJoint(object("|hip|knee|ankle")), object("|hip"));
    EXPECT_EQ(findRootJoint(object("|hip|pad|spur")), object("|hip|pad|spur"));
    EXPECT_EQ(findRootJoint(object("|hip|pad")), object("|hip"));
    EXPECT_EQ(findRootJoint(object("time1")), object("time1"));
    EXPECT_TRUE(findRootJoint(MObject()).isNull());
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(HierarchyTest, RootJointStopsBelowAGroup) {
    makeGroup(*this, "grp");
    makeChain(*this, {"top", "low"}, "|grp");
    EXPECT_EQ(findRootJoint(object("|grp|top|low")), object("|grp|top"));
    EXPECT_EQ(pathsOf(getRootJoints(objects({"|grp|top|low"}))), Lines{"|grp|top"});
}

TEST_F(HierarchyTest, RootsAreListedOnceInTheOrderReached) {
    makeChain(*this, {"arm", "hand"});
    makeGroup(*this, "prop");
    EXPECT_EQ(pathsOf(getRootJoints(
                  objects({"|hip|knee|ankle", "|arm|hand", "|hip", "|hip|knee", "|prop"}))),
              (Lines{"|hip", "|arm", "|prop"}));
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(HierarchyTest, NodesWithoutPathAreWarnedOf) {
    MObjectArray nodes = objects({"time1", "|hip|knee"});
    nodes.append(MObject());
    EXPECT_EQ(pathsOf(getRootJoints(nodes)), Lines{"|hip"});
    EXPECT_EQ(messages(), Lines(2, "warning: Object is not valid!"));
    EXPECT_EQ(getRootJoints(MObjectArray()).length(), 0u);
}

TEST_F(HierarchyTest, ParentsKeepTheirPlaces) {
    EXPECT_EQ(pathsOf(getParentsOfArray(objects({"|hip|knee", "|hip", "|hip|pad|spur"}))),
              (Lines{"|hip", "(null)", "|hip|pad"}));
    EXPECT_EQ(pathsOf(getParentsOfArray(objects({"time1"}))), Lines{"(null)"});
}

TEST_F(HierarchyTest, NoMeshIsOneNullObject) {
    EXPECT_EQ(pathsOf(getDownstreamMeshes(MObjectArray())), Lines{"(null)"});
    EXPECT_EQ(pathsOf(getDownstreamMeshes(objects({"|hip", "|hip|knee"}))), Lines{"(null)"});
    MObjectArray nothing;
    nothing.append(MObject());
    EXPECT_EQ(pathsOf(getDownstreamMeshes(nothing)), Lines{"(null)"});
}

TEST_F(HierarchyTest, MeshesAreListedForEachNodeThatReachesThem) {
    bindTube(*this, "|hip", "leg");
    EXPECT_EQ(pathsOf(getDownstreamMeshes(objects({"skinCluster1", "|hip|knee"}))),
              Lines(2, "|leg|legShape"));
}

TEST_F(HierarchyTest, OnlyDirectConstraintChildrenCount) {
    makeGroup(*this, "driver");
    addConstraint(*this, "pointConstraint", "|hip|knee", {"|driver"});
    EXPECT_FALSE(hasConstraintChild(objects({"|hip"})));
    EXPECT_TRUE(hasConstraintChild(objects({"|hip", "|hip|knee"})));
    EXPECT_FALSE(hasConstraintChild(MObjectArray()));
}

TEST_F(HierarchyTest, NamesakesComeInWalkOrder) {
    makeGroup(*this, "other");
    makeChain(*this, {"ankle", "hip", "knee"}, "|other");
    makeGroup(*this, "ankle", "|other|ankle|hip|knee");
    const MObjectArray references = objects({"|hip|knee", "|hip|knee|ankle", "|hip|pad"});
    EXPECT_EQ(pathsOf(findNamesakesUnder(references, object("|other"))),
              (Lines{"|other|ankle", "|other|ankle|hip|knee", "|other|ankle|hip|knee|ankle"}));
    EXPECT_EQ(findNamesakesUnder(MObjectArray(), object("|other")).length(), 0u);
    EXPECT_EQ(findNamesakesUnder(references, MObject()).length(), 0u);
    EXPECT_EQ(messages(), Lines{});
}

TEST_F(HierarchyTest, NamesakesIncludeRootAndShapes) {
    makeTube(*this, "tube");
    makeGroup(*this, "copy");
    python("cmds.createNode('mesh', name='tubeShape', parent='copy', skipSelect=True)");
    EXPECT_EQ(pathsOf(findNamesakesUnder(objects({"|tube|tubeShape", "|copy"}), object("|copy"))),
              (Lines{"|copy", "|copy|tubeShape"}));
}

TEST_F(HierarchyTest, ReparentingKeepsLocalValues) {
    makeGroup(*this, "a");
    makeGroup(*this, "b");
    makeGroup(*this, "x");
    python("cmds.setAttr('b.translateX', 5); cmds.setAttr('x.translateX', 2)");
    const MObject x = object("x");
    reparentNode(objects({"|b", "|a"}), objects({"|x", "|b"}));
    EXPECT_STREQ(MFnDagNode(x).fullPathName().asChar(), "|a|b|x");
    EXPECT_EQ(scene().number(plug("|a|b|x", "translateX")), 2.0);
    EXPECT_EQ(scripts(), Lines{});
}

TEST_F(HierarchyTest, SelectingHierarchies) {
    selectHierarchy(objects({"|hip"}), false);
    EXPECT_EQ(selected(), kAll);
    selectHierarchy(objects({"|hip"}), true);
    EXPECT_EQ(selected(), (Lines{"|hip", "|hip|knee"}));
    selectHierarchy(MObjectArray(), false);
    EXPECT_EQ(selected(), Lines{});
}

TEST_F(HierarchyTest, ALoneRootStaysSelectedWhenEndsAreSkipped) {
    makeChain(*this, {"lone"});
    selectHierarchy(objects({"|lone", "|hip|pad"}), true);
    EXPECT_EQ(selected(), (Lines{"|lone", "|hip|pad"}));
}

}  // namespace torvel::test
