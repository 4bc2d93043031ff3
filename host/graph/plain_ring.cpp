#include "graph/plain_ring.h"

#include <unordered_set>

#include "graph/evaluator.h"
#include "graph/seen_plugs.h"

namespace torvel {
namespace {

// Follows plain plugs from one end of the new connection, one plug at a time.
class PlainWalk {
  public:
    PlainWalk(const Scene& scene, const Plug& start, const Plug& goal, bool upwards)
        : m_scene(scene), m_goal(goal), m_upwards(upwards) {
        m_open.push_back(start);
    }

    bool isDone() const { return m_open.empty(); }

    // True when the next plug is the goal, or stands above or below it.
    bool step() {
        const Plug plug = m_open.back();
        m_open.pop_back();
        if (!m_met.insert(plug).second || m_scene.info(plug).is(kOutput))
            return false;
        bool found = visitUnknown(plug);
        for (Plug at = m_scene.parentPlug(plug); !at.isNull(); at = m_scene.parentPlug(at))
            found = visit(at) || found;
        return visitBelow(plug) || found;
    }

  private:
    bool visit(const Plug& plug) {
        if (const Slot* slot = m_scene.peekSlot(plug); slot && slot->links) {
            const Links& links = *slot->links;
            if (!m_upwards)
                m_open.insert(m_open.end(), links.targets.begin(), links.targets.end());
            else if (!links.source.isNull())
                m_open.push_back(links.source);
        }
        return plug == m_goal;
    }

    // Geometry comes through an unknown node.
    bool visitUnknown(const Plug& plug) {
        const Node& node = *m_scene.node(plug.node);
        if (!isHandedOn(node, plug.attr) || !m_met.insert(Plug(node.self, kNoAttr)).second)
            return false;
        for (const Scene::Connection& c :
             m_upwards ? m_scene.incoming(node.self) : m_scene.outgoing(node.self))
            if (isHandedOn(node, (m_upwards ? c.target : c.source).attr))
                m_open.push_back(m_upwards ? c.source : c.target);
        return m_goal.node == node.self && isHandedOn(node, m_goal.attr);
    }

    bool visitBelow(const Plug& plug) {
        bool found = visit(plug);
        const std::size_t count =
            m_scene.isArrayPlug(plug) ? 0 : m_scene.info(plug).children.size();
        for (std::size_t i = 0; i < count; ++i)
            found = visitBelow(m_scene.child(plug, static_cast<int>(i))) || found;
        return found;
    }

    const Scene& m_scene;
    const Plug m_goal;
    const bool m_upwards;
    std::vector<Plug> m_open;
    std::unordered_set<Plug, PlugHash> m_met;
};

}  // namespace

bool closesPlainRing(const Scene& scene, const Plug& source, const Plug& target) {
    const Node* from = scene.node(source.node);
    const Node* to = scene.node(target.node);
    const bool mayBe = source.node == target.node || (from->linkedInputs && !to->feeding.empty());
    if (!mayBe || scene.info(source).is(kOutput))
        return false;
    PlainWalk up(scene, source, target, true), down(scene, target, source, false);
    while (!up.isDone() && !down.isDone())
        if (up.step() || down.step())
            return true;
    return false;
}

}  // namespace torvel
