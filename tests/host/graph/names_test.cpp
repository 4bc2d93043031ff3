#include "small_graph.h"

namespace torvel::test {

TEST(LegalNames, LeadingIllegalOnesGoTheOthersBecomeUnderscores) {
    EXPECT_EQ(Names::legal("has space"), "has_space");
    EXPECT_EQ(Names::legal("1bad"), "bad");
    EXPECT_EQ(Names::legal("|shoulder_FK"), "shoulder_FK");
    EXPECT_EQ(Names::legal("|a|b_x"), "a_b_x");
    EXPECT_EQ(Names::legal("ns:has-dash"), "ns:has_dash");
    EXPECT_EQ(Names::legal("123"), "");
    EXPECT_EQ(Names::trimmed("  ||a|b "), "|a|b");
}

TEST(NamePatterns, MatchWithinOneNamespace) {
    EXPECT_TRUE(Names::matches("*_twist", "arm_twist"));
    EXPECT_TRUE(Names::matches("a?c", "abc"));
    EXPECT_FALSE(Names::matches("foo*", "ns:foo"));
    EXPECT_FALSE(Names::matches("*foo", "ns:foo"));
    EXPECT_TRUE(Names::matches("*:foo", "ns:foo"));
}

TEST_F(SmallGraph, ClashesAreNumbered) {
    const NodeHandle a = make("group", "arm"), b = make("group", "arm");
    EXPECT_EQ(scene.node(b)->name, "arm1");
    const NodeHandle below = make("group", "arm", a);  // other parent: allowed
    EXPECT_EQ(scene.node(below)->name, "arm");
    EXPECT_EQ(scene.node(make("twice", "arm"))->name, "arm2");  // a DG node shares no name
    make("group", "leg_09");
    EXPECT_EQ(scene.node(make("group", "leg_09"))->name, "leg_10");
    EXPECT_EQ(scene.node(make("group", ""))->name, "group1");
    EXPECT_EQ(scene.node(make("group", ""))->name, "group2");
    EXPECT_EQ(scene.rename(a, "arm"), "arm");  // never a clash with itself
    EXPECT_EQ(scene.rename(b, "a|b"), "a_b");
}

TEST_F(SmallGraph, PathsResolveAndSeveralMatchesAreOrdered) {
    const NodeHandle park = make("group", "park"), old = make("group", "hip", park),
                     oldKnee = make("group", "knee", old);
    const NodeHandle fresh = make("group", "hip"), knee = make("group", "knee", fresh);
    const std::vector<NodeHandle> hips = scene.names().find("hip");
    ASSERT_EQ(hips.size(), 2u);
    EXPECT_EQ(hips[0], fresh);  // fewest path components first
    EXPECT_EQ(scene.names().find("|hip|knee"), std::vector<NodeHandle>{knee});
    EXPECT_EQ(scene.names().find("park|hip|knee"), std::vector<NodeHandle>{oldKnee});
    EXPECT_EQ(scene.names().find("|knee").size(), 0u);
    EXPECT_EQ(scene.names().find("k*").size(), 2u);
    EXPECT_TRUE(scene.names().find("world").empty());
    NodeHandle found;
    EXPECT_EQ(scene.names().findOne("knee", found).text(),
              "More than one object matches name: knee");
    EXPECT_EQ(scene.names().findOne("elbow", found).text(), "No object matches name: elbow");
    EXPECT_EQ(scene.names().findOne("elbow", found).kind(), Status::Kind::Value);
    EXPECT_TRUE(scene.names().findOne(" |hip ", found));
    EXPECT_EQ(found, fresh);
    EXPECT_EQ(scene.names().shortest(fresh), "|hip");
    EXPECT_EQ(scene.names().shortest(old), "park|hip");
    EXPECT_EQ(scene.names().shortest(park), "park");
    EXPECT_EQ(scene.names().fullPath(oldKnee), "|park|hip|knee");
    EXPECT_EQ(scene.names().fullPath(scene.world()), "");
}

TEST_F(SmallGraph, InstancesHaveAPathEach) {
    const NodeHandle a = make("group", "a"), b = make("group", "b"),
                     shared = make("group", "shared", a);
    ASSERT_TRUE(scene.addParent(shared, b));
    EXPECT_EQ(scene.instanceCount(shared), 2);
    EXPECT_EQ(scene.names().fullPath(shared, 1), "|b|shared");
    EXPECT_EQ(scene.names().find("|b|shared"), std::vector<NodeHandle>{shared});
    scene.deleteNodes({a});
    EXPECT_TRUE(scene.isValid(shared));  // it lives on under b
    EXPECT_EQ(scene.names().fullPath(shared), "|b|shared");
}

}  // namespace torvel::test
