// Nodes that write plugs of other nodes: a made-up type whose `sum` puts itself into `tx` of the
// node that its message input names.
#include "graph/writers.h"
#include "small_graph.h"

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
        top = make("group", "top");
        middle = make("group", "middle", top);
        leaf = make("group", "leaf", middle);
        scene.setNumber(plug(top, "tx"), 100);
        scene.setNumber(plug(middle, "tx"), 5);
        scene.setNumber(plug(leaf, "tx"), 1);
    }
    NodeHandle make(const char* type, const char* name, NodeHandle parent = {}) {
        NodeHandle made;
        const Status status = scene.createNode(type, name, parent, made);
        EXPECT_TRUE(status) << status.text();
        return made;
    }
    void tie() {
        pusher = make("pusher", "pusher");
        ASSERT_TRUE(scene.connect(plug(middle, "message"), plug(pusher, "target")));
        scene.setNumber(plug(pusher, "amount"), 130);
    }
    Plug plug(NodeHandle node, const char* path) { return scene.findPlug(node, path); }
    double worldX(NodeHandle node) { return scene.matrix(plug(node, "worldMatrix[0]"))[3][0]; }

    Log log;
    Scene scene{registry(), log};
    NodeHandle top, middle, leaf, pusher;
};

TEST_F(Writers, WriteBeforeAnythingBelowIsRead) {
    EXPECT_EQ(worldX(leaf), 106);
    tie();
    EXPECT_EQ(worldX(leaf), 131);
    EXPECT_EQ(scene.number(plug(middle, "tx")), 30);
    scene.setNumber(plug(pusher, "amount"), 150);
    EXPECT_EQ(scene.number(plug(middle, "tx")), 50);
    EXPECT_EQ(worldX(leaf), 151);
    scene.setNumber(plug(top, "tx"), 120);
    EXPECT_EQ(worldX(leaf), 151);
    EXPECT_EQ(scene.storedNumber(plug(middle, "tx")), 30);
}

TEST_F(Writers, AreEvaluatedOnceForOneChange) {
    tie();
    worldX(leaf);
    g_evaluations = 0;
    for (int i = 0; i < 5; ++i)
        worldX(leaf);
    EXPECT_EQ(g_evaluations, 0);
    scene.setNumber(plug(pusher, "amount"), 150);
    for (int i = 0; i < 5; ++i)
        worldX(leaf);
    EXPECT_EQ(g_evaluations, 1);
    scene.setNumber(plug(leaf, "tx"), 2);  // below the written plug: no reason to write again
    EXPECT_EQ(worldX(leaf), 152);
    EXPECT_EQ(g_evaluations, 1);
}

TEST_F(Writers, FeedWhatIsConnectedToTheWrittenPlug) {
    tie();
    const NodeHandle twice = make("twice", "twice"), end = make("twice", "end");
    ASSERT_TRUE(scene.connect(plug(middle, "tx"), plug(twice, "input")));
    ASSERT_TRUE(scene.connect(plug(twice, "output"), plug(end, "input")));
    EXPECT_EQ(scene.number(plug(end, "output")), 120);
    scene.setNumber(plug(pusher, "amount"), 101);
    EXPECT_EQ(scene.number(plug(end, "output")), 4);
}

TEST_F(Writers, StandBeforeASourceAndGiveWayWhenOff) {
    const NodeHandle twice = make("twice", "twice");
    ASSERT_TRUE(scene.connect(plug(twice, "output"), plug(middle, "tx")));
    EXPECT_EQ(worldX(middle), 102);
    tie();
    EXPECT_EQ(worldX(middle), 130);
    scene.number(plug(twice, "output"));
    EXPECT_EQ(scene.ownNumber(plug(middle, "tx")), 2);
    ASSERT_TRUE(scene.disconnect(plug(twice, "output"), plug(middle, "tx")));
    EXPECT_EQ(scene.ownNumber(plug(middle, "tx")), 2);
    scene.setNumber(plug(middle, "tx"), 9);
    EXPECT_EQ(worldX(middle), 130);
    scene.setNumber(plug(pusher, "on"), 0);
    EXPECT_EQ(worldX(middle), 109);
}

TEST_F(Writers, AreNoConnections) {
    tie();
    worldX(leaf);
    EXPECT_TRUE(scene.incoming(middle).empty());
    EXPECT_EQ(scene.outgoing(middle).size(), 1u);  // the message alone
    EXPECT_TRUE(scene.isSettable(plug(middle, "tx")));
    EXPECT_EQ(scene.writerOf(plug(middle, "tx")), plug(pusher, "sum"));
    EXPECT_TRUE(scene.writerOf(plug(leaf, "tx")).isNull());
}

TEST_F(Writers, FollowTheirTiesAndLeaveTheLastValue) {
    tie();
    EXPECT_EQ(worldX(leaf), 131);
    ASSERT_TRUE(scene.disconnect(plug(middle, "message"), plug(pusher, "target")));
    EXPECT_EQ(worldX(leaf), 131);
    scene.setNumber(plug(pusher, "amount"), 500);
    EXPECT_EQ(worldX(leaf), 131);
    ASSERT_TRUE(scene.connect(plug(leaf, "message"), plug(pusher, "target")));
    EXPECT_EQ(worldX(leaf), 500);
    ASSERT_TRUE(scene.reparent(leaf, {}));
    EXPECT_EQ(worldX(leaf), 500);
    EXPECT_EQ(scene.number(plug(leaf, "tx")), 500);
    scene.deleteNodes({pusher});
    EXPECT_EQ(worldX(leaf), 500);
    EXPECT_TRUE(scene.writerOf(plug(leaf, "tx")).isNull());
    tie();
    EXPECT_EQ(worldX(middle), 130);
    scene.deleteNodes({middle});
    EXPECT_EQ(scene.number(plug(pusher, "sum")), 0);
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
    const NodeHandle a = make("twice", "a"), b = make("twice", "b");
    ASSERT_TRUE(scene.connect(plug(a, "output"), plug(b, "input")));
    ASSERT_TRUE(scene.connect(plug(b, "output"), plug(a, "input")));
    scene.setNumber(plug(b, "factor"), 0);
    scene.setNumber(plug(b, "pointX"), 7);
    EXPECT_EQ(scene.number(plug(b, "output")), 7);
    EXPECT_EQ(scene.number(plug(a, "output")), 14);
    scene.setNumber(plug(b, "pointX"), 8);
    EXPECT_EQ(scene.number(plug(b, "output")), 8);
    EXPECT_EQ(scene.number(plug(a, "output")), 16);
}

}  // namespace
}  // namespace torvel::test
