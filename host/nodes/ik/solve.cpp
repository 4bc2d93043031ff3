#include "nodes/ik/solve.h"

#include <algorithm>

#include <Imath/ImathMatrixAlgo.h>

#include "graph/evaluation.h"
#include "nodes/core/quick_node.h"
#include "nodes/ik/chain.h"
#include "nodes/ik/handle.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

M33d linearOf(const M44d& m) {
    return {m[0][0], m[0][1], m[0][2], m[1][0], m[1][1], m[1][2], m[2][0], m[2][1], m[2][2]};
}

M44d widened(const M33d& m) {
    return {m[0][0], m[0][1], m[0][2], 0.0, m[1][0], m[1][1], m[1][2], 0.0,
            m[2][0], m[2][1], m[2][2], 0.0, 0.0,     0.0,     0.0,     1.0};
}

V3d reciprocal(const V3d& v) {
    return {v.x != 0.0 ? 1.0 / v.x : 1.0, v.y != 0.0 ? 1.0 / v.y : 1.0,
            v.z != 0.0 ? 1.0 / v.z : 1.0};
}

void scaleRows(M33d& m, const V3d& scale) {
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            m[i][j] *= scale[i];
}

bool isFed(const Node& node, AttrIndex attr) {
    const Slot* slot = node.peek(attr);
    return slot && slot->links && !slot->links->source.isNull();
}

// Null while the offset is untouched.
const M44d* offsetParent(const Evaluation& e, const Node& node) {
    const AttrIndex attr = dagAttrs().offsetParentMatrix;
    const Slot* slot = node.peek(attr);
    return slot && (slot->data || isFed(node, attr)) ? &e.matrix(Plug(node.self, attr)) : nullptr;
}

// Three children of a compound, past all plugs where nothing comes in.
V3d vectorOf(const Evaluation& e, const Node& node, AttrIndex compound) {
    if (node.mayBeLinked(compound))
        return e.vec3(Plug(node.self, compound));
    V3d out;
    for (int i = 0; i < 3; ++i) {
        const AttrIndex child = compound + 1 + static_cast<AttrIndex>(i);
        const Slot* slot = node.peek(child);
        out[i] = slot && (slot->state & kSet) ? slot->number : node.attr(child).defaultValue;
    }
    return out;
}

// What of a joint stays as it is while the chain is solved.
struct JointState {
    Node* node;
    V3d translate, scale, preferred;
    M33d axis, orient;  // rotateAxis and jointOrient
    V3d unscale{1.0};   // the parent's scale taken out
    int order;
};

/// One evaluation of one handle. Its buffers stay for the next one.
class HandleSolve {
  public:
    void run(Evaluation& e) {
        findIkParts(e.scene(), e.handle(), m_parts);
        const IkParts& parts = m_parts;
        QuickNode handle(e);
        const double blend =
            isEnabled(e, handle) ? std::clamp(handle.number(ikAttrs().ikBlend), 0.0, 1.0) : 0.0;
        if (parts.method == IkMethod::None || parts.joints.empty())
            return;
        m_joints.clear();
        for (NodeHandle joint : parts.joints)
            m_joints.push_back(readJoint(e, *e.scene().node(joint)));
        if (blend > 0.0) {
            readChain(e, parts);
            readGoal(e, parts.method, handle);
            solveIkChain(m_chain, m_goal, m_scratch, m_turns);
        }
        for (std::size_t k = 0; k < m_joints.size(); ++k)
            writeJoint(e, k, blend);
    }

  private:
    static bool isEnabled(const Evaluation& e, const QuickNode& handle) {
        if (!handle.flag(ikAttrs().solverEnable))
            return false;
        const WriterLinks* links = e.node().writerLinks.get();
        if (!links || links->reads.empty())
            return true;
        const Plug& last = links->reads.back();
        return !e.scene().isType(last.node, "ikSystem") || e.number(last) != 0.0;
    }

    JointState readJoint(const Evaluation& e, Node& node) {
        const TransformAttrs& t = transformAttrs();
        const JointAttrs& j = jointAttrs();
        Evaluation inner(e.scene(), node, kNoAttr);
        const QuickNode in(inner);
        JointState out;
        out.node = &node;
        out.translate = vectorOf(e, node, t.translate);
        out.scale = vectorOf(e, node, t.scale);
        out.preferred = vectorOf(e, node, j.preferredAngle);
        out.order = in.whole(t.rotateOrder);
        out.axis = turnOf(vectorOf(e, node, t.rotateAxis), kXYZ);
        out.orient = turnOf(vectorOf(e, node, j.jointOrient), kXYZ);
        const bool compensates = (isFed(node, j.inverseScale) || isFed(node, j.inverseScale + 1)) &&
                                 in.flag(j.segmentScaleCompensate);
        if (compensates)
            out.unscale = reciprocal(vectorOf(e, node, j.inverseScale));
        return out;
    }

    static M33d turnOf(const V3d& angles, int order) {
        if (angles == V3d(0.0))
            return {};
        return linearOf(eulerMatrix(angles, order));
    }

