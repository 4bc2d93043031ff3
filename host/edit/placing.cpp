#include "edit/placing.h"

#include <algorithm>
#include <cmath>

#include "edit/components.h"

namespace torvel {
namespace {

constexpr double kChannelTolerance = 1e-13;  // relative change that is worth a write
constexpr double kLockTolerance = 1e-9;      // and the one that a locked channel may miss
constexpr double kMatrixTolerance =
    1e-6;  // what a joint may be off before a transform is put above it

bool differs(double a, double b, double tolerance) {
    return std::abs(a - b) > tolerance * std::max({1.0, std::abs(a), std::abs(b)});
}

}  // namespace

std::vector<ChannelValue> changedChannels(const Scene& scene, NodeHandle node,
                                          const Channels& wanted, double tolerance) {
    std::vector<ChannelValue> out;
    if (!isTransform(scene, node))
        return out;
    const TransformAttrs& a = transformAttrs();
    struct Part {
        AttrIndex attr;
        const V3d& value;
        bool used;
    };
    const Part parts[] = {
        {a.translate, wanted.translate, true},
        {a.rotate, wanted.rotate, true},
        {a.scale, wanted.scale, true},
        {a.shear, wanted.shear, !wanted.isJoint},
        {a.rotatePivot, wanted.rotatePivot, !wanted.isJoint},
        {a.rotatePivotTranslate, wanted.rotatePivotTranslate, !wanted.isJoint},
        {a.scalePivot, wanted.scalePivot, !wanted.isJoint},
        {a.scalePivotTranslate, wanted.scalePivotTranslate, !wanted.isJoint},
        {a.rotateAxis, wanted.rotateAxis, true},
        {jointAttrs().jointOrient, wanted.jointOrient, wanted.isJoint},
    };
    for (const Part& part : parts)
        for (int i = 0; part.used && i < 3; ++i) {
            const Plug plug = scene.child(Plug(node, part.attr), i);
            if (differs(scene.number(plug), part.value[i], tolerance))
                out.push_back({plug, part.value[i]});
        }
    return out;
}

Status ChannelPlan::plan(const Scene& scene, NodeHandle node, const Channels& wanted) {
    for (const ChannelValue& change : changedChannels(scene, node, wanted, kChannelTolerance)) {
        if (!scene.effectiveSource(change.plug).isNull())
            continue;
        if (!scene.isLocked(change.plug))
            m_writes.push_back(change);
        else if (differs(scene.number(change.plug), change.value, kLockTolerance))
            return Status::failure("The attribute '" + scene.plugName(change.plug) +
                                   "' is locked and cannot be changed.");
    }
    return Status::ok();
}

void ChannelPlan::apply(Scene& scene) const {
    for (const ChannelValue& write : m_writes)
        scene.setNumber(write.plug, write.value);
}

namespace {

// With zero translate the last row of the matrix is what pivots and their rotation bring in.
void placeOrigin(Channels& channels, const M44d& local) {
    channels.translate = V3d(0.0);
    channels.translate = translationOf(local) - translationOf(localMatrixOf(channels));
}

M44d rotateAxisMatrix(const Channels& channels) {
    return eulerMatrix(channels.rotateAxis);
}

bool isRotation(const M44d& m) {
    return nearlyEqual(m * m.transposed(), M44d(), kMatrixTolerance) && m.determinant() > 0.0;
}

// What a joint's own scale and rotations have to give: the compensation taken out.
M44d uncompensated(const M44d& local, const V3d& inverseScale) {
    M44d m = linearPart(local);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            m[i][j] *= inverseScale[j] != 0.0 ? inverseScale[j] : 1.0;
    return m;
}

bool jointForLocal(Channels& channels, const M44d& local) {
    channels.translate = translationOf(local);
    const M44d unturned = scaleMatrix(channels.scale) * rotateAxisMatrix(channels) *
                          eulerMatrix(channels.rotate, channels.rotateOrder);
    const M44d orient = inverseOf(unturned) * uncompensated(local, channels.inverseScale);
    if (!isRotation(orient))
        return false;
    const V3d hint = channels.jointOrient;
    channels.jointOrient = eulerFromMatrix(orient, kXYZ, &hint);
    return nearlyEqual(localMatrixOf(channels), local, kMatrixTolerance);
}

}  // namespace

bool channelsForLocal(Channels& channels, const M44d& local) {
    if (channels.isJoint)
        return jointForLocal(channels, local);
    channelsForLocalByRotate(channels, local);
    return true;
}

void channelsForLocalByRotate(Channels& channels, const M44d& local) {
    const M44d scaled = channels.isJoint ? uncompensated(local, channels.inverseScale) : local;
    const V3d oldScale = channels.scale, oldRotate = channels.rotate;
    const MatrixParts parts = decompose(scaled, &oldScale);
    M44d rotation = inverseOf(rotateAxisMatrix(channels)) * parts.rotation;
    if (channels.isJoint)
        rotation = rotation * inverseOf(eulerMatrix(channels.jointOrient));
    else
        channels.shear = parts.shear;
    channels.scale = parts.scale;
    if (parts.regular)
        channels.rotate = eulerFromMatrix(rotation, channels.rotateOrder, &oldRotate);
    placeOrigin(channels, local);
}

NodeHandle parentOf(const Scene& scene, NodeHandle node) {
    const Node* self = scene.node(node);
    return self && !self->parents.empty() ? self->parents.front() : NodeHandle();
}

namespace {

Plug scalePlug(NodeHandle joint) {
    return Plug(joint, transformAttrs().scale);
}

Plug inverseScalePlug(NodeHandle joint) {
    return Plug(joint, jointAttrs().inverseScale);
}

bool isScaleLink(const Scene& scene, NodeHandle parent, NodeHandle child) {
    return isJoint(scene, parent) && isJoint(scene, child) &&
           scene.source(inverseScalePlug(child)) == scalePlug(parent);
}

}  // namespace

void linkInverseScale(Scene& scene, NodeHandle parent, NodeHandle child) {
    if (isJoint(scene, parent) && isJoint(scene, child) &&
        scene.effectiveSource(inverseScalePlug(child)).isNull())
        ignore(scene.connect(scalePlug(parent), inverseScalePlug(child)));
}

void unlinkInverseScale(Scene& scene, NodeHandle parent, NodeHandle child) {
    if (!isScaleLink(scene, parent, child))
        return;
    ignore(scene.disconnect(scalePlug(parent), inverseScalePlug(child)));
    scene.setVec3(inverseScalePlug(child), V3d(1.0));
}

namespace {

struct Move {
    NodeHandle node;
    ChannelPlan channels;
    bool needsTransform = false;
    M44d between;  ///< local matrix of the transform put above the joint
    PointSet points;
    std::vector<V3d> newPoints;
};

// inverseScale as it will be: the link of the old parent goes, that of the new one comes.
V3d futureInverseScale(const Scene& scene, NodeHandle node, NodeHandle parent,
                       const Channels& now) {
    const bool compensates = scene.number(Plug(node, jointAttrs().segmentScaleCompensate)) != 0.0;
    const bool linkGoes = isScaleLink(scene, parentOf(scene, node), node);
    const bool free = linkGoes || scene.effectiveSource(inverseScalePlug(node)).isNull();
    if (!free)
        return now.inverseScale;
    return compensates && isJoint(scene, parent) ? scene.vec3(scalePlug(parent)) : V3d(1.0);
}

Status planTransform(const Scene& scene, NodeHandle parent, const MoveOptions& options,
                     Move& move) {
    const M44d wanted =
        worldMatrix(scene, move.node) * inverseOf(parentMatrixUnder(scene, move.node, parent));
    Channels channels = channelsOf(scene, move.node);
    const Channels before = channels;
    if (channels.isJoint && options.linkScales)
        channels.inverseScale = futureInverseScale(scene, move.node, parent, channels);
    // Channels that hold the matrix already stay as they are, whatever a decomposition would make
    // of them.
    if (nearlyEqual(localMatrixOf(channels), wanted, 1e-12))
        return Status::ok();
    if (!channelsForLocal(channels, wanted)) {
        Channels alone = before;
        alone.inverseScale = V3d(1.0);  // its parent will be no joint
        move.needsTransform = true;
        move.between = inverseOf(localMatrixOf(alone)) * wanted;
        return Status::ok();
    }
    return move.channels.plan(scene, move.node, channels);
}

Status planShape(const Scene& scene, NodeHandle parent, Move& move) {
    move.points = allPoints(scene, move.node);
    const M44d change = worldMatrix(scene, move.node) * inverseOf(worldMatrix(scene, parent));
    if (nearlyEqual(change, M44d(), 1e-12))
        return Status::ok();
    move.newPoints = shapePoints(scene, move.node);
    if (move.newPoints.empty())
        return Status::failure("The shape '" + scene.node(move.node)->name +
                               "' has no points to keep in place.");
    for (V3d& point : move.newPoints)
        point = point * change;
    return Status::ok();
}

Status planMove(const Scene& scene, NodeHandle parent, const MoveOptions& options, Move& move) {
    const Node* node = scene.node(move.node);
    if (!node || !node->isDag() || move.node == scene.world())
        return Status::failure("Only DAG nodes can be parented, and not the world.");
    if (scene.isAncestor(move.node, parent))
        return Status::failure("Cannot parent an object to itself or one of its children");
    const bool shape = node->type->is(kShapeType);
    if (shape && (parent == scene.world() || !isTransform(scene, parent)))
        return Status::failure("A shape needs a transform as its parent: " + node->name);
    if (options.keep == Placement::Local)
        return Status::ok();
    return shape ? planShape(scene, parent, move) : planTransform(scene, parent, options, move);
}

Status insertTransform(Scene& scene, NodeHandle parent, const M44d& local, NodeHandle& made) {
    if (Status done = scene.createNode("transform", {}, parent, made); !done)
        return done;
    Channels channels;
    channelsForLocalByRotate(channels, local);
    ChannelPlan plan;
    if (Status done = plan.plan(scene, made, channels); !done)
        return done;
    plan.apply(scene);
    return Status::ok();
}

Status carryOut(Scene& scene, NodeHandle parent, const MoveOptions& options, const Move& move) {
    NodeHandle target = parent;
    if (move.needsTransform)
        if (Status done = insertTransform(scene, parent, move.between, target); !done)
            return done;
    if (options.linkScales)
        unlinkInverseScale(scene, parentOf(scene, move.node), move.node);
    if (Status done = scene.reparent(move.node, target); !done)
        return done;
    if (options.linkScales)
        linkInverseScale(scene, target, move.node);
    move.channels.apply(scene);
    return move.newPoints.empty() ? Status::ok() : movePoints(scene, move.points, move.newPoints);
}

}  // namespace

Status moveUnder(Scene& scene, const std::vector<NodeHandle>& nodes, NodeHandle parent,
                 const MoveOptions& options) {
    if (parent.isNull())
        parent = scene.world();
    if (parent != scene.world() && !isTransform(scene, parent))
        return Status::failure("A parent must be a transform.");
    std::vector<Move> moves;
    for (NodeHandle node : nodes) {
        Move move;
        move.node = node;
        if (Status planned = planMove(scene, parent, options, move); !planned)
            return planned;
        moves.push_back(std::move(move));
    }
    for (const Move& move : moves)
        if (Status done = carryOut(scene, parent, options, move); !done)
            return done;
    return Status::ok();
}

NodeHandle lowestCommonParent(const Scene& scene, const std::vector<NodeHandle>& nodes) {
    std::vector<NodeHandle> common;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        std::vector<NodeHandle> above = scene.path(nodes[i]);
        if (!above.empty())
            above.pop_back();
        if (i == 0) {
            common = above;
            continue;
        }
        const std::size_t length = std::min(common.size(), above.size());
        const auto end = std::mismatch(
            common.begin(), common.begin() + static_cast<std::ptrdiff_t>(length), above.begin());
        common.erase(end.first, common.end());
    }
    return common.empty() ? scene.world() : common.back();
}

}  // namespace torvel
