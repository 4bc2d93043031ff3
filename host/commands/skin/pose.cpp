#include "commands/skin/pose.h"

#include <algorithm>
#include <map>
#include <set>

#include "edit/world_placing.h"
#include "nodes/deform/dag_pose.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

Plug posePlug(const Scene& scene, NodeHandle pose, const char* attr, std::int32_t element) {
    return scene.element(scene.findPlug(pose, attr), element);
}

// Members by node: a pose of a thousand joints asks for a thousand parents.
class MemberTable {
  public:
    MemberTable(const Scene& scene, NodeHandle pose) {
        for (const PoseMember& member : poseMembers(scene, pose))
            m_index.try_emplace(key(member.node), member.logical);
    }
    /// -1: no member.
    std::int32_t find(NodeHandle node) const {
        const auto at = m_index.find(key(node));
        return at == m_index.end() ? -1 : at->second;
    }
    void add(NodeHandle node, std::int32_t logical) { m_index.try_emplace(key(node), logical); }

  private:
    using Key = std::pair<std::uint32_t, std::uint32_t>;
    static Key key(NodeHandle node) { return {node.index, node.generation}; }
    std::map<Key, std::int32_t> m_index;
};

// World matrices of joints come from their bindPose attribute, those of other nodes are held by the
// pose itself.
void takeValues(Scene& scene, NodeHandle pose, NodeHandle node, std::int32_t at) {
    const M44d world = worldMatrix(scene, node);
    if (const auto xform = captureXform(scene, node))
        scene.setData(posePlug(scene, pose, "xformMatrix", at), xform);
    const Plug target = posePlug(scene, pose, "worldMatrix", at);
    if (!isJoint(scene, node)) {
        scene.setMatrix(target, world);
        return;
    }
    const Plug bindPose = scene.findPlug(node, "bindPose");
    scene.setMatrix(bindPose, world);
    if (scene.source(target).isNull())
        ignore(scene.connect(bindPose, target));
}

void linkParent(Scene& scene, NodeHandle pose, const MemberTable& table, NodeHandle node,
                std::int32_t at) {
    const Plug target = posePlug(scene, pose, "parents", at);
    if (!scene.source(target).isNull())
        ignore(scene.disconnect(scene.source(target), target));
    const std::int32_t parent = table.find(parentOf(scene, node));
    ignore(scene.connect(
        parent < 0 ? scene.findPlug(pose, "world") : posePlug(scene, pose, "members", parent),
        target));
}

}  // namespace

std::vector<PoseMember> poseMembers(const Scene& scene, NodeHandle pose) {
    std::vector<PoseMember> out;
    const Plug members = scene.findPlug(pose, "members");
    for (std::size_t i = 0; !members.isNull() && i < scene.elementCount(members); ++i) {
        const Plug element = scene.elementAt(members, i);
        if (const Plug from = scene.source(element); !from.isNull())
            out.push_back({scene.logicalIndex(element), from.node});
    }
    return out;
}

std::vector<NodeHandle> posesOf(const Scene& scene, NodeHandle node, bool bindOnly) {
    NodeHandle top = node;
    for (NodeHandle up = parentOf(scene, node); isTransform(scene, up); up = parentOf(scene, up))
        top = up;
    std::vector<NodeHandle> found;
    scene.forEachNode([&](const Node& candidate) {
        if (!candidate.type->derivesFrom("dagPose") ||
            (bindOnly && scene.number(scene.findPlug(candidate.self, "bindPose")) == 0.0))
            return;
        for (const PoseMember& member : poseMembers(scene, candidate.self))
            if (scene.isAncestor(top, member.node)) {
                found.push_back(candidate.self);
                return;
            }
    });
    std::sort(found.begin(), found.end(), [&](NodeHandle a, NodeHandle b) {
        return scene.node(a)->created < scene.node(b)->created;
    });
    return found;
}

Status createPose(Scene& scene, const std::vector<NodeHandle>& nodes, bool bindPose,
                  const std::string& name, NodeHandle& pose) {
    const std::string wanted =
        name.empty() ? scene.names().numbered(bindPose ? "bindPose" : "dagPose") : name;
    if (const Status made = scene.createNode("dagPose", wanted, {}, pose); !made)
        return made;
    scene.setNumber(scene.findPlug(pose, "bindPose"), bindPose ? 1.0 : 0.0);
    addToPose(scene, pose, nodes);
    return Status::ok();
}

void addToPose(Scene& scene, NodeHandle pose, const std::vector<NodeHandle>& nodes) {
    MemberTable table(scene, pose);
    for (NodeHandle node : nodes) {
        std::int32_t at = table.find(node);
        if (at < 0) {
            at = scene.nextAvailable(scene.findPlug(pose, "members"));
            ignore(scene.connect(scene.findPlug(node, "message"),
                                 posePlug(scene, pose, "members", at)));
            table.add(node, at);
            linkParent(scene, pose, table, node, at);
        }
        takeValues(scene, pose, node, at);
    }
}

