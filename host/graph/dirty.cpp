#include <unordered_set>
#include <vector>

#include "graph/evaluator.h"
#include "graph/scene.h"
#include "graph/seen_plugs.h"
#include "graph/slot_walk.h"
#include "graph/writers.h"

namespace torvel {
namespace {

// Push side: marks everything that hangs below a change, iteratively, and stops at what is dirty
// already.
class DirtySpread {
  public:
    explicit DirtySpread(Scene& scene) : m_scene(scene) {}

    void run(const Plug& changed) {
        m_queue.push_back(changed);
        workOff();
    }

    // An output that is to be evaluated again, clean or not.
    void runOutput(const Plug& output) {
        Node* node = m_scene.node(output.node);
        if (!node)
            return;
        node->slot(output.attr).state |= kClean;
        markOutput(*node, output.attr);
        workOff();
    }

  private:
    void workOff() {
        while (!m_queue.empty()) {
            const Plug plug = m_queue.back();
            m_queue.pop_back();
            if (Node* node = m_scene.node(plug.node); node && plug.attr < node->attrCount())
                spread(*node, plug);
        }
    }

    void spread(Node& node, const Plug& plug) {
        for (AttrIndex a = plug.attr; a != kNoAttr; a = node.attr(a).parent)
            markOutputs(node, node.attr(a).affects);
        affectsOfChildren(node, plug.attr);
        const WorldAttrs& world = node.type->world;
        if (plug.attr == world.parent && world.parent != kNoAttr)
            markParentMoved(node);
        tellTargets(node, plug);
        if (node.writerLinks)
            tellReaders(node, kNoAttr);
        if (!node.unknownType.empty())
            spreadUnknown(node, plug);
    }

    void affectsOfChildren(Node& node, AttrIndex attr) {
        for (AttrIndex child : node.attr(attr).children) {
            markOutputs(node, node.attr(child).affects);
            affectsOfChildren(node, child);
        }
    }

    void markOutputs(Node& node, const std::vector<AttrIndex>& outputs) {
        for (AttrIndex output : outputs)
            markOutput(node, outputRoot(node, output));
    }

    void markOutput(Node& node, AttrIndex output) {
        if (!node.peek(output) || !(node.peek(output)->state & kClean))
            return;  // what hangs below it is dirty, too
        node.slot(output).state &= ~kClean;
        markOutputs(node, node.attr(output).affects);
        queueTargetsBelow(node, Plug(node.self, output));
        if (node.writerLinks)
            tellWriterLinks(node, output);
        if (output == node.type->world.world)
            for (NodeHandle child : node.children)
                markParentMoved(*m_scene.node(child));
    }

    void tellReaders(const Node& node, AttrIndex output) {
        for (const WriterLinks::Reader& reader : node.writerLinks->readers)
            if (Node* writer = reader.output == output ? m_scene.node(reader.writer.node) : nullptr)
                markOutput(*writer, reader.writer.attr);
    }

    void tellWriterLinks(const Node& node, AttrIndex output) {
        tellReaders(node, output);
        if (output == node.writerLinks->output)
            m_queue.insert(m_queue.end(), node.writerLinks->writes.begin(),
                           node.writerLinks->writes.end());
    }

    void markParentMoved(Node& child) {
        const WorldAttrs& world = child.type->world;
        const AttrIndex all[] = {world.parent, world.parentInverse, world.world,
                                 world.worldInverse};
        for (AttrIndex attr : all)
            if (attr != kNoAttr)
                m_outputs.push_back({child.self, attr});
        if (m_draining)
            return;
        m_draining = true;  // a chain of children is worked off here, not by recursion
        while (!m_outputs.empty()) {
            const Plug next = m_outputs.back();
            m_outputs.pop_back();
            markOutput(*m_scene.node(next.node), next.attr);
        }
        m_draining = false;
    }

    void queueTargets(const Slot& slot) {
        if (slot.links)
            m_queue.insert(m_queue.end(), slot.links->targets.begin(), slot.links->targets.end());
    }

    void queueTargetsBelow(Node& node, const Plug& plug) {
        walkSlot(node, plug, nullptr, [this](const Plug&, Slot& slot) { queueTargets(slot); });
    }

    // A plain plug feeds what is connected to it, to a compound or array above it, or to its
    // children.
    void tellTargets(Node& node, const Plug& plug) {
        for (Plug at = plug; !at.isNull(); at = m_scene.parentPlug(at))
            tellOwnTargets(at);
        for (std::size_t i = 0;
             !m_scene.isArrayPlug(plug) && i < node.attr(plug.attr).children.size(); ++i)
            tellChildren(node, m_scene.child(plug, static_cast<int>(i)));
    }

    // A plain plug has no clean state to stop at, and may stand in a ring.
    void tellOwnTargets(const Plug& plug) {
        const Slot* slot = m_scene.peekSlot(plug);
        if (slot && slot->links && !slot->links->targets.empty() && !m_plainSeen.again(plug))
            queueTargets(*slot);
    }

    void tellChildren(Node& node, const Plug& plug) {
        tellOwnTargets(plug);
        for (std::size_t i = 0;
             !m_scene.isArrayPlug(plug) && i < node.attr(plug.attr).children.size(); ++i)
            tellChildren(node, m_scene.child(plug, static_cast<int>(i)));
    }

    // An unknown node may hand geometry on: whatever changes in it is passed to all it feeds, once
    // for a change.
    void spreadUnknown(Node& node, const Plug& changed) {
        if (m_scene.source(changed).isNull() || !m_unknownSeen.insert(node.self.index).second)
            return;
        for (const Scene::Connection& c : m_scene.outgoing(node.self))
            if (c.target.node != node.self)
                m_queue.push_back(c.target);
    }

    Scene& m_scene;
    std::vector<Plug> m_queue;
    std::vector<Plug> m_outputs;
    SeenPlugs m_plainSeen;
    std::unordered_set<std::uint32_t> m_unknownSeen;  // unknown nodes may stand in a ring
    bool m_draining = false;
};

}  // namespace

void Scene::changed(const Plug& plug) {
    if (m_everEvaluated && !m_reading)
        DirtySpread(*this).run(plug);
}

void Scene::endReading() {
    m_reading = false;
    forEachNode([](Node& n) {
        for (AttrIndex attr = 0; attr < n.attrCount(); ++attr)
            if (n.attr(attr).is(kOutput | kOpaque) && n.peek(attr))
                n.slot(attr).state &= ~kClean;
    });
}

void Scene::outputChanged(const Plug& output) {
    DirtySpread(*this).runOutput(output);
}

void Scene::setDirty(const Plug& plug) {
    const Node* n = node(plug.node);
    if (n && plug.attr < n->attrCount())
        changed(plug);
}

}  // namespace torvel
