#include "nodes/transform/transform.h"

#include <cmath>

#include "graph/evaluation.h"

namespace torvel {
namespace {

// --- reading inputs ---

// Inputs of the node under evaluation. What has no connection is read straight from its slot.
class EvaluatedInputs {
  public:
    explicit EvaluatedInputs(const Evaluation& evaluation)
        : m_evaluation(evaluation), m_node(evaluation.node()), m_linked(m_node.linkedInputs != 0) {}
    /// Of an attribute without a compound above it.
    double number(AttrIndex attr) const {
        return m_linked && hasSource(attr) ? m_evaluation.number(attr) : stored(attr);
    }
    V3d vec3(AttrIndex attr) const {
        const AttrIndex first = attr + 1;  // the children follow their compound
        if (!m_linked || !m_node.mayBeLinked(attr))
            return {stored(first), stored(first + 1), stored(first + 2)};
        if (hasSource(attr))
            return fed(attr);
        return {number(first), number(first + 1), number(first + 2)};
    }
    bool isFed(AttrIndex compound) const {
        return m_linked && (hasSource(compound) || hasSource(compound + 1));
    }

  private:
    double stored(AttrIndex attr) const { return storedIn(m_node, attr); }
    static double storedIn(const Node& node, AttrIndex attr) {
        const Slot* slot = node.peek(attr);
        return slot && (slot->state & kSet) ? slot->number : node.attr(attr).defaultValue;
    }
    // From a compound of another node; nothing stands behind most of those.
    V3d fed(AttrIndex attr) const {
        const Plug& source = m_node.peek(attr)->links->source;
        const Node* from = m_evaluation.scene().node(source.node);
        const AttrIndex first = attr + 1;
        if (!from || source.attr >= from->attrCount() || from->attr(source.attr).arrayDepth != 0 ||
            from->attr(source.attr).children.size() != 3 || from->mayBeLinked(source.attr) ||
            from->writerLinks)
            return {m_evaluation.number(first), m_evaluation.number(first + 1),
                    m_evaluation.number(first + 2)};
        const std::vector<AttrIndex>& parts = from->attr(source.attr).children;
        return {storedIn(*from, parts[0]), storedIn(*from, parts[1]), storedIn(*from, parts[2])};
    }
    bool hasSource(AttrIndex attr) const {
        const Slot* slot = m_node.peek(attr);
        return slot && slot->links && !slot->links->source.isNull();
    }

    const Evaluation& m_evaluation;
    const Node& m_node;
    bool m_linked;
};

// The same for code outside an evaluation.
class SceneInputs {
  public:
    SceneInputs(const Scene& scene, NodeHandle node) : m_scene(scene), m_node(node) {}
    double number(AttrIndex attr) const { return m_scene.number(Plug(m_node, attr)); }
    V3d vec3(AttrIndex attr) const {
        return {number(attr + 1), number(attr + 2), number(attr + 3)};
    }
    bool isFed(AttrIndex compound) const {
        return !m_scene.effectiveSource(Plug(m_node, compound)).isNull() ||
               !m_scene.effectiveSource(Plug(m_node, compound + 1)).isNull();
    }