void refreshPose(Scene& scene, NodeHandle pose, const std::vector<NodeHandle>& nodes) {
    const Plug members = scene.findPlug(pose, "members");
    for (std::int32_t at : scene.elementIndices(members)) {
        if (!scene.source(scene.element(members, at)).isNull())
            continue;
        for (const char* attr : {"members", "parents", "worldMatrix", "xformMatrix"})
            scene.removeElement(posePlug(scene, pose, attr, at));
    }
    addToPose(scene, pose, nodes);
    const MemberTable table(scene, pose);
    for (const PoseMember& member : poseMembers(scene, pose)) {
        linkParent(scene, pose, table, member.node, member.logical);
        takeValues(scene, pose, member.node, member.logical);
    }
}

bool resetMember(Scene& scene, NodeHandle pose, NodeHandle node) {
    const std::int32_t at = MemberTable(scene, pose).find(node);
    if (at >= 0)
        takeValues(scene, pose, node, at);
    return at >= 0;
}

bool isAtPose(const Scene& scene, NodeHandle pose) {
    for (const PoseMember& member : poseMembers(scene, pose)) {
        const auto held =
            scene.dataAs<MatrixData>(posePlug(scene, pose, "worldMatrix", member.logical));
        if (held && !nearlyEqual(held->matrix, worldMatrix(scene, member.node), 1e-6))
            return false;
    }
    return true;
}

namespace {

constexpr double kPoseTolerance = 1e-9;  // a channel that is this close stands in the pose

struct PlannedMember {
    NodeHandle node;
    Channels channels;
    std::vector<ChannelValue> values;
};

Status unreachable(const Scene& scene, const Plug& plug) {
    return Status::failure("The skeleton cannot reach the bind pose: '" + scene.plugName(plug) +
                           "' is locked or connected.");
}

Status planMember(const Scene& scene, NodeHandle pose, const PoseMember& member,
                  std::vector<PlannedMember>& plan) {
    const auto xform =
        scene.dataAs<XformData>(posePlug(scene, pose, "xformMatrix", member.logical));
    if (!xform)
        return Status::ok();  // held by its world matrix only: moves with its parent
    const Channels wanted = posedChannels(scene, member.node, *xform);
    const std::vector<ChannelValue> values =
        changedChannels(scene, member.node, wanted, kPoseTolerance);
    for (const ChannelValue& value : values)
        if (scene.isLocked(value.plug) || !scene.effectiveSource(value.plug).isNull())
            return unreachable(scene, value.plug);
    plan.push_back({member.node, wanted, values});
    return Status::ok();
}

bool isTopMember(const Scene& scene, NodeHandle pose, const PoseMember& member) {
    const Plug from = scene.source(posePlug(scene, pose, "parents", member.logical));
    return from.isNull() || from.attr == scene.findPlug(pose, "world").attr;
}

}  // namespace

Status restorePose(Scene& scene, NodeHandle pose, bool global) {
    std::vector<PlannedMember> plan;
    const std::vector<PoseMember> members = poseMembers(scene, pose);
    for (const PoseMember& member : members)
        if (const Status status = planMember(scene, pose, member, plan); !status)
            return status;
    for (const PlannedMember& member : plan) {
        const Plug order = Plug(member.node, transformAttrs().rotateOrder);
        if (scene.number(order) != member.channels.rotateOrder)
            scene.setNumber(order, member.channels.rotateOrder);
        for (const ChannelValue& value : member.values)
            scene.setNumber(value.plug, value.value);
    }
    for (const PoseMember& member : members) {
        const auto held =
            scene.dataAs<MatrixData>(posePlug(scene, pose, "worldMatrix", member.logical));
        if (!global || !held || !isTopMember(scene, pose, member) ||
            nearlyEqual(held->matrix, worldMatrix(scene, member.node), 1e-9))
            continue;
        Channels channels = channelsOf(scene, member.node);
        setWorldMatrixChannels(scene, member.node, held->matrix, channels);
        ChannelPlan placing;
        if (const Status status = placing.plan(scene, member.node, channels); !status)
            return status;
        placing.apply(scene);
    }
    return Status::ok();
}

std::vector<NodeHandle> withJointParents(const Scene& scene, const std::vector<NodeHandle>& nodes) {
    std::vector<NodeHandle> out;
    std::set<std::uint32_t> taken;
    for (NodeHandle node : nodes) {
        std::vector<NodeHandle> chain{node};
        for (NodeHandle up = parentOf(scene, node);
             isJoint(scene, node) && isJoint(scene, up) && !taken.count(up.index);
             up = parentOf(scene, up))
            chain.push_back(up);
        for (auto it = chain.rbegin(); it != chain.rend(); ++it)
            if (taken.insert(it->index).second)
                out.push_back(*it);
    }
    return out;
}

}  // namespace torvel
