#include <vector>

#include <maya/MFnDagNode.h>
#include <maya/MFnTransform.h>
#include <maya/MItDag.h>
#include <maya/MMatrix.h>
#include <maya/MVector.h>

#include "host/api/api_scene.h"

namespace torvel::test {
namespace {

/// hip > (knee > ankle, tail); a shape below the knee.
class DagTest : public ApiTest {
  protected:
    void SetUp() override {
        scene.make("joint", "hip");
        scene.make("joint", "knee", "hip");
        scene.make("joint", "ankle", "knee");
        scene.make("joint", "tail", "hip");
    }
    std::vector<std::string> walk(MItDag& it) {
        std::vector<std::string> names;
        for (; !it.isDone(); it.next())
            names.push_back(nameOf(it.currentItem()));
        return names;
    }
};

TEST_F(DagTest, topLevelNodeHasTheWorldAsParent) {
    MFnDagNode fn(find("hip"));
    ASSERT_EQ(fn.parentCount(), 1u);
    const MObject world = fn.parent(0);
    EXPECT_EQ(nameOf(world), "world");
    MDagPath path;
    EXPECT_TRUE(MDagPath::getAPathTo(world, path));
    EXPECT_EQ(text(path.fullPathName()), "");
    EXPECT_EQ(path.length(), 0u);
    EXPECT_TRUE(fn.parent(1).isNull());
    EXPECT_EQ(MFnDagNode(world).parentCount(), 0u);
}

TEST_F(DagTest, pathsCountFromBelowTheWorld) {
    MDagPath ankle = path("ankle");
    EXPECT_EQ(text(ankle.fullPathName()), "|hip|knee|ankle");
    EXPECT_EQ(ankle.length(), 3u);
    EXPECT_TRUE(ankle.pop(2));
    EXPECT_EQ(text(ankle.fullPathName()), "|hip");
    EXPECT_FALSE(ankle.pop(5));
    EXPECT_EQ(ankle.length(), 1u);
    EXPECT_TRUE(ankle.push(find("tail")));
    EXPECT_EQ(text(ankle.fullPathName()), "|hip|tail");
    EXPECT_FALSE(ankle.push(find("ankle")));
}

TEST_F(DagTest, invalidPathsAnswerWithNothing) {
    MDagPath path;
    EXPECT_FALSE(MDagPath::getAPathTo(MObject::kNullObj, path));
    EXPECT_FALSE(path.isValid());
    MStatus status;
    EXPECT_EQ(text(path.fullPathName(&status)), "");
    EXPECT_FALSE(status);
    EXPECT_TRUE(path.node().isNull());
    EXPECT_EQ(path.length(), 0u);
    EXPECT_FALSE(path.extendToShape());

    MDagPath deleted = this->path("ankle");
    scene.call("delete", {"ankle"});
    EXPECT_FALSE(deleted.isValid());
    EXPECT_EQ(text(deleted.fullPathName()), "");
    MSelectionList list;
    EXPECT_FALSE(list.add(deleted));
    EXPECT_EQ(list.length(), 0u);
}

TEST_F(DagTest, depthFirstWalkIsPreOrderFromTheRootItself) {
    MItDag it(MItDag::kDepthFirst, MFn::kTransform);
    EXPECT_TRUE(it.reset(path("hip"), MItDag::kDepthFirst, MFn::kJoint));
    EXPECT_EQ(walk(it), (std::vector<std::string>{"hip", "knee", "ankle", "tail"}));
    EXPECT_TRUE(it.isDone());
    EXPECT_FALSE(it.next());
    EXPECT_TRUE(it.currentItem().isNull());
}

TEST_F(DagTest, breadthFirstWalkGoesLevelByLevel) {
    MItDag it;
    it.reset(path("hip"), MItDag::kBreadthFirst);
    EXPECT_EQ(walk(it), (std::vector<std::string>{"hip", "knee", "tail", "ankle"}));
}

TEST_F(DagTest, resetForgetsTheFilterOfTheConstructor) {
    scene.make("locator", "mark", "knee");
    MItDag it(MItDag::kDepthFirst, MFn::kJoint);
    it.reset(path("knee"));
    EXPECT_EQ(walk(it).size(), 3u);
}

TEST_F(DagTest, filteredNodesAreWalkedThrough) {
    scene.make("transform", "group", "ankle");
    scene.make("joint", "toe", "group");
    MItDag it;
    it.reset(path("knee"), MItDag::kDepthFirst, MFn::kJoint);
    EXPECT_EQ(walk(it), (std::vector<std::string>{"knee", "ankle", "toe"}));
    it.reset(path("group"), MItDag::kDepthFirst, MFn::kJoint);
    ASSERT_FALSE(it.isDone());
    MDagPath first;
    EXPECT_TRUE(it.getPath(first));
    EXPECT_EQ(text(first.fullPathName()), "|hip|knee|ankle|group|toe");
    EXPECT_EQ(it.depth(), 1u);
}

TEST_F(DagTest, prunedSubTreesAreLeftOut) {
    MItDag it;
    it.reset(path("hip"));
    it.next();
    it.prune();
    it.next();
    EXPECT_EQ(nameOf(it.currentItem()), "tail");
}

TEST_F(DagTest, invalidRootEndsTheWalk) {
    MItDag it;
    EXPECT_FALSE(it.reset(MDagPath()));
    EXPECT_TRUE(it.isDone());
    EXPECT_FALSE(it.reset(MObject::kNullObj));
    EXPECT_TRUE(it.isDone());
}

TEST_F(DagTest, worldTranslationIsReadAndWrittenThroughPaths) {
    scene.set("hip.translate", 1, 2, 3);
    scene.set("hip.rotate", 0, 0, 90);
    scene.set("knee.translate", 5, 0, 0);
    MFnTransform knee(path("knee"));
    EXPECT_TRUE(knee.getTranslation(MSpace::kWorld).isEquivalent(MVector(1, 7, 3), 1e-12));
    EXPECT_TRUE(knee.setTranslation(MVector(1, 2, 13), MSpace::kWorld));
    EXPECT_TRUE(knee.getTranslation(MSpace::kTransform).isEquivalent(MVector(0, 0, 10), 1e-12));
    MStatus status;
    MFnTransform(find("knee")).getTranslation(MSpace::kWorld, &status);
    EXPECT_FALSE(status) << "an object has no path";
}

TEST_F(DagTest, removeChildPutsItBelowTheWorld) {
    MFnDagNode hip(find("hip"));
    MObject knee = find("knee");
    EXPECT_TRUE(hip.removeChild(knee));
    EXPECT_EQ(text(MFnDagNode(knee).fullPathName()), "|knee");
    EXPECT_FALSE(hip.removeChild(knee)) << "it is no child any more";
    EXPECT_EQ(hip.childCount(), 1u);
}

TEST_F(DagTest, duplicateCopiesBelowAndNumbersTheTop) {
    scene.call("select", {"tail"});
    MFnDagNode knee(find("knee"));
    const MObject copy = knee.duplicate(false, false);
    EXPECT_EQ(text(MFnDagNode(copy).fullPathName()), "|hip|knee1");
    ASSERT_EQ(MFnDagNode(copy).childCount(), 1u);
    EXPECT_EQ(nameOf(MFnDagNode(copy).child(0)), "ankle");
    EXPECT_EQ(scene.text("ls", {}, {flag("selection")}), "tail");
}

TEST_F(DagTest, createMakesShapesWithTheirTransform) {
    MFnDagNode fn;
    const MObject top = fn.create("transform", MObject::kNullObj);
    EXPECT_EQ(nameOf(top), "transform1");
    EXPECT_TRUE(fn.object() == top);
    const MObject holder = fn.create("locator");
    EXPECT_EQ(holder.apiType(), MFn::kTransform);
    EXPECT_TRUE(MFnDagNode(holder).child(0).hasFn(MFn::kLocator));
    MStatus status;
    EXPECT_TRUE(fn.create("noSuchType", MObject::kNullObj, &status).isNull());
    EXPECT_FALSE(status);
}

}  // namespace
}  // namespace torvel::test