    void readChain(const Evaluation& e, const IkParts& parts) {
        m_chain.links.assign(m_joints.size(), IkLink());
        for (std::size_t k = 0; k < m_joints.size(); ++k) {
            const JointState& joint = m_joints[k];
            IkLink& link = m_chain.links[k];
            link.scale = joint.scale;
            link.rest = joint.axis * turnOf(joint.preferred, joint.order) * joint.orient;
        }
        // Down the path: what stands between two joints belongs to the lower one.
        M44d between;
        std::size_t next = 0;
        for (NodeHandle handle : parts.path) {
            const Node& node = *e.scene().node(handle);
            const bool isLink = next < m_joints.size() && m_joints[next].node == &node;
            if (const M44d* offset = next == 0 ? nullptr : offsetParent(e, node))
                between = *offset * between;
            if (!isLink) {
                between = e.matrix(Plug(handle, dagAttrs().matrix)) * between;
                continue;
            }
            IkLink& link = m_chain.links[next];
            link.after = linearOf(between);
            scaleRows(link.after, m_joints[next].unscale);
            link.offset = m_joints[next].translate * between;
            between = M44d();
            ++next;
        }
        const Node& effector = *e.scene().node(parts.effector);
        if (const M44d* offset = offsetParent(e, effector))
            between = *offset * between;
        m_chain.end = translationOf(e.matrix(Plug(parts.effector, dagAttrs().matrix))) * between;
    }

    void readGoal(const Evaluation& e, IkMethod method, const QuickNode& handle) {
        const TransformAttrs& t = transformAttrs();
        const AttrIndex parentMatrix = dagAttrs().parentMatrix;
        const JointState& root = m_joints.front();
        const M44d& above = e.matrix(Plug(root.node->self, parentMatrix, 0));
        M33d toWorld = linearOf(above);
        scaleRows(toWorld, root.unscale);
        const M33d fromWorld = toWorld.inverse();
        const M44d& parent = e.matrix(e.plug(parentMatrix, 0));
        const V3d local = vectorOf(e, e.node(), t.translate) +
                          vectorOf(e, e.node(), t.rotatePivot) +
                          vectorOf(e, e.node(), t.rotatePivotTranslate);
        m_goal.position = (local * parent - root.translate * above) * fromWorld;
        m_goal.hasPole = method == IkMethod::RotatePlane;
        if (m_goal.hasPole) {
            m_goal.pole =
                vectorOf(e, e.node(), ikAttrs().poleVector) * linearOf(parent) * fromWorld;
            const double twist = handle.number(ikAttrs().twist);
            m_goal.twist = toWorld.determinant() < 0.0 ? -twist : twist;
            return;
        }
        // A single chain starts from the handle's own orientation: it is that of the start joint at
        // creation.
        const M44d turned = rotationPart(e.matrix(e.plug(dagAttrs().worldMatrix, 0)));
        m_goal.start = m_chain.links.front().rest.transposed() *
                       linearOf(turned * rotationPart(widened(toWorld)).transposed());
    }

    V3d ownRotate(const Scene& scene, const Node& joint) const {
        const AttrIndex rotate = transformAttrs().rotate;
        return {scene.ownNumber(Plug(joint.self, rotate + 1)),
                scene.ownNumber(Plug(joint.self, rotate + 2)),
                scene.ownNumber(Plug(joint.self, rotate + 3))};
    }

    // Between FK and IK the rotation goes along the shortest arc: K. Shoemake, "Animating Rotation
    // with Quaternion Curves", SIGGRAPH 1985.
    V3d solvedRotate(std::size_t k, double blend, const V3d& own) const {
        const JointState& joint = m_joints[k];
        const M44d solved =
            widened(joint.axis.transposed() * m_turns[k] * joint.orient.transposed());
        if (blend >= 1.0)
            return eulerFromMatrix(solved, joint.order, &joint.preferred);
        const Quatd from = Imath::extractQuat(eulerMatrix(own, joint.order)),
                    to = Imath::extractQuat(solved);
        return eulerFromMatrix(Imath::slerpShortestArc(from, to, blend).toMatrix44(), joint.order,
                               &own);
    }

    void writeJoint(Evaluation& e, std::size_t k, double blend) {
        Node& joint = *m_joints[k].node;
        const V3d own = blend < 1.0 || remembersFk(joint) ? ownRotate(e.scene(), joint) : V3d(0.0);
        const V3d shown = blend > 0.0 ? solvedRotate(k, blend, own) : own;
        for (int axis = 0; axis < 3; ++axis) {
            const AttrIndex attr = transformAttrs().rotate + 1 + static_cast<AttrIndex>(axis);
            const WriterLinks::Written* written =
                joint.writerLinks ? joint.writerLinks->find(attr) : nullptr;
            if (!written || written->writer.node != e.handle())
                continue;  // driven by something else, or another handle has it
            Slot& slot = joint.slot(attr);
            slot.number = shown[axis];
            slot.state |= kSet;
            if (blend < 1.0 || remembersFk(joint))
                e.set(Plug(joint.self, ikAttrs().fkRotate + 1 + static_cast<AttrIndex>(axis)),
                      own[axis]);
        }
    }

    static bool remembersFk(const Node& joint) {
        const Slot* slot = joint.peek(ikAttrs().fkRotate + 1);
        return slot && (slot->state & kSet);
    }

    IkParts m_parts;
    std::vector<JointState> m_joints;
    IkChain m_chain;
    IkGoal m_goal;
    IkScratch m_scratch;
    std::vector<M33d> m_turns;
};

}  // namespace

void evaluateIkHandle(Evaluation& evaluation) {
    if (evaluation.output() != ikAttrs().solution) {
        evaluateTransform(evaluation);
        return;
    }
    static thread_local HandleSolve solve;
    solve.run(evaluation);
}

}  // namespace torvel
