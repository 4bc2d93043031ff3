#include "edit/copy.h"

#include <unordered_map>

#include "edit/channels.h"
#include "edit/placing.h"
#include "edit/deletion.h"
#include "edit/sets.h"
#include "graph/slot_walk.h"
#include "nodes/ik/handle.h"

namespace torvel {
namespace {

using AttrMap = std::unordered_map<AttrIndex, AttrIndex>;

// Places of deleted attributes stay empty in the original, so added attributes may get other
// positions.
AttrMap copyAddedAttributes(Scene& scene, const Node& from, NodeHandle to) {
    AttrMap map;
    for (AttrIndex i = static_cast<AttrIndex>(from.type->attrs.size()); i < from.attrCount(); ++i) {
        AttrInfo info = from.attr(i);
        if (info.longName.empty() || info.is(kOpaque))
            continue;
        AttrIndex parent = info.parent, made = kNoAttr;
        if (parent != kNoAttr)
            parent = map.count(parent) ? map[parent] : kNoAttr;
        info.children.clear();
        info.affects.clear();
        info.dependsOn.clear();
        info.bulkOwner = kNoAttr;
        info.childNumber = 0;
        if (scene.addAttribute(to, info, parent, made))
            map[i] = made;
    }
    return map;
}

void copySlot(Scene& scene, const Plug& from, const Slot& slot, Plug to) {
    if (scene.info(from).is(kOutput))
        return;
    scene.takeValue(to, slot);
}

// Driven plugs give the copy the value they have now.
void copyDrivenValue(Scene& scene, const Plug& from, const Plug& to) {
    for (const Plug& leaf : numericLeaves(scene, from)) {
        Plug target = to;
        target.attr = to.attr + (leaf.attr - from.attr);  // the children stand in the same order
        scene.setNumber(target, scene.number(leaf));
    }
    if (scene.info(from).type == AttrType::Matrix)
        scene.setMatrix(to, scene.matrix(from));
    else if (scene.info(from).type == AttrType::String)
        scene.setText(to, scene.text(from));
}

}  // namespace

void copyValues(Scene& scene, NodeHandle from, NodeHandle to) {
    Node& source = *scene.node(from);
    const AttrIndex own = static_cast<AttrIndex>(source.type->attrs.size());
    AttrMap added = copyAddedAttributes(scene, source, to);
    const auto mapped = [&](const Plug& plug, Plug& out) {
        out = plug;
        out.node = to;
        if (plug.attr >= own) {
            const auto it = added.find(plug.attr);
            out.attr = it == added.end() ? kNoAttr : it->second;
        }
        return out.attr != kNoAttr;
    };
    walkNode(source, [&](const Plug& plug, Slot& slot) {
        Plug target;
        if (mapped(plug, target))
            copySlot(scene, plug, slot, target);
    });
    for (const Scene::Connection& c : scene.incoming(from)) {
        Plug target;
        if (mapped(c.target, target))
            copyDrivenValue(scene, c.target, target);
    }
    scene.changeFacts(to, [&](NodeFacts& facts) {
        facts.keptText = source.keptText;
        facts.keptHead = source.keptHead;
        facts.unknownType = source.unknownType;
    });
}

namespace {

std::uint64_t keyOf(NodeHandle node) {
    return (static_cast<std::uint64_t>(node.index) << 32) | node.generation;
}

class TreeCopy {
  public:
    TreeCopy(Scene& scene, const CopyOptions& options, CopiedNodes& made)
        : m_scene(scene), m_options(options), m_made(made) {}

    Status run(NodeHandle root, NodeHandle parent, const std::string& wantedName) {
        const std::string name = wantedName.empty() ? m_scene.node(root)->name : wantedName;
        if (Status done = copyNode(root, parent, name); !done)
            return done;
        for (std::size_t i = 0; i < m_made.size() && m_options.withChildren; ++i)
            if (Status done = copyChildren(m_made[i].first, m_made[i].second); !done)
                return done;
        for (const auto& [from, to] : m_made)
            copyLinks(from, to);
        linkInverseScale(m_scene, parent, m_made.front().second);
        return Status::ok();
    }

  private:
    Status copyNode(NodeHandle from, NodeHandle parent, const std::string& name) {
        NodeHandle to;
        const std::string type = m_scene.node(from)->type->name;
        if (Status done = m_scene.createNode(type, name, parent, to); !done)
            return done;
        m_made.emplace_back(from, to);
        m_copies[keyOf(from)] = to;
        copyValues(m_scene, from, to);
        if (m_scene.node(from)->type->is(kShapeType))
            bakeGeometry(m_scene, from, to);
        return Status::ok();
    }

    Status copyChildren(NodeHandle from, NodeHandle to) {
        const std::vector<NodeHandle> children = m_scene.node(from)->children;
        for (NodeHandle child : children) {
            const Node& node = *m_scene.node(child);
            if (node.type->is(kShapeType) && !m_options.withShapes)
                continue;
            const auto known = m_copies.find(keyOf(child));
            const Status done = known != m_copies.end() ? m_scene.addParent(known->second, to)
                                                        : copyNode(child, to, childName(node.name));
            if (!done)
                return done;
        }
        return Status::ok();
    }

    std::string childName(const std::string& name) const {
        if (!m_options.renameChildren)
            return name;
        std::string stem = name;
        while (stem.size() > 1 && stem.back() >= '0' && stem.back() <= '9')
            stem.pop_back();
        return m_scene.names().numbered(stem);
    }

    void copyLinks(NodeHandle from, NodeHandle to) {
        for (const Scene::Connection& c : m_scene.incoming(from)) {
            const auto inside = m_copies.find(keyOf(c.source.node));
            const bool scaleLink =
                m_scene.info(c.target).longName == "inverseScale" && inside != m_copies.end();
            if (!scaleLink && !m_options.inputConnections)
                continue;
            Plug source = c.source, target = c.target;
            target.node = to;
            if (inside != m_copies.end())
                source.node = inside->second;
            ignore(m_scene.connect(source, target));
        }
        if (!m_scene.node(from)->type->is(kShapeType))
            return;
        for (const Scene::Connection& c : m_scene.outgoing(from))
            if (m_scene.isType(c.target.node, "shadingEngine") &&
                m_scene.info(c.source).type != AttrType::Message)
                ignore(addToSet(m_scene, c.target.node, to));
    }

    Scene& m_scene;
    const CopyOptions& m_options;
    CopiedNodes& m_made;
    std::unordered_map<std::uint64_t, NodeHandle> m_copies;
};

}  // namespace

Status copyTree(Scene& scene, NodeHandle root, NodeHandle parent, const std::string& wantedName,
                const CopyOptions& options, CopiedNodes& made) {
    made.clear();
    const Node* node = scene.node(root);
    if (!node || root == scene.world() || node->isDefault)
        return Status::failure("This node cannot be duplicated.");
    solveAllHandles(scene);  // joints are copied as they are shown
    const Status done = TreeCopy(scene, options, made).run(root, parent, wantedName);
    if (!done && !made.empty()) {
        scene.deleteNodes({made.front().second});
        made.clear();
    }
    return done;
}

}  // namespace torvel
