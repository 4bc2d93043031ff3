// Nodes that write plugs of other nodes: a made-up type whose `sum` puts itself into `tx` of the
// node that its message input names.
#include "graph/writers.h"
#include "small_graph.h"
#include "support/scene_script.h"

namespace torvel::test {
namespace {

enum { kTarget = 1, kAmount, kOn, kSum };
const AttrRow kPusherRows[] = {
    {"target", "t", AttrType::Message, 0.0, 0, "sum"},
    {"amount", "a", AttrType::Double, 1.0, 0, "sum"},
    {"on", "on", AttrType::Bool, 1.0, 0, "sum"},
    {"sum", "s", AttrType::Double, 0.0, kOutput},
};

AttrIndex attrOf(const Node& node, const char* name) {
    return node.findAttr(name);
}

// Reads `parentMatrix` of the target: it has to be there first, and moves the target again when it
// changes.
void declarePush(const Scene& scene, const Node& writer, WriterDeclaration& out) {
    const Node* target = scene.node(scene.source(Plug(writer.self, attrOf(writer, "target"))).node);
    if (!target)
        return;
    const Plug tx(target->self, attrOf(*target, "tx"));
    const AttrIndex parent = attrOf(*target, "parentMatrix");
    out.output = attrOf(writer, "sum");
    out.writes.push_back({tx, scene.storedNumber(tx)});
    out.reads.push_back(Plug(target->self, parent));
    out.watches.push_back({target->self, parent});
    out.watches.push_back({target->self, kNoAttr});
}

void evaluatePush(Evaluation& e) {
    ++g_evaluations;
    const Node& self = e.node();
    const Plug target(e.scene().source(e.plug(attrOf(self, "target"))).node, 0);
    if (!e.scene().isValid(target.node))
        return;
    const Node& node = *e.scene().node(target.node);
    const NodeHandle parent = node.parents.front();
    double above = 0.0;
    if (const Node* p = e.scene().node(parent); p && p->findAttr("worldMatrix") != kNoAttr)
        above = e.matrix(Plug(parent, p->findAttr("worldMatrix"), 0))[3][0];
    const Plug tx(target.node, attrOf(node, "tx"));
    const bool on = e.number(attrOf(self, "on")) != 0.0;
    e.set(tx, on ? e.number(attrOf(self, "amount")) - above : e.scene().ownNumber(tx));
}

const NodeTypeRow kPusher{"pusher", "base",       8, "kPusher", kPusherRows, 4, nullptr,
                          0,        evaluatePush, 0, nullptr,   declarePush};

class Writers : public ::testing::Test {
  protected:
    static const TypeRegistry& registry() {
        static const TypeRegistry types = [] {
            TypeRegistry r;
            const NodeTypeRow* const rows[] = {&kBaseType, &kTwice, &kWorldType, &kGroupType,
                                               &kPusher};
            r.add(rows, 5);
            return r;
        }();
        return types;
    }
    Writers() {
        script.run(R"(
            group top; group middle top; group leaf middle
            top.tx 100; middle.tx 5; leaf.tx 1)");
        middle = script.node("middle"), leaf = script.node("leaf");
    }
    void tie() { script.run("pusher pusher; middle.message -> pusher.target; pusher.amount 130"); }
    Plug plug(NodeHandle node, const char* path) { return scene.findPlug(node, path); }
    double worldX(NodeHandle node) { return scene.matrix(plug(node, "worldMatrix[0]"))[3][0]; }

