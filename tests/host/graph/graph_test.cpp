#include "small_graph.h"
#include "support/scene_script.h"

namespace torvel::test {

class GraphTest : public SmallGraph {
  protected:
    SceneScript script{scene};
};

TEST_F(GraphTest, PullsOnlyWhatIsDirty) {
    script.run("twice a; twice b; a.o -> b.input; a.input 3; b.output == 12");
    const int before = g_evaluations;
    script.run("b.output == 12");
    EXPECT_EQ(g_evaluations, before);
    script.run("b.pointX 0.5; b.output == 12.5");  // below a only b hangs on it
    EXPECT_EQ(g_evaluations, before + 1);
    script.run("a.factor 1; b.output == 6.5");
}

TEST_F(GraphTest, ConnectionsStandAtBothEndsAndKeepTheLastNumber) {
    const NodeHandle a = make("twice", "a"), b = make("twice", "b");
    const Plug out = plug(a, "output"), in = plug(b, "input");
    ASSERT_TRUE(scene.connect(out, in));
    EXPECT_EQ(scene.source(in), out);
    ASSERT_EQ(scene.targets(out).size(), 1u);
    EXPECT_EQ(scene.connect(plug(a, "factor"), in).text(),
              "'b.input' already has an incoming connection from 'a.output'.");
    EXPECT_FALSE(scene.isSettable(in));
    ASSERT_TRUE(scene.disconnect(out, in));
    EXPECT_EQ(scene.number(in), 2.0);
    EXPECT_TRUE(scene.targets(out).empty());
    EXPECT_EQ(scene.disconnect(out, in).text(),
              "There is no connection from 'a.output' to 'b.input' to disconnect");
    EXPECT_FALSE(scene.connect(in, plug(b, "output")));  // outputs take nothing
}

TEST_F(GraphTest, CompoundsFeedTheirChildren) {
    script.run("twice a; twice b; a.point -> b.point; b.output == 2");
    script.run("a.pointX 7; b.pointX == 7; b.output == 9");
    EXPECT_EQ(scene.effectiveSource(plug(script.node("b"), "pointZ")),
              plug(script.node("a"), "pointZ"));
}

TEST_F(GraphTest, SparseArraysKeepLogicalIndices) {
    script.run("twice a; twice b; twice sum; a.output -> sum.items[5]; b.output -> sum.items[0]");
    const NodeHandle sum = script.node("sum");
    const Plug items = plug(sum, "items");
    ASSERT_EQ(scene.elementCount(items), 2u);
    EXPECT_EQ(scene.logicalIndex(scene.elementAt(items, 0)), 0);
    EXPECT_EQ(scene.logicalIndex(scene.elementAt(items, 1)), 5);
    EXPECT_EQ(scene.nextAvailable(items), 6);
    script.run("sum.output == 6; b.output -x sum.items[0]; sum.output == 4");
    EXPECT_EQ(scene.elementCount(items), 1u);  // such elements vanish with their connection
    // element 4 is not there yet: the default
    script.run("sum.group[3].member 8; sum.g[3].m == 8; sum.g[4].m == 5");
    EXPECT_EQ(scene.plugName(plug(sum, "g[3].m")), "sum.group[3].member");
    EXPECT_EQ(plug(sum, "g.m"), plug(sum, "g[0].m"));  // as files write it
    EXPECT_TRUE(plug(sum, "m").isNull());
    EXPECT_TRUE(plug(sum, "g[x]").isNull());
}

TEST_F(GraphTest, CyclesAreToldOnceAndEnd) {
    std::vector<std::string> warnings;
    log.addSink([&](const LogLine& line) { warnings.push_back(line.text); });
    script.run("twice a; twice b; a.output -> b.input; b.output -> a.input");
    const NodeHandle a = script.node("a");
    scene.number(plug(a, "output"));
    script.run("a.factor 3");
    scene.number(plug(a, "output"));
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_NE(warnings[0].find("Cycle on 'a.output'"), std::string::npos);
    EXPECT_FALSE(scene.connect(plug(a, "pointX"), plug(a, "pointX")));
}

TEST_F(GraphTest, HandlesOfDeletedNodesStayDead) {
    const NodeHandle top = make("group", "top"), child = make("group", "child", top),
                     other = make("twice", "other");
    const NodeHandle driver = make("twice", "driver");
    ASSERT_TRUE(scene.connect(plug(driver, "output"), plug(child, "tx")));
    scene.selection().replaceNodes({child, other, child});
    EXPECT_EQ(scene.selection().items().size(), 2u);
    scene.deleteNodes({top});
    EXPECT_FALSE(scene.isValid(child));
    EXPECT_TRUE(scene.targets(plug(driver, "output")).empty());
    EXPECT_EQ(scene.selection().items().size(), 1u);
    const NodeHandle again = make("group", "again");
    EXPECT_NE(again, top);
    EXPECT_EQ(scene.number(Plug(child, 0)), 0.0);
    EXPECT_TRUE(scene.findPlug(child, "tx").isNull());
}

TEST_F(GraphTest, DynamicAttributesBehaveLikeStaticOnes) {
    const NodeHandle a = make("twice", "a"), b = make("twice", "b");
    AttrInfo info;
    info.longName = "lockInfluenceWeights";
    info.shortName = "liw";
    info.type = AttrType::Bool;
    AttrIndex made;
    ASSERT_TRUE(scene.addAttribute(a, info, kNoAttr, made));
    EXPECT_FALSE(scene.addAttribute(a, info, kNoAttr, made));
    scene.setNumber(plug(a, "liw"), 3);
    EXPECT_EQ(scene.number(plug(a, "lockInfluenceWeights")), 1.0);
    ASSERT_TRUE(scene.connect(plug(a, "liw"), plug(b, "items[2]")));
    EXPECT_EQ(scene.number(plug(b, "output")), 3.0);
    scene.deleteAttribute(a, plug(a, "liw").attr);
    EXPECT_TRUE(plug(a, "liw").isNull());
    EXPECT_EQ(scene.elementCount(plug(b, "items")), 0u);
    const Plug opaque = scene.opaquePlug(a, "strange[2].thing[7]");
    ASSERT_FALSE(opaque.isNull());
    EXPECT_EQ(scene.attrPath(opaque, false), "strange[2].thing[7]");
    EXPECT_EQ(scene.opaquePlug(a, "strange[2].thing[7]"), opaque);
}

TEST_F(GraphTest, TenThousandDeepChainMovesAsOne) {
    NodeHandle top, at;
    for (int i = 0; i < 10000; ++i) {
        at = make("group", "link", at);
        scene.setNumber(plug(at, "tx"), 1);
        if (i == 0)
            top = at;
    }
    EXPECT_EQ(worldX(at), 10000.0);
    scene.setNumber(plug(top, "tx"), 2);
    EXPECT_EQ(worldX(at), 10001.0);
    EXPECT_EQ(scene.path(at).size(), 10000u);
    scene.deleteNodes({top});
    EXPECT_FALSE(scene.isValid(at));
}

TEST_F(GraphTest, ReparentKeepsLocalValuesAndRefusesRings) {
    script.run("group a; group b a; group c; a.tx 1; b.tx 10; c.tx 100; b == 11 0 0");
    const NodeHandle b = script.node("b"), c = script.node("c");
    ASSERT_TRUE(scene.reparent(b, c));
    script.run("b == 110 0 0");
    EXPECT_FALSE(scene.reparent(c, b));
    EXPECT_FALSE(scene.reparent(c, c));
    EXPECT_FALSE(scene.reparent(scene.world(), c));
    ASSERT_TRUE(scene.reparent(b, {}));
    EXPECT_EQ(scene.node(b)->parents.front(), scene.world());
    EXPECT_EQ(scene.node(scene.world())->children.back(), b);
}

}  // namespace torvel::test
