#include <random>

#include "graph/journal.h"
#include "graph/slot_walk.h"
#include "host/files/file_fixture.h"

namespace torvel::test {
namespace {

class JournalTest : public FileTest {
  protected:
    JournalTest() { scene().journal().setOn(true); }

    /// All that users can see of a scene: its file, its selection and every value that was given.
    std::string state() {
        std::string out = saved();
        for (const SelectionItem& item : scene().selection().items())
            out += "selected " + scene().names().shortest(item.node) + "\n";
        for (const NodeHandle handle : scene().allNodes())
            walkNode(*scene().node(handle), [&](const Plug& plug, const Slot& slot) {
                if (scene().info(plug).is(kOutput))
                    return;
                const std::uint32_t given = slot.state & ~(kClean | kComputing | kReported);
                if (given || scene().isElement(plug))
                    out += scene().plugName(plug) + ' ' + std::to_string(given) + ' ' +
                           std::to_string((given & kSet) ? slot.number : 0.0) + '\n';
            });
        return out;
    }

    std::size_t below(std::size_t limit) { return m_random() % limit; }
    NodeHandle any() {
        const std::vector<NodeHandle> all = scene().allNodes();
        return all[all.size() - 1 - below(std::min<std::size_t>(all.size() - 1, 12))];
    }
    Plug anyPlug() {
        static const char* const kPaths[] = {
            "tx", "t",  "r",     "opm", "v",  "input1D[0]", "input3D[2]", "input3D[1].input3Dy",
            "i1", "ox", "extra", "wm",  "o3", "pm[0]",      "output3Dx",  "matrixIn[1]",
            "ro", "sz", "omat",  "pim", "il", "cl[3].clp",  "matrixSum",  "nts"};
        return scene().findPlug(any(), kPaths[below(std::size(kPaths))]);
    }

    void editOnce() {
        static const char* const kTypes[] = {"transform",        "joint",      "multiplyDivide",
                                             "plusMinusAverage", "multMatrix", "remapValue",
                                             "orientConstraint", "skinCluster"};
        NodeHandle made;
        AttrIndex attr = kNoAttr;
        AttrInfo info;
        info.longName = "extra";
        const NodeHandle node = any();
        const bool isDefault = scene().node(node)->isDefault;
        const Plug plug = anyPlug(), other = anyPlug();
        switch (below(16)) {
            case 0:
            case 1:
            case 2: ignore(scene().createNode(kTypes[below(8)], "n", any(), made)); break;
            case 3: scene().rename(node, "renamed"); break;
            case 4: ignore(scene().reparent(node, any())); break;
            case 5: ignore(scene().addParent(node, any())); break;
            case 6:
                if (!isDefault && below(2))
                    scene().deleteNodes({node});
                break;
            case 7: scene().setLocked(plug, below(2) == 0); break;
            case 8: scene().setKeyable(plug, below(2) == 0); break;
            case 9: ignore(scene().addAttribute(node, info, kNoAttr, attr)); break;
            case 10: scene().deleteAttribute(node, scene().node(node)->findAttr("extra")); break;
            case 11: scene().removeElement(plug); break;
            case 12: ignore(scene().disconnect(scene().source(plug), plug)); break;
            case 13: scene().selection().replaceNodes({node, any()}); break;
            case 14: scene().changeFacts(node, [&](NodeFacts& facts) { facts.uuid += "u"; }); break;
            default:
                if (!plug.isNull() && !scene().info(plug).is(kOutput) && below(2))
                    scene().setNumber(plug, static_cast<double>(below(100)));
                else
                    ignore(scene().connect(plug, other));
        }
    }