  private:
    const Scene& m_scene;
    NodeHandle m_node;
};

template <class Inputs>
void readCommon(const Inputs& in, Channels& out) {
    const TransformAttrs& a = transformAttrs();
    out.translate = in.vec3(a.translate);
    out.rotate = in.vec3(a.rotate);
    out.scale = in.vec3(a.scale);
    out.rotateAxis = in.vec3(a.rotateAxis);
    out.rotateOrder = static_cast<int>(in.number(a.rotateOrder));
}

template <class Inputs>
Channels readTransform(const Inputs& in) {
    const TransformAttrs& a = transformAttrs();
    Channels out;
    readCommon(in, out);
    out.shear = in.vec3(a.shear);
    out.rotatePivot = in.vec3(a.rotatePivot);
    out.rotatePivotTranslate = in.vec3(a.rotatePivotTranslate);
    out.scalePivot = in.vec3(a.scalePivot);
    out.scalePivotTranslate = in.vec3(a.scalePivotTranslate);
    return out;
}

template <class Inputs>
Channels readJoint(const Inputs& in) {
    const JointAttrs& a = jointAttrs();
    Channels out;
    out.isJoint = true;
    readCommon(in, out);
    out.jointOrient = in.vec3(a.jointOrient);
    if (in.number(a.segmentScaleCompensate) != 0.0 && in.isFed(a.inverseScale))
        out.inverseScale = in.vec3(a.inverseScale);
    return out;
}

// --- composing ---

bool isZero(const V3d& v) {
    return v.x == 0.0 && v.y == 0.0 && v.z == 0.0;
}

V3d reciprocal(const V3d& v) {
    V3d out;
    for (int i = 0; i < 3; ++i)
        out[i] = v[i] != 0.0 ? 1.0 / v[i] : 1.0;  // nothing can be taken out of a collapsed axis
    return out;
}

void scaleRows(M44d& m, const V3d& scale) {
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            m[i][j] *= scale[i];
}

void scaleColumns(M44d& m, const V3d& scale) {
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            m[i][j] *= scale[j];
}

void moveBy(M44d& m, const V3d& offset) {
    for (int i = 0; i < 3; ++i)
        m[3][i] += offset[i];
}

M44d spin(const Channels& c) {
    const M44d rotation = eulerMatrix(c.rotate, c.rotateOrder);
    return isZero(c.rotateAxis) ? rotation : eulerMatrix(c.rotateAxis) * rotation;
}

// The product that the public reference of the joint node gives: [S][RO][R][JO][IS][T].
M44d jointMatrix(const Channels& c) {
    M44d m = spin(c);
    if (!isZero(c.jointOrient))
        m = m * eulerMatrix(c.jointOrient);
    if (c.inverseScale != V3d(1.0))
        scaleColumns(m, reciprocal(c.inverseScale));
    scaleRows(m, c.scale);
    moveBy(m, c.translate);
    return m;
}

// The product that the public reference of the transform node gives:
// [Sp^-1][S][Sh][Sp][St][Rp^-1][RA][R][Rp][Rt][T].
M44d transformMatrix(const Channels& c) {
    M44d m = isZero(c.shear) ? M44d() : shearMatrix(c.shear);
    scaleRows(m, c.scale);
    if (!isZero(c.scalePivot))
        m = translationMatrix(-c.scalePivot) * m;
    moveBy(m, c.scalePivot + c.scalePivotTranslate - c.rotatePivot);
    m = m * spin(c);
    moveBy(m, c.rotatePivot + c.rotatePivotTranslate + c.translate);
    return m;
}

// --- the world ---

const M44d kIdentity;

const M44d& heldMatrix(const Scene& scene, const Plug& plug) {
    const Slot* slot = scene.peekSlot(plug);
    const auto* held = slot ? dynamic_cast<const MatrixData*>(slot->data.get()) : nullptr;
    return held ? held->matrix : kIdentity;
}

// Instances of a node whose world matrices are up to date. Spares the walk to the world in the
// usual case.
int evaluatedInstances(const Scene& scene, NodeHandle node) {
    if (node == scene.world())
        return 1;
    const Slot* slot = scene.peekSlot(Plug(node, dagAttrs().worldMatrix));
    if (slot && slot->array && slot->array->logical.size() == 1)
        return 1;
    return scene.instanceCount(node);
}

template <class Inputs>
bool inherits(const Node& node, const Inputs& in) {
    return !node.type->is(kTransformType) || in.number(transformAttrs().inheritsTransform) != 0.0;
}

/// Calls f(instance, matrix of the parent's world) for each instance.
template <class F>
void forEachParentWorld(const Evaluation& evaluation, F&& f) {
    const Scene& scene = evaluation.scene();
    const Node& node = evaluation.node();
    const bool inheriting = inherits(node, EvaluatedInputs(evaluation));
    int instance = 0;
    for (NodeHandle parent : node.parents) {
        const int count = evaluatedInstances(scene, parent);
        for (int i = 0; i < count; ++i, ++instance) {
            const bool plain = !inheriting || parent == scene.world();
            f(instance,
              plain ? kIdentity : heldMatrix(scene, Plug(parent, dagAttrs().worldMatrix, i)));
        }
    }
}

const M44d& offsetParentOf(const Evaluation& evaluation) {
    const AttrIndex attr = dagAttrs().offsetParentMatrix;
    const Slot* slot = evaluation.node().peek(attr);
    return slot && (slot->data || slot->links) ? evaluation.matrix(attr) : kIdentity;
}

void evaluateParents(Evaluation& evaluation, bool inverse) {
    const M44d& offset = offsetParentOf(evaluation);
    const bool isOffset = offset != kIdentity;
    forEachParentWorld(evaluation, [&](int instance, const M44d& world) {
        const M44d parent = isOffset ? offset * world : world;
        evaluation.set(evaluation.plug(evaluation.output(), instance),
                       inverse ? inverseOf(parent) : parent);
    });
}

void evaluateWorlds(Evaluation& evaluation, const M44d& local, bool inverse) {
    const M44d& offset = offsetParentOf(evaluation);
    const M44d offsetLocal = offset != kIdentity ? local * offset : local;
    int count = 0;
    forEachParentWorld(evaluation, [&](int instance, const M44d& world) {
        const M44d m = offsetLocal * world;
        evaluation.set(evaluation.plug(evaluation.output(), instance), inverse ? inverseOf(m) : m);
        ++count;
    });
    if (count == 0)  // the world itself
        evaluation.set(evaluation.plug(evaluation.output(), 0),
                       inverse ? inverseOf(offsetLocal) : offsetLocal);
}

template <class Local>
void evaluateOutputs(Evaluation& evaluation, Local&& local) {
    const DagAttrs& a = dagAttrs();
    const AttrIndex output = evaluation.output();
    if (output == a.worldMatrix || output == a.worldInverseMatrix)
        evaluateWorlds(evaluation, local(), output == a.worldInverseMatrix);
    else if (output == a.parentMatrix || output == a.parentInverseMatrix)
        evaluateParents(evaluation, output == a.parentInverseMatrix);
    else if (output == a.matrix)
        evaluation.set(output, local());
    else if (output == a.inverseMatrix)
        evaluation.set(output, inverseOf(local()));
}

template <class Local>
void evaluateChannels(Evaluation& evaluation, Local&& local) {
    if (evaluation.output() == transformAttrs().xformMatrix)
        evaluation.set(evaluation.output(), local());
    else
        evaluateOutputs(evaluation, local);
}

M44d dagMatrix(const Scene& scene, NodeHandle node, AttrIndex attr, int instance) {
    const Node* n = scene.node(node);
    if (!n || !n->isDag())
        return {};
    return scene.matrix(instance < 0 ? Plug(node, attr) : Plug(node, attr, instance));
}

}  // namespace

bool isJoint(const Scene& scene, NodeHandle node) {
    return scene.isType(node, "joint");
}

bool isTransform(const Scene& scene, NodeHandle node) {
    const Node* n = scene.node(node);
    return n && n->type->is(kTransformType);
}

Channels channelsOf(const Scene& scene, NodeHandle node) {
    if (!isTransform(scene, node))
        return {};
    const SceneInputs in(scene, node);
    return isJoint(scene, node) ? readJoint(in) : readTransform(in);
}

M44d localMatrixOf(const Channels& channels) {
    return channels.isJoint ? jointMatrix(channels) : transformMatrix(channels);
}

M44d localMatrix(const Scene& scene, NodeHandle node) {
    return dagMatrix(scene, node, dagAttrs().matrix, -1);
}

M44d worldMatrix(const Scene& scene, NodeHandle node, int instance) {
    return dagMatrix(scene, node, dagAttrs().worldMatrix, instance);
}

M44d parentWorldMatrix(const Scene& scene, NodeHandle node, int instance) {
    return dagMatrix(scene, node, dagAttrs().parentMatrix, instance);
}

V3d worldPosition(const Scene& scene, NodeHandle node, int instance) {
    return translationOf(worldMatrix(scene, node, instance));
}

M44d parentMatrixUnder(const Scene& scene, NodeHandle node, NodeHandle parent) {
    const Node* n = scene.node(node);
    if (!n || !n->isDag())
        return {};
    const M44d offset = scene.matrix(Plug(node, dagAttrs().offsetParentMatrix));
    return inherits(*n, SceneInputs(scene, node)) ? offset * worldMatrix(scene, parent) : offset;
}

void evaluateDagNode(Evaluation& evaluation) {
    evaluateOutputs(evaluation, [] { return M44d(); });
}

void evaluateTransform(Evaluation& evaluation) {
    evaluateChannels(evaluation,
                     [&] { return transformMatrix(readTransform(EvaluatedInputs(evaluation))); });
}

void evaluateJoint(Evaluation& evaluation) {
    evaluateChannels(evaluation,
                     [&] { return jointMatrix(readJoint(EvaluatedInputs(evaluation))); });
}

}  // namespace torvel