    Log log;
    Scene scene{registry(), log};
    SceneScript script{scene};
    NodeHandle middle, leaf;
};

TEST_F(Writers, WriteBeforeAnythingBelowIsRead) {
    script.run("leaf == 106 0 0");
    tie();
    script.run(R"(
        leaf == 131 0 0; middle.tx == 30
        pusher.amount 150; middle.tx == 50; leaf == 151 0 0
        top.tx 120; leaf == 151 0 0)");
    EXPECT_EQ(scene.storedNumber(plug(middle, "tx")), 30);
}

TEST_F(Writers, AreEvaluatedOnceForOneChange) {
    tie();
    worldX(leaf);
    const std::pair<const char*, int> changes[] = {
        {"leaf == 131 0 0", 0},
        {"pusher.amount 150; leaf == 151 0 0", 1},
        {"leaf.tx 2; leaf == 152 0 0", 0}};  // below the written plug: no reason to write again
    for (const auto& [change, evaluations] : changes) {
        g_evaluations = 0;
        script.run(change);
        for (int i = 0; i < 4; ++i)
            worldX(leaf);
        EXPECT_EQ(g_evaluations, evaluations) << change;
    }
}

TEST_F(Writers, FeedWhatIsConnectedToTheWrittenPlug) {
    tie();
    script.run(R"(
        twice twice; twice end; middle.tx -> twice.input; twice.output -> end.input
        end.output == 120
        pusher.amount 101; end.output == 4)");
}

TEST_F(Writers, StandBeforeASourceAndGiveWayWhenOff) {
    script.run("twice twice; twice.output -> middle.tx; middle == 102 0 0");
    tie();
    script.run("middle == 130 0 0; twice.output == 2");
    EXPECT_EQ(scene.ownNumber(plug(middle, "tx")), 2);
    script.run("twice.output -x middle.tx");
    EXPECT_EQ(scene.ownNumber(plug(middle, "tx")), 2);
    script.run("middle.tx 9; middle == 130 0 0; pusher.on 0; middle == 109 0 0");
}

TEST_F(Writers, ASecondWriterLeavesTheOwnNumbersAndWinsWhereBothWrite) {
    tie();
    script.run(R"(
        leaf == 131 0 0
        pusher other; leaf.message -> other.target; other.amount 200; leaf == 200 0 0
        pusher.on 0; middle == 105 0 0; pusher.on 1; middle == 130 0 0
        pusher later; middle.message -> later.target; later.amount 111; middle == 111 0 0)");
}

TEST_F(Writers, AreNoConnections) {
    tie();
    worldX(leaf);
    EXPECT_TRUE(scene.incoming(middle).empty());
    EXPECT_EQ(scene.outgoing(middle).size(), 1u);  // the message alone
    EXPECT_TRUE(scene.isSettable(plug(middle, "tx")));
    EXPECT_EQ(scene.writerOf(plug(middle, "tx")), plug(script.node("pusher"), "sum"));
    EXPECT_TRUE(scene.writerOf(plug(leaf, "tx")).isNull());
}

TEST_F(Writers, FollowTheirTiesAndLeaveTheLastValue) {
    tie();
    script.run(R"(
        leaf == 131 0 0
        middle.message -x pusher.target; leaf == 131 0 0
        pusher.amount 500; leaf == 131 0 0
        leaf.message -> pusher.target; leaf == 500 0 0)");
    ASSERT_TRUE(scene.reparent(leaf, {}));
    script.run("leaf == 500 0 0; leaf.tx == 500");
    scene.deleteNodes({script.node("pusher")});
    script.run("leaf == 500 0 0");
    EXPECT_TRUE(scene.writerOf(plug(leaf, "tx")).isNull());
    tie();
    script.run("middle == 130 0 0");
    scene.deleteNodes({middle});
    script.run("pusher.sum == 0");
}

TEST_F(Writers, GoAlongWhenAnotherScenesContentsComeIn) {
    Scene other(registry(), log);
    other.succeed(scene);
    NodeHandle group, writer;
    ASSERT_TRUE(other.createNode("group", "group", {}, group));
    ASSERT_TRUE(other.createNode("pusher", "writer", {}, writer));
    ASSERT_TRUE(other.connect(other.findPlug(group, "message"), other.findPlug(writer, "target")));
    tie();
    EXPECT_EQ(worldX(leaf), 131);
    scene.takeContents(other);
    EXPECT_EQ(worldX(group), 1);
    scene.setNumber(plug(writer, "amount"), 3);
    EXPECT_EQ(worldX(group), 3);
    scene.clear();
    EXPECT_EQ(scene.nodeCount(), 1u);
}

// b does not use what a gives it, so the ring has one answer whichever end is read first.
TEST_F(Writers, ARingThatIsNoneComesOutRight) {
    script.run(R"(
        twice a; twice b; a.output -> b.input; b.output -> a.input
        b.factor 0; b.pointX 7; b.output == 7; a.output == 14
        b.pointX 8; b.output == 8; a.output == 16)");
}

}  // namespace
}  // namespace torvel::test
