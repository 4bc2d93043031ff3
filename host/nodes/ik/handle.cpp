#include "nodes/ik/handle.h"

#include <algorithm>

#include "nodes/core/quick_node.h"
#include "nodes/ik/solve.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

NodeHandle sourceNode(const Scene& scene, NodeHandle node, AttrIndex attr) {
    return scene.source(Plug(node, attr)).node;
}

IkMethod methodOf(const Scene& scene, NodeHandle solver) {
    if (scene.isType(solver, "ikRPsolver"))
        return IkMethod::RotatePlane;
    return scene.isType(solver, "ikSCsolver") ? IkMethod::SingleChain : IkMethod::None;
}

// Keys under a handle are the FK pose that ikBlend blends with; every other driver keeps its
// channel.
bool isWritable(const Scene& scene, const Plug& plug) {
    Plug source = scene.effectiveSource(plug);
    if (!source.isNull() && scene.isType(source.node, "unitConversion"))
        source = scene.effectiveSource(scene.findPlug(source.node, "input"));
    return source.isNull() || scene.isType(source.node, "animCurve");
}

double handValue(const Scene& scene, NodeHandle joint, int axis) {
    const Plug remembered(joint, ikAttrs().fkRotate + 1 + static_cast<AttrIndex>(axis));
    const Slot* slot = scene.peekSlot(remembered);
    if (slot && (slot->state & kSet))
        return slot->number;
    return scene.storedNumber(
        Plug(joint, transformAttrs().rotate + 1 + static_cast<AttrIndex>(axis)));
}

void declareRotates(const Scene& scene, NodeHandle joint, WriterDeclaration& out) {
    for (int axis = 0; axis < 3; ++axis) {
        const Plug plug(joint, transformAttrs().rotate + 1 + static_cast<AttrIndex>(axis));
        if (!isWritable(scene, plug))
            continue;
        out.writes.push_back({plug, handValue(scene, joint, axis)});
        if (const Plug source = scene.effectiveSource(plug); !source.isNull())
            out.reads.push_back(source);
    }
}

// What the solver reads of a joint; nearly all of it has no source and needs no visit.
void declareInputs(const Scene& scene, NodeHandle node, WriterDeclaration& out) {
    const TransformAttrs& t = transformAttrs();
    const JointAttrs& j = jointAttrs();
    const AttrIndex numbers[] = {t.rotateOrder, j.segmentScaleCompensate,
                                 dagAttrs().offsetParentMatrix};
    const AttrIndex vectors[] = {t.translate,   t.scale,          t.rotateAxis,
                                 j.jointOrient, j.preferredAngle, j.inverseScale};
    const auto add = [&](AttrIndex attr) {
        if (!scene.effectiveSource(Plug(node, attr)).isNull())
            out.reads.push_back(Plug(node, attr));
    };
    for (AttrIndex attr : numbers)
        add(attr);
    for (AttrIndex attr : vectors)
        for (AttrIndex child = attr + 1; child < attr + 4; ++child)
            add(child);
}

void declareOffset(const Scene& scene, NodeHandle node, WriterDeclaration& out) {
    const Plug offset(node, dagAttrs().offsetParentMatrix);
    out.reads.push_back(Plug(node, dagAttrs().matrix));
    if (!scene.source(offset).isNull())
        out.reads.push_back(offset);
}

std::string notEvaluated(const Scene& scene, NodeHandle handle, NodeHandle solver) {
    return scene.names().shortest(handle) + ": the solver '" + scene.typeName(solver) +
           "' is not evaluated; the joints of this ikHandle keep their rotations.";
}

// Nodes from `top` down to `bottom`, both included; none when `top` does not stand above it.
void climb(const Scene& scene, NodeHandle top, NodeHandle bottom, std::vector<NodeHandle>& path) {
    for (const Node* at = scene.node(bottom); at && at->self != scene.world();) {
        path.push_back(at->self);
        if (at->self == top) {
            std::reverse(path.begin(), path.end());
            return;
        }
        at = at->parents.empty() ? nullptr : scene.node(at->parents.front());
    }
    path.clear();
}

}  // namespace

IkParts ikPartsOf(const Scene& scene, NodeHandle handle) {
    IkParts parts;
    if (scene.isType(handle, "ikHandle"))
        findIkParts(scene, handle, parts);
    return parts;
}

void findIkParts(const Scene& scene, NodeHandle handle, IkParts& parts) {
    parts.path.clear();
    parts.joints.clear();
    const IkAttrs& a = ikAttrs();
    parts.start = sourceNode(scene, handle, a.startJoint);
    parts.effector = sourceNode(scene, handle, a.endEffector);
    parts.solver = sourceNode(scene, handle, a.ikSolver);
    parts.method = methodOf(scene, parts.solver);
    const Node* effector = scene.node(parts.effector);
    if (!isJoint(scene, parts.start) || !effector || effector->parents.empty())
        return;
    climb(scene, parts.start, effector->parents.front(), parts.path);
    for (NodeHandle node : parts.path)
        if (isJoint(scene, node))
            parts.joints.push_back(node);
}

NodeHandle ikEndJoint(const Scene& scene, NodeHandle effector) {
    if (!scene.isType(effector, "ikEffector"))
        return {};
    const AttrIndex translate = transformAttrs().translate;
    for (AttrIndex attr : {translate, translate + 1, translate + 2, translate + 3})
        if (const Plug source = scene.source(Plug(effector, attr)); isJoint(scene, source.node))
            return source.node;
    return {};
}

void solveAllHandles(const Scene& scene) {
    scene.forEachNode([&](const Node& node) {
        if (node.type->declareWrites)
            scene.evaluate(Plug(node.self, ikAttrs().solution));
    });
}

void forgetFkRotates(Scene& scene, const std::vector<NodeHandle>& joints) {
    for (NodeHandle joint : joints)
        for (AttrIndex child = ikAttrs().fkRotate + 1; child < ikAttrs().fkRotate + 4; ++child)
            if (scene.peekSlot(Plug(joint, child))) {
                Slot& slot = *scene.slotFor(Plug(joint, child));
                slot.number = 0.0;
                slot.state &= ~kSet;
            }
}

void declareIkHandle(const Scene& scene, const Node& writer, WriterDeclaration& out) {
    const IkParts parts = ikPartsOf(scene, writer.self);
    if (parts.path.empty() || parts.solver.isNull())
        return;
    out.output = ikAttrs().solution;
    if (parts.method == IkMethod::None) {
        out.notice = notEvaluated(scene, writer.self, parts.solver);
        return;
    }
    const AttrIndex parentMatrix = dagAttrs().parentMatrix;
    out.watches.push_back({parts.start, parentMatrix});
    out.reads.push_back(Plug(parts.start, parentMatrix));
    for (NodeHandle node : parts.path) {
        out.watches.push_back({node, kNoAttr});
        if (!isJoint(scene, node)) {
            declareOffset(scene, node, out);
            continue;
        }
        declareInputs(scene, node, out);
        declareRotates(scene, node, out);
    }
    out.watches.push_back({parts.effector, kNoAttr});
    declareOffset(scene, parts.effector, out);
    if (const NodeHandle system = scene.names().lookUp("ikSystem");
        scene.isType(system, "ikSystem")) {
        out.watches.push_back({system, kNoAttr});
        out.reads.push_back(
            Plug(system, ikAttrs().globalSolve));  // last: the solver looks for it there
    }
}

}  // namespace torvel
