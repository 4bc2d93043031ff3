#include "edit/deletion.h"

#include <algorithm>
#include <set>
#include <unordered_set>

#include "edit/constraint/edit.h"
#include "nodes/shape/mesh.h"
#include "nodes/shape/nurbs_curve.h"

namespace torvel {
namespace {

std::uint64_t keyOf(NodeHandle node) {
    return (static_cast<std::uint64_t>(node.index) << 32) | node.generation;
}

class Doom {
  public:
    explicit Doom(const Scene& scene) : m_scene(scene) {}

    void add(NodeHandle top) {
        std::vector<NodeHandle> stack{top};
        while (!stack.empty()) {
            const NodeHandle at = stack.back();
            stack.pop_back();
            if (!m_seen.insert(keyOf(at)).second)
                continue;
            m_nodes.push_back(at);
            const std::vector<NodeHandle>& children = m_scene.node(at)->children;
            for (std::size_t i = children.size(); i-- > 0;)
                if (!livesElsewhere(children[i]))
                    stack.push_back(children[i]);
        }
    }

    void spread() {
        for (std::size_t i = 0; i < m_nodes.size(); ++i) {
            const NodeHandle at = m_nodes[i];
            for (const Scene::Connection& c : m_scene.incoming(at))
                consider(c.source.node);
            for (const Scene::Connection& c : m_scene.outgoing(at))
                consider(c.target.node);
        }
    }

    const std::vector<NodeHandle>& nodes() const { return m_nodes; }
    std::vector<NodeHandle> take() { return std::move(m_nodes); }
    bool has(NodeHandle node) const { return m_seen.count(keyOf(node)) != 0; }

  private:
    bool livesElsewhere(NodeHandle child) const {
        const std::vector<NodeHandle>& parents = m_scene.node(child)->parents;
        return std::any_of(parents.begin(), parents.end(),
                           [this](NodeHandle p) { return !has(p); });
    }

    void consider(NodeHandle node) {
        const Node* self = m_scene.node(node);
        if (self && !has(node) && !self->isDefault && !self->locked && node != m_scene.world() &&
            goesAlong(*self))
            add(node);
    }

    bool goesAlong(const Node& node) const {
        const NodeType& type = *node.type;
        if (type.is(kConstraintType))
            return hasNoTarget(node.self);
        if (type.derivesFrom("ikHandle"))
            return losesSource(node.self, "startJoint") || losesSource(node.self, "endEffector");
        if (type.derivesFrom("ikEffector"))
            return feedsDoomed(node.self, "ikHandle") && feedsOnlyDoomed(node.self);
        if (type.derivesFrom("dagPose"))
            return allSourcesDoomed(node.self, "members");
        if (type.derivesFrom("objectSet"))
            return isDeformerSet(node);
        if (type.is(kShapeType))
            return m_scene.number(m_scene.findPlug(node.self, "intermediateObject")) != 0.0 &&
                   feedsOnlyDoomed(node.self);
        return (isHistory(type) || type.derivesFrom("animCurve") ||
                type.derivesFrom("unitConversion")) &&
               feedsOnlyDoomed(node.self);
    }

    static bool isHistory(const NodeType& type) {
        return type.is(kHistoryMaker) || type.is(kDeformerType) || type.derivesFrom("groupParts") ||
               type.derivesFrom("groupId") || type.derivesFrom("tweak");
    }

    // Sets, messages and shading do not keep a node alive.
    bool feedsOnlyDoomed(NodeHandle node) const {
        bool any = false;
        for (const Scene::Connection& c : m_scene.outgoing(node)) {
            const AttrType kind = m_scene.info(c.source).type;
            const bool counts =
                kind != AttrType::Message && !m_scene.isType(c.target.node, "objectSet");
            if (counts && !has(c.target.node))
                return false;
            any = any || has(c.target.node);
        }
        return any;
    }

    bool feedsDoomed(NodeHandle node, const char* type) const {
        for (const Scene::Connection& c : m_scene.outgoing(node))
            if (has(c.target.node) && m_scene.isType(c.target.node, type))
                return true;
        return false;
    }

    bool losesSource(NodeHandle node, const char* attr) const {
        const Plug source = m_scene.source(m_scene.findPlug(node, attr));
        return !source.isNull() && has(source.node);
    }

    bool allSourcesDoomed(NodeHandle node, const char* arrayAttr) const {
        const Plug array = m_scene.findPlug(node, arrayAttr);
        bool any = false;
        for (std::size_t i = 0; !array.isNull() && i < m_scene.elementCount(array); ++i) {
            const Plug source = m_scene.source(m_scene.elementAt(array, i));
            if (!source.isNull() && !has(source.node))
                return false;
            any = any || !source.isNull();
        }
        return any;
    }

    // A set that serves a deformer, all of whose members and users go.
    bool isDeformerSet(const Node& node) const {
        bool serves = false;
        for (const Scene::Connection& c : m_scene.incoming(node.self)) {
            if (!has(c.source.node))
                return false;
            serves = serves || m_scene.node(c.source.node)->type->is(kDeformerType);
        }
        return serves;
    }

    bool hasNoTarget(NodeHandle constraint) const;

