#include "app/rig_check.h"

#include <algorithm>
#include <ostream>
#include <set>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "edit/placing.h"
#include "graph/scene.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

using Nodes = std::vector<NodeHandle>;

const char* const kEveryEdit = "Freeze Rotations, Orient Joints, Flip Orientation";
const char* const kParkingGroup = "tempOldSkeletonGroup";

// One skeleton and what hangs on it.
struct Skeleton {
    const Scene& scene;
    NodeHandle top;
    Nodes joints;    ///< depth first, the top one first
    Nodes clusters;  ///< that any of its joints drives directly, in order of first reach

    bool holds(NodeHandle node) const {
        return std::find(joints.begin(), joints.end(), node) != joints.end();
    }
};

void collectJoints(const Scene& scene, NodeHandle node, Nodes& out) {
    out.push_back(node);
    for (NodeHandle child : scene.node(node)->children)
        if (isJoint(scene, child))
            collectJoints(scene, child, out);
}

void addOnce(Nodes& list, NodeHandle node) {
    if (std::find(list.begin(), list.end(), node) == list.end())
        list.push_back(node);
}

Skeleton skeletonOf(const Scene& scene, NodeHandle top) {
    Skeleton found{scene, top, {}, {}};
    collectJoints(scene, top, found.joints);
    for (NodeHandle joint : found.joints)
        for (const Scene::Connection& link : scene.outgoing(joint))
            if (scene.isType(link.target.node, "skinCluster"))
                addOnce(found.clusters, link.target.node);
    return found;
}

// --- the rules: each gives the nodes it is about
// ---------------------------------------------------------------

// Joints that do not stand where the skin was bound.
Nodes posedAway(const Skeleton& s) {
    Nodes out;
    for (NodeHandle cluster : s.clusters) {
        const Plug matrices = s.scene.findPlug(cluster, "matrix"),
                   binds = s.scene.findPlug(cluster, "bindPreMatrix");
        for (const std::int32_t i : s.scene.elementIndices(matrices)) {
            const NodeHandle joint = s.scene.source(s.scene.element(matrices, i)).node;
            const M44d bound = s.scene.matrix(s.scene.element(binds, i));
            if (s.holds(joint) && !nearlyEqual(worldMatrix(s.scene, joint) * bound, M44d(), 1e-4))
                addOnce(out, joint);
        }
    }
    return out;
}

bool isConstraint(const Scene& scene, NodeHandle node) {
    return scene.node(node)->type->derivesFrom("constraint");
}

bool isRebuilt(const Scene& scene, NodeHandle constraint) {
    for (const char* type :
         {"parentConstraint", "orientConstraint", "pointConstraint", "aimConstraint"})
        if (scene.isType(constraint, type))
            return true;
    return false;
}

Nodes constraintsBelow(const Skeleton& s) {
    Nodes out;
    for (NodeHandle joint : s.joints)
        for (NodeHandle child : s.scene.node(joint)->children)
            if (isConstraint(s.scene, child))
                out.push_back(child);
    return out;
}

Nodes lostConstraints(const Skeleton& s) {
    Nodes out = constraintsBelow(s);
    out.erase(std::remove_if(out.begin(), out.end(),
                             [&](NodeHandle node) { return isRebuilt(s.scene, node); }),
              out.end());
    return out;
}

bool hasTargetAmong(const Skeleton& s, NodeHandle constraint) {
    const Scene& scene = s.scene;
    const Plug targets = scene.findPlug(constraint, "target");
    for (const Scene::Connection& link : scene.incoming(constraint))
        for (AttrIndex a = link.target.attr; a != kNoAttr;
             a = scene.node(constraint)->attr(a).parent)
            if (a == targets.attr && s.holds(link.source.node))
                return true;
    return false;
}

Nodes drivenFromWithin(const Skeleton& s) {
    Nodes out;
    for (NodeHandle constraint : constraintsBelow(s))
        if (isRebuilt(s.scene, constraint) && hasTargetAmong(s, constraint))
            out.push_back(constraint);
    return out;
}

