#include "commands/skeleton/joint_orient.h"

#include <cmath>

#include "edit/placing.h"

namespace torvel {

bool parseOrient(const std::string& text, int (&letters)[3]) {
    bool used[3] = {false, false, false};
    for (std::size_t i = 0; i < 3 && text.size() == 3; ++i) {
        const int axis = text[i] - 'x';
        if (axis < 0 || axis > 2 || used[axis])
            return false;
        used[axis] = true;
        letters[i] = axis;
    }
    return text.size() == 3;
}

bool parseSecondary(const std::string& text, int& axis, double& sign) {
    axis = -1;
    if (text == "none")
        return true;
    const std::string way = text.empty() ? text : text.substr(1);
    if ((way != "up" && way != "down") || text[0] < 'x' || text[0] > 'z')
        return false;
    axis = text[0] - 'x';
    sign = way == "up" ? 1.0 : -1.0;
    return true;
}

namespace {

constexpr double kNoLength = 1e-10;
constexpr double kParallel = 1e-6;

NodeHandle firstChildJoint(const Scene& scene, NodeHandle joint) {
    for (NodeHandle child : scene.node(joint)->children)
        if (scene.typeName(child) == "joint")
            return child;
    return {};
}

V3d axisVector(int axis, double sign) {
    V3d v(0.0);
    v[axis] = sign;
    return v;
}

V3d acrossAim(const V3d& v, const V3d& aim) {
    return v - aim * v.dot(aim);
}

// Any world axis that is not parallel to the bone, starting after the one asked for.
V3d perpendicular(V3d wanted, int axis, const V3d& aim) {
    for (int i = 0; acrossAim(wanted, aim).length() < kParallel && i < 3; ++i)
        wanted = axisVector((axis + 1 + i) % 3, 1.0);
    return acrossAim(wanted, aim).normalized();
}

bool isEvenOrder(const int (&letters)[3]) {
    return (letters[0] + 1) % 3 == letters[1];
}

// World directions of the letters: aim, second, third.
void frameOf(const Scene& scene, NodeHandle joint, const OrientOptions& options, const V3d& aim,
             V3d (&axes)[3]) {
    const double hand = isEvenOrder(options.letters) ? 1.0 : -1.0;
    axes[0] = aim;
    if (options.worldAxis >= 0) {
        axes[1] =
            perpendicular(axisVector(options.worldAxis, options.worldSign), options.worldAxis, aim);
        axes[2] = aim.cross(axes[1]) * hand;
        return;
    }
    const NodeHandle parent = parentOf(scene, joint);
    V3d toParent(0.0);
    if (isJoint(scene, parent))
        toParent = worldPosition(scene, parent) - worldPosition(scene, joint);
    const V3d normal = toParent.cross(aim);
    axes[2] = normal.length() > kParallel * toParent.length() && toParent.length() > kNoLength
                  ? normal.normalized()
                  : perpendicular(axisVector(2, 1.0), 2, aim);
    axes[1] = axes[2].cross(aim) * hand;
}

struct KeptChild {
    NodeHandle node;
    M44d world;
};

Status restoreChildren(Scene& scene, const std::vector<KeptChild>& children) {
    for (const KeptChild& child : children) {
        Channels channels = channelsOf(scene, child.node);
        const M44d local = child.world * inverseOf(parentWorldMatrix(scene, child.node));
        if (nearlyEqual(localMatrixOf(channels), local, 1e-12))
            continue;
        if (!channelsForLocal(channels, local))
            channelsForLocalByRotate(channels, local);
        ChannelPlan plan;
        if (Status done = plan.plan(scene, child.node, channels); !done)
            return done;
        plan.apply(scene);
    }
    return Status::ok();
}

Status writeOrient(Scene& scene, NodeHandle joint, const Channels& channels) {
    ChannelPlan plan;
    if (Status done = plan.plan(scene, joint, channels); !done)
        return done;
    plan.apply(scene);
    return Status::ok();
}

bool isRotated(const Channels& channels) {
    return std::abs(channels.rotate.x) > 1e-9 || std::abs(channels.rotate.y) > 1e-9 ||
           std::abs(channels.rotate.z) > 1e-9;
}

}  // namespace

Status orientJoint(Scene& scene, NodeHandle joint, const OrientOptions& options) {
    Channels channels = channelsOf(scene, joint);
    const NodeHandle child = firstChildJoint(scene, joint);
    const V3d bone =
        child.isNull() ? V3d(0.0) : worldPosition(scene, child) - worldPosition(scene, joint);
    if (isRotated(channels) || bone.length() < kNoLength)
        return Status::ok();
    V3d axes[3];
    frameOf(scene, joint, options, bone.normalized(), axes);
    M44d frame;
    for (int i = 0; i < 3; ++i)
        for (int column = 0; column < 3; ++column)
            frame[options.letters[i]][column] = axes[i][column];
    const M44d orient = frame * inverseOf(rotationPart(parentWorldMatrix(scene, joint)));
    const M44d turned = eulerMatrix(channels.rotateAxis) * eulerMatrix(channels.jointOrient);
    channels.jointOrient = eulerFromMatrix(orient);
    if (!options.zeroScaleOrient) {
        channels.rotateAxis = eulerFromMatrix(turned * inverseOf(orient));
        return writeOrient(scene, joint, channels);
    }
    std::vector<KeptChild> children;
    for (NodeHandle below : scene.node(joint)->children)
        if (isTransform(scene, below) && !scene.node(below)->type->is(kConstraintType))
            children.push_back({below, worldMatrix(scene, below)});
    channels.rotateAxis = V3d(0.0);
    const Status done = writeOrient(scene, joint, channels);
    return done ? restoreChildren(scene, children) : done;
}

Status clearJointOrient(Scene& scene, NodeHandle joint) {
    Channels channels = channelsOf(scene, joint);
    const M44d rotate = eulerMatrix(channels.rotate, channels.rotateOrder);
    channels.rotateAxis = eulerFromMatrix(eulerMatrix(channels.rotateAxis) * rotate *
                                          eulerMatrix(channels.jointOrient) * inverseOf(rotate));
    channels.jointOrient = V3d(0.0);
    return writeOrient(scene, joint, channels);
}

Status clearRotateAxis(Scene& scene, NodeHandle joint) {
    Channels channels = channelsOf(scene, joint);
    if (channels.rotateAxis == V3d(0.0))
        return Status::ok();
    const M44d rotate = eulerMatrix(channels.rotate, channels.rotateOrder);
    channels.jointOrient = eulerFromMatrix(inverseOf(rotate) * eulerMatrix(channels.rotateAxis) *
                                           rotate * eulerMatrix(channels.jointOrient));
    channels.rotateAxis = V3d(0.0);
    return writeOrient(scene, joint, channels);
}

}  // namespace torvel
