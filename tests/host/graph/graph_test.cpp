#include "small_graph.h"

namespace torvel::test {

TEST_F(SmallGraph, PullsOnlyWhatIsDirty) {
    const NodeHandle a = make("twice", "a"), b = make("twice", "b");
    ASSERT_TRUE(scene.connect(plug(a, "o"), plug(b, "input")));
    scene.setNumber(plug(a, "input"), 3);
    EXPECT_EQ(scene.number(plug(b, "output")), 12);
    const int before = g_evaluations;
    EXPECT_EQ(scene.number(plug(b, "output")), 12);
    EXPECT_EQ(g_evaluations, before);
    scene.setNumber(plug(b, "pointX"), 0.5);  // below a only b hangs on it
    EXPECT_EQ(scene.number(plug(b, "output")), 12.5);
    EXPECT_EQ(g_evaluations, before + 1);
    scene.setNumber(plug(a, "factor"), 1);
    EXPECT_EQ(scene.number(plug(b, "output")), 6.5);
}

TEST_F(SmallGraph, ConnectionsStandAtBothEndsAndKeepTheLastNumber) {
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

TEST_F(SmallGraph, CompoundsFeedTheirChildren) {
    const NodeHandle a = make("twice", "a"), b = make("twice", "b");
    ASSERT_TRUE(scene.connect(plug(a, "point"), plug(b, "point")));
    EXPECT_EQ(scene.number(plug(b, "output")), 2.0);
    scene.setNumber(plug(a, "pointX"), 7);
    EXPECT_EQ(scene.number(plug(b, "pointX")), 7);
    EXPECT_EQ(scene.number(plug(b, "output")), 9.0);
    EXPECT_EQ(scene.effectiveSource(plug(b, "pointZ")), plug(a, "pointZ"));
}

TEST_F(SmallGraph, SparseArraysKeepLogicalIndices) {
    const NodeHandle a = make("twice", "a"), b = make("twice", "b"), sum = make("twice", "sum");
    const Plug items = plug(sum, "items");
    ASSERT_TRUE(scene.connect(plug(a, "output"), plug(sum, "items[5]")));
    ASSERT_TRUE(scene.connect(plug(b, "output"), plug(sum, "items[0]")));
    ASSERT_EQ(scene.elementCount(items), 2u);
    EXPECT_EQ(scene.logicalIndex(scene.elementAt(items, 0)), 0);
    EXPECT_EQ(scene.logicalIndex(scene.elementAt(items, 1)), 5);
    EXPECT_EQ(scene.nextAvailable(items), 6);
    EXPECT_EQ(scene.number(plug(sum, "output")), 6.0);
    ASSERT_TRUE(scene.disconnect(plug(b, "output"), plug(sum, "items[0]")));
    EXPECT_EQ(scene.elementCount(items), 1u);  // such elements vanish with their connection
    EXPECT_EQ(scene.number(plug(sum, "output")), 4.0);
    scene.setNumber(plug(sum, "group[3].member"), 8);
    EXPECT_EQ(scene.number(plug(sum, "g[3].m")), 8);
    EXPECT_EQ(scene.number(plug(sum, "g[4].m")), 5);  // not there yet: the default
    EXPECT_EQ(scene.plugName(plug(sum, "g[3].m")), "sum.group[3].member");
    EXPECT_EQ(plug(sum, "g.m"), plug(sum, "g[0].m"));  // as files write it
    EXPECT_TRUE(plug(sum, "m").isNull());
    EXPECT_TRUE(plug(sum, "g[x]").isNull());
}

TEST_F(SmallGraph, CyclesAreToldOnceAndEnd) {
    std::vector<std::string> warnings;
    log.addSink([&](const LogLine& line) { warnings.push_back(line.text); });
    const NodeHandle a = make("twice", "a"), b = make("twice", "b");
    ASSERT_TRUE(scene.connect(plug(a, "output"), plug(b, "input")));
    ASSERT_TRUE(scene.connect(plug(b, "output"), plug(a, "input")));
    scene.number(plug(a, "output"));
    scene.setNumber(plug(a, "factor"), 3);
    scene.number(plug(a, "output"));
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_NE(warnings[0].find("Cycle on 'a.output'"), std::string::npos);
    EXPECT_FALSE(scene.connect(plug(a, "pointX"), plug(a, "pointX")));
}

TEST_F(SmallGraph, HandlesOfDeletedNodesStayDead) {
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

TEST_F(SmallGraph, DynamicAttributesBehaveLikeStaticOnes) {
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

TEST_F(SmallGraph, TenThousandDeepChainMovesAsOne) {
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

TEST_F(SmallGraph, ReparentKeepsLocalValuesAndRefusesRings) {
    const NodeHandle a = make("group", "a"), b = make("group", "b", a), c = make("group", "c");
    scene.setNumber(plug(a, "tx"), 1);
    scene.setNumber(plug(b, "tx"), 10);
    scene.setNumber(plug(c, "tx"), 100);
    EXPECT_EQ(worldX(b), 11);
    ASSERT_TRUE(scene.reparent(b, c));
    EXPECT_EQ(worldX(b), 110);
    EXPECT_FALSE(scene.reparent(c, b));
    EXPECT_FALSE(scene.reparent(c, c));
    EXPECT_FALSE(scene.reparent(scene.world(), c));
    ASSERT_TRUE(scene.reparent(b, {}));
    EXPECT_EQ(scene.node(b)->parents.front(), scene.world());
    EXPECT_EQ(scene.node(scene.world())->children.back(), b);
}

}  // namespace torvel::test