// Constraints elsewhere that have a joint of the skeleton as a target.
Nodes outsideConstraints(const Skeleton& s) {
    Nodes out;
    for (NodeHandle joint : s.joints)
        for (const Scene::Connection& link : s.scene.outgoing(joint)) {
            const NodeHandle node = link.target.node;
            const Node* owner = s.scene.node(node);
            const bool inside =
                owner->isDag() && !owner->parents.empty() && s.holds(owner->parents.front());
            if (isConstraint(s.scene, node) && !inside && hasTargetAmong(s, node))
                addOnce(out, node);
        }
    return out;
}

Nodes ikHandles(const Skeleton& s) {
    Nodes out;
    for (NodeHandle joint : s.joints)
        for (const Scene::Connection& link : s.scene.outgoing(joint))
            if (s.scene.isType(link.target.node, "ikHandle"))
                addOnce(out, link.target.node);
    return out;
}

Nodes geometryBelow(const Skeleton& s) {
    Nodes out;
    for (NodeHandle joint : s.joints)
        for (NodeHandle child : s.scene.node(joint)->children)
            if (!isJoint(s.scene, child) && !isConstraint(s.scene, child) &&
                !s.scene.isType(child, "ikEffector"))
                out.push_back(child);
    return out;
}

Nodes namesakes(const Skeleton& s) {
    Nodes out;
    const std::string& name = s.scene.node(s.top)->name;
    s.scene.forEachNode([&](const Node& node) {
        if (node.name == name && node.self != s.top)
            out.push_back(node.self);
    });
    return out;
}

Nodes parkingGroup(const Skeleton& s) {
    Nodes out;
    s.scene.forEachNode([&](const Node& node) {
        if (node.name == kParkingGroup)
            out.push_back(node.self);
    });
    return out;
}

Nodes lockedRotations(const Skeleton& s) {
    Nodes out;
    for (NodeHandle joint : s.joints)
        for (const char* attr : {"rotate", "rotateX", "rotateY", "rotateZ"})
            if (s.scene.isLocked(s.scene.findPlug(joint, attr)))
                addOnce(out, joint);
    return out;
}

bool carriesShape(const Scene& scene, const Plug& plug) {
    const AttrInfo& info = scene.info(plug);
    return info.is(kGeometryIn) || info.is(kGeometryOut) || info.type == AttrType::Mesh ||
           (info.type == AttrType::Any && info.longName != "message");
}

// Everything downstream of the clusters, along geometry only or along every connection.
Nodes downstream(const Skeleton& s, bool geometryOnly) {
    Nodes queue = s.clusters;
    std::set<std::uint32_t> seen;
    for (NodeHandle node : queue)
        seen.insert(node.index);
    for (std::size_t at = 0; at < queue.size(); ++at)
        for (const Scene::Connection& link : s.scene.outgoing(queue[at])) {
            const bool geometry =
                carriesShape(s.scene, link.source) && carriesShape(s.scene, link.target);
            if ((geometry || !geometryOnly) && seen.insert(link.target.node.index).second)
                queue.push_back(link.target.node);
        }
    return queue;
}

Nodes notEvaluated(const Skeleton& s) {
    Nodes out;
    for (NodeHandle node : downstream(s, true))
        if (!s.scene.node(node)->unknownType.empty())
            out.push_back(node);
    return out;
}

Nodes throughShading(const Skeleton& s) {
    const Nodes direct = downstream(s, true);
    Nodes out;
    for (NodeHandle node : downstream(s, false))
        if (s.scene.isType(node, "mesh") &&
            std::find(direct.begin(), direct.end(), node) == direct.end())
            out.push_back(node);
    return out;
}

struct Rule {
    const char* name;
    const char* tools;
    bool needsSkin;
    Nodes (*find)(const Skeleton&);
    const char* text;
};