    const Scene& m_scene;
    std::vector<NodeHandle> m_nodes;
    std::unordered_set<std::uint64_t> m_seen;
};

// Which target elements of a constraint are fed by other nodes, and by which.
struct TargetFeed {
    std::int32_t element;
    NodeHandle node;
};

std::vector<TargetFeed> targetFeeds(const Scene& scene, NodeHandle constraint) {
    std::vector<TargetFeed> feeds;
    const Plug array = scene.findPlug(constraint, "target");
    for (const Scene::Connection& c : scene.incoming(constraint)) {
        if (array.isNull() || c.source.node == constraint)
            continue;
        for (Plug at = c.target; !at.isNull(); at = scene.parentPlug(at))
            if (at.attr == array.attr && scene.isElement(at)) {
                feeds.push_back({scene.logicalIndex(at), c.source.node});
                break;
            }
    }
    return feeds;
}

bool Doom::hasNoTarget(NodeHandle constraint) const {
    std::set<std::int32_t> alive, lost;
    for (const TargetFeed& feed : targetFeeds(m_scene, constraint))
        (has(feed.node) ? lost : alive).insert(feed.element);
    for (std::int32_t element : lost)
        alive.erase(element);
    return alive.empty() && !lost.empty();
}

Doom doomOf(const Scene& scene, const std::vector<NodeHandle>& nodes) {
    Doom doom(scene);
    for (NodeHandle node : nodes)
        if (scene.isValid(node))
            doom.add(node);
    doom.spread();
    return doom;
}

struct LostTarget {
    NodeHandle constraint;
    std::int32_t element;
};

std::vector<LostTarget> lostTargets(const Scene& scene, const Doom& doom) {
    std::vector<NodeHandle> constraints;
    for (NodeHandle node : doom.nodes())
        for (const Scene::Connection& c : scene.outgoing(node))
            if (scene.node(c.target.node)->type->is(kConstraintType) && !doom.has(c.target.node) &&
                std::find(constraints.begin(), constraints.end(), c.target.node) ==
                    constraints.end())
                constraints.push_back(c.target.node);
    std::vector<LostTarget> lost;
    for (NodeHandle handle : constraints) {
        std::set<std::int32_t> elements;
        for (const TargetFeed& feed : targetFeeds(scene, handle))
            if (doom.has(feed.node))
                elements.insert(feed.element);
        for (std::int32_t element : elements)
            lost.push_back({handle, element});
    }
    return lost;
}

}  // namespace

std::vector<NodeHandle> withDependents(const Scene& scene, const std::vector<NodeHandle>& nodes) {
    return doomOf(scene, nodes).take();
}

namespace {

// A shape that stays shows on what its maker made last.
void keepShapesOf(Scene& scene, const Doom& doom) {
    for (NodeHandle maker : doom.nodes()) {
        if (!scene.node(maker)->type->is(kHistoryMaker))
            continue;
        for (const Scene::Connection& c : scene.outgoing(maker))
            if (!doom.has(c.target.node) && scene.node(c.target.node)->type->is(kShapeType))
                bakeGeometry(scene, c.target.node, c.target.node);
    }
}

}  // namespace

Status deleteWithDependents(Scene& scene, const std::vector<NodeHandle>& nodes) {
    for (NodeHandle handle : nodes) {
        const Node* node = scene.node(handle);
        if (node && (handle == scene.world() || node->isDefault))
            return Status::failure("Cannot delete the default node '" + node->name + "'.");
    }
    Doom doom = doomOf(scene, nodes);
    const std::vector<LostTarget> lost = lostTargets(scene, doom);
    for (NodeHandle handle : doom.nodes())
        if (scene.node(handle)->locked)
            return Status::failure("Cannot delete the locked node '" + scene.node(handle)->name +
                                   "'.");
    keepShapesOf(scene, doom);
    const std::vector<NodeHandle> doomed = doom.take();
    for (const LostTarget& target : lost)
        removeConstraintTarget(scene, target.constraint, target.element);
    scene.deleteNodes(doomed);
    return Status::ok();
}

void bakeGeometry(Scene& scene, NodeHandle from, NodeHandle to) {
    if (const auto curve = curveOf(scene, from))
        setCurve(scene, to, curve);
    else if (scene.isType(from, "mesh") && !scene.source(scene.findPlug(from, "inMesh")).isNull())
        setOwnMesh(scene, to, *meshPoints(scene, from));
    else if (scene.isType(from, "mesh") && from != to)
        copyOwnMesh(scene, from, to);
}

Status deleteHistory(Scene& scene, NodeHandle shape) {
    if (!scene.isValid(shape))
        return Status::ok();
    const bool isCurve = scene.isType(shape, "nurbsCurve");
    const Plug input = scene.findPlug(shape, isCurve ? "create" : "inMesh");
    const Plug source = scene.source(input);
    if (source.isNull())
        return Status::ok();
    bakeGeometry(scene, shape, shape);
    // What fed the shape alone goes with the connection, judged as if the shape went.
    std::vector<NodeHandle> doomed = withDependents(scene, {shape});
    doomed.erase(std::remove_if(doomed.begin(), doomed.end(),
                                [&](NodeHandle n) {
                                    const Node& node = *scene.node(n);
                                    const bool constraint = node.type->is(kConstraintType);
                                    return n == shape || constraint ||
                                           node.type->derivesFrom("animCurve");
                                }),
                 doomed.end());
    if (!scene.source(input).isNull())
        ignore(scene.disconnect(source, input));
    scene.deleteNodes(doomed);
    return Status::ok();
}

}  // namespace torvel