    std::mt19937 m_random{1};
};

// The log tells of rings that the edits close; they are not looked at here.
TEST_F(JournalTest, UndoLeadsBackAndRedoForthThroughRandomEdits) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        m_random.seed(seed);
        newScene(session);
        std::vector<std::string> states{state()};
        for (int step = 0; step < 25; ++step) {
            const std::size_t before = scene().journal().undoNames().size();
            {
                const EditScope scope(scene(), "step");
                for (std::size_t i = below(6); i-- > 0;)
                    editOnce();
            }
            if (scene().journal().undoNames().size() > before)
                states.push_back(state());
        }
        for (std::size_t at = states.size() - 1; at-- > 0;) {
            ASSERT_TRUE(scene().journal().undo());
            const std::string now = state();
            ASSERT_TRUE(now == states[at])
                << "seed " << seed << " back to " << at << ", " << firstDifference(states[at], now);
        }
        EXPECT_FALSE(scene().journal().undo());
        for (std::size_t at = 1; at < states.size(); ++at) {
            ASSERT_TRUE(scene().journal().redo());
            const std::string now = state();
            ASSERT_TRUE(now == states[at]) << "seed " << seed << " forth to " << at << ", "
                                           << firstDifference(states[at], now);
        }
    }
}

TEST_F(JournalTest, ChunksBearNamesAndBrushStrokesShareOneValue) {
    NodeHandle a;
    ASSERT_TRUE(scene().createNode("transform", "a", {}, a));
    Journal& journal = scene().journal();
    {
        const EditScope outer(scene(), "Paint"), inner(scene(), "Stroke");
        for (int i = 0; i < 5; ++i)
            scene().setNumber(plug("a.tx"), i);
        EXPECT_FALSE(journal.undo());  // while it is open
    }
    EXPECT_EQ(journal.undoNames().back(), "Paint");
    ASSERT_TRUE(journal.undo());
    EXPECT_EQ(number("a.tx"), 0.0);
    EXPECT_EQ(journal.redoNames(), std::vector<std::string>{"Paint"});
    scene().setNumber(plug("a.ty"), 2);
    EXPECT_FALSE(journal.redo());  // another way was taken
    journal.setOn(false);
    EXPECT_FALSE(journal.undo());
    EXPECT_EQ(number("a.ty"), 2.0);
}

struct Watch : SceneListener {
    std::string heard;
    void nodeCreated(NodeHandle) override { heard += "node "; }
    void nodeRenamed(NodeHandle, const std::string&) override { heard += "name "; }
    void nodeReparented(NodeHandle) override { heard += "parent "; }
    void nodeFactsChanged(NodeHandle) override { heard += "facts "; }
    void valueChanged(const Plug&) override { heard += "value "; }
    void stateChanged(const Plug&) override { heard += "state "; }
    void attributeAdded(const Plug&) override { heard += "attribute "; }
    void attributeRemoved(const Plug&) override { heard += "attributeGone "; }
    void elementAdded(const Plug&) override { heard += "element "; }
    void elementRemoved(const Plug&) override { heard += "elementGone "; }
    void connectionChanged(const Plug&, const Plug&, bool) override { heard += "link "; }
    void documentChanged() override { heard += "document "; }
    void selectionChanged() override { heard += "selection "; }
};

TEST_F(JournalTest, ListenersHearOfEveryKindOfChange) {
    Watch watch;
    scene().addListener(&watch);
    NodeHandle a, p;
    AttrIndex made;
    AttrInfo info;
    info.longName = "extra";
    const auto heard = [&] { return std::exchange(watch.heard, ""); };
    ASSERT_TRUE(scene().createNode("transform", "a", {}, a));
    ASSERT_TRUE(scene().createNode("plusMinusAverage", "p", {}, p));
    EXPECT_EQ(heard(), "node node ");
    scene().rename(a, "b");
    scene().changeFacts(a, [](NodeFacts& facts) { facts.locked = false; });
    scene().setLocked(plug("b.tx"), true);
    EXPECT_EQ(heard(), "name facts state ");
    scene().setNumber(plug("p.input1D[4]"), 3);
    ASSERT_TRUE(scene().connect(plug("b.ty"), plug("p.input1D[5]")));
    EXPECT_EQ(heard(), "element value element link ");
    scene().removeElement(plug("p.input1D[4]"));
    ASSERT_TRUE(scene().addAttribute(a, info, kNoAttr, made));
    scene().deleteAttribute(a, made);
    EXPECT_EQ(heard(), "elementGone attribute attributeGone ");
    scene().changeDocument([](Document& document) { document.fileName = "x"; });
    scene().selection().replace(a);
    EXPECT_EQ(heard(), "document selection ");
    scene().removeListener(&watch);
}

}  // namespace
}  // namespace torvel::test
