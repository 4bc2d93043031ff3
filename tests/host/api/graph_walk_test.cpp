#include <vector>

#include <maya/MItDependencyGraph.h>

#include "host/api/api_scene.h"

namespace torvel::test {
namespace {

/// a feeds b and c, b feeds d, c feeds d and e, e feeds a.
class GraphWalkTest : public ApiTest {
  protected:
    void SetUp() override {
        for (const char* name : {"a", "b", "c", "d"})
            scene.make("transform", name);
        scene.make("joint", "e");
        connect("a.tx", "b.tx");
        connect("a.ty", "c.tx");
        connect("b.tx", "d.tx");
        connect("c.tx", "d.ty");
        connect("c.ty", "e.tx");
        connect("e.message", "a.dummyLink");
    }
    void connect(const std::string& from, const std::string& to) {
        if (to == "a.dummyLink")
            scene.call("addAttr", {"a"},
                       {flag("longName", {"dummyLink"}), flag("attributeType", {"message"})});
        ApiTest::connect(from, to);
    }
    std::string walk(MItDependencyGraph& it) {
        std::string names;
        for (; !it.isDone(); it.next())
            names += nameOf(it.currentItem());
        return names;
    }
    std::string walk(const char* root, MFn::Type filter, MItDependencyGraph::Direction direction,
                     MItDependencyGraph::Traversal traversal) {
        MObject object = find(root);
        MItDependencyGraph it(object, filter, direction, traversal);
        return walk(it);
    }
};

constexpr auto kDown = MItDependencyGraph::kDownstream;
constexpr auto kUp = MItDependencyGraph::kUpstream;
constexpr auto kDepth = MItDependencyGraph::kDepthFirst;
constexpr auto kBreadth = MItDependencyGraph::kBreadthFirst;

TEST_F(GraphWalkTest, eachNodeIsReportedOnceFromTheRootOn) {
    EXPECT_EQ(walk("a", MFn::kInvalid, kDown, kDepth), "abdce");
    EXPECT_EQ(walk("a", MFn::kInvalid, kDown, kBreadth), "abcde");
    EXPECT_EQ(walk("d", MFn::kInvalid, kUp, kDepth), "dbaec");
}

TEST_F(GraphWalkTest, filteredNodesAreWalkedThrough) {
    EXPECT_EQ(walk("a", MFn::kJoint, kDown, kDepth), "e");
    EXPECT_EQ(walk("b", MFn::kJoint, kDown, kDepth), "");
}

TEST_F(GraphWalkTest, dagParenthoodIsNoConnection) {
    scene.make("transform", "child", "d");
    EXPECT_EQ(walk("d", MFn::kInvalid, kDown, kDepth), "d");
}

TEST_F(GraphWalkTest, aWalkInsideAnotherDisturbsNeither) {
    MObject root = find("a");
    MItDependencyGraph outer(root);
    std::string names;
    for (; !outer.isDone(); outer.next()) {
        names += nameOf(outer.currentItem());
        EXPECT_EQ(walk("a", MFn::kInvalid, kDown, kBreadth), "abcde");
    }
    EXPECT_EQ(names, "abdce");
}

TEST_F(GraphWalkTest, prunedNodesLeadNowhere) {
    MObject root = find("a");
    MItDependencyGraph it(root, MFn::kInvalid, kDown, kDepth);
    it.next();
    it.next();
    it.next();
    ASSERT_EQ(nameOf(it.currentItem()), "c");
    it.prune();
    it.next();
    EXPECT_TRUE(it.isDone());
}

TEST_F(GraphWalkTest, aPlugAsRootRestrictsTheFirstStep) {
    MPlug root = plug("a", "translate");
    MItDependencyGraph all(root, MFn::kInvalid, kDown, kDepth, MItDependencyGraph::kNodeLevel);
    EXPECT_EQ(walk(all), "abdce");
    MPlug second = plug("a", "ty");
    MItDependencyGraph some(second, MFn::kInvalid, kDown, kDepth, MItDependencyGraph::kNodeLevel);
    EXPECT_EQ(walk(some), "acde");
}

TEST_F(GraphWalkTest, badRootsAreDoneAtOnce) {
    MObject null;
    MStatus status;
    MItDependencyGraph it(null, MFn::kMesh, kDown, kDepth, MItDependencyGraph::kNodeLevel, &status);
    EXPECT_FALSE(status);
    EXPECT_TRUE(it.isDone());
    EXPECT_TRUE(it.currentItem().isNull());
    EXPECT_FALSE(it.next());
    MObject root = find("a");
    MItDependencyGraph plugs(root, MFn::kInvalid, kDown, kDepth, MItDependencyGraph::kPlugLevel,
                             &status);
    EXPECT_EQ(status, MS::kNotImplemented);
    EXPECT_TRUE(plugs.isDone());
}

TEST_F(GraphWalkTest, nodesDeletedOnTheWayAreLeftOut) {
    MObject root = find("a");
    MItDependencyGraph it(root, MFn::kInvalid, kDown, kBreadth);
    it.next();
    scene.call("delete", {"c"});
    EXPECT_EQ(walk(it), "bd");
}

}  // namespace
}  // namespace torvel::test