const Rule kRules[] = {
    {"posed-away", kEveryEdit, true, posedAway,
     "The skeleton is posed away from where its skin was bound: the mesh takes its rest shape. Go "
     "to the bind pose first."},
    {"lost-constraint", kEveryEdit, true, lostConstraints,
     "These constraints are not rebuilt on the new joints, only parent, orient, point and aim "
     "constraints are."},
    {"driver-within", kEveryEdit, true, drivenFromWithin,
     "These constraints follow joints of the same skeleton, which are replaced: they are lost. "
     "Make them again after."},
    {"outside-constraint", kEveryEdit, true, outsideConstraints,
     "These constraints follow joints of the skeleton, which are replaced: they lose them. Make "
     "them again after."},
    {"ik", kEveryEdit, true, ikHandles,
     "These IK handles solve joints that are replaced: they are lost. Make them again after."},
    {"geometry-below", kEveryEdit, true, geometryBelow,
     "These objects below joints are copied with the skeleton, the originals go with the old one. "
     "Parent them elsewhere."},
    {"namesake", kEveryEdit, true, namesakes,
     "Other nodes bear the top joint's name: the closing bind finds it ambiguous. Rename them."},
    {"parking-group", kEveryEdit, true, parkingGroup,
     "A group is left from a run that stopped: the closing bind meets two roots of one name. "
     "Delete it."},
    {"locked-rotation", kEveryEdit, false, lockedRotations,
     "Rotations are locked: these joints are refused. Unlock them."},
    {"not-evaluated", kEveryEdit, true, notEvaluated,
     "These nodes between skin and mesh are kept but not evaluated here: points cannot be judged "
     "behind them."},
    {"through-shading", kEveryEdit, true, throughShading,
     "These meshes share a shading group with the skin and are taken for bound ones: the closing "
     "bind takes them too."},
};

std::string nameOf(const Scene& scene, NodeHandle node) {
    return scene.names().shortest(node);
}

void applyRules(const Skeleton& skeleton, std::vector<Finding>& out) {
    for (const Rule& rule : kRules) {
        if (rule.needsSkin && skeleton.clusters.empty())
            continue;
        Finding finding{rule.name, rule.tools, nameOf(skeleton.scene, skeleton.top), {}, rule.text};
        for (NodeHandle node : rule.find(skeleton))
            finding.nodes.push_back(nameOf(skeleton.scene, node));
        if (!finding.nodes.empty())
            out.push_back(finding);
    }
}

}  // namespace

std::vector<Finding> checkRig(const Scene& scene) {
    std::vector<Finding> out;
    for (NodeHandle node : scene.allNodes())
        if (isJoint(scene, node) && !isJoint(scene, parentOf(scene, node)))
            applyRules(skeletonOf(scene, node), out);
    return out;
}

void printFindings(const std::vector<Finding>& findings, std::ostream& out) {
    constexpr std::size_t kShown = 8;
    for (const Finding& finding : findings) {
        out << finding.skeleton << "  [" << finding.rule << "]  " << finding.tools << "\n  "
            << finding.text << "\n ";
        for (std::size_t i = 0; i < std::min(kShown, finding.nodes.size()); ++i)
            out << ' ' << finding.nodes[i];
        if (finding.nodes.size() > kShown)
            out << " and " << finding.nodes.size() - kShown << " more";
        out << '\n';
    }
    if (findings.empty())
        out << "nothing to report\n";
    else
        out << findings.size() << (findings.size() == 1 ? " finding\n" : " findings\n");
    out.flush();
}

std::string findingsJson(const std::vector<Finding>& findings) {
    QJsonArray list;
    for (const Finding& finding : findings) {
        QJsonArray nodes;
        for (const std::string& node : finding.nodes)
            nodes.append(QString::fromStdString(node));
        list.append(QJsonObject{{"rule", QString::fromStdString(finding.rule)},
                                {"tools", QString::fromStdString(finding.tools)},
                                {"skeleton", QString::fromStdString(finding.skeleton)},
                                {"nodes", nodes},
                                {"text", QString::fromStdString(finding.text)}});
    }
    return QJsonDocument(QJsonObject{{"findings", list}})
        .toJson(QJsonDocument::Indented)
        .toStdString();
}

}  // namespace torvel
