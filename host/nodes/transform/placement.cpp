#include "nodes/transform/placement.h"

#include <algorithm>
#include <cmath>

namespace torvel {
namespace {

constexpr double kChangeTolerance = 1e-9;
constexpr double kFitTolerance = 1e-6;

bool differs(double a, double b) {
    return std::fabs(a - b) > kChangeTolerance * std::max({1.0, std::fabs(a), std::fabs(b)});
}

// Takes the compensation of a joint out of a local matrix: linear(local) * IS^-1.
M44d uncompensated(const M44d& local, const V3d& inverseScale) {
    M44d m = linearPart(local);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            m[i][j] *= inverseScale[j] != 0.0 ? inverseScale[j] : 1.0;
    return m;
}

void solveTransform(Channels& c, const M44d& local) {
    const MatrixParts parts = decompose(local, &c.scale);
    c.scale = parts.scale;
    c.shear = parts.shear;
    if (parts.regular)
        c.rotate = eulerFromMatrix(eulerMatrix(c.rotateAxis).transposed() * parts.rotation,
                                   c.rotateOrder, &c.rotate);
    c.translate = V3d(0.0);
    c.translate = translationOf(local) - translationOf(localMatrixOf(c));
}

void solveJoint(Channels& c, const M44d& local) {
    const MatrixParts parts = decompose(uncompensated(local, c.inverseScale), &c.scale);
    c.scale = parts.scale;
    if (parts.regular) {
        const M44d rotation = eulerMatrix(c.rotateAxis).transposed() * parts.rotation *
                              eulerMatrix(c.jointOrient).transposed();
        c.rotate = eulerFromMatrix(rotation, c.rotateOrder, &c.rotate);
    }
    c.translate = translationOf(local);
}

void addChanges(const Scene& scene, NodeHandle node, AttrIndex compound, const V3d& value,
                ChannelValues& out) {
    for (int i = 0; i < 3; ++i) {
        const Plug plug(node, compound + 1 + static_cast<AttrIndex>(i));
        if (differs(scene.number(plug), value[i]))
            out.push_back({plug, value[i]});
    }
}

bool isDriven(const Scene& scene, const Plug& plug) {
    return !scene.effectiveSource(plug).isNull();
}

}  // namespace

Channels channelsForLocal(const Scene& scene, NodeHandle node, const M44d& local) {
    Channels c = channelsOf(scene, node);
    if (c.isJoint)
        solveJoint(c, local);
    else
        solveTransform(c, local);
    return c;
}

bool jointChannelsForLocal(const Scene& scene, NodeHandle joint, const M44d& local,
                           const V3d& inverseScale, Channels& out) {
    out = channelsOf(scene, joint);
    if (!out.isJoint)
        return false;
    const bool compensated = scene.number(Plug(joint, jointAttrs().segmentScaleCompensate)) != 0.0;
    out.inverseScale = compensated ? inverseScale : V3d(1.0);
    out.translate = translationOf(local);
    const M44d inner = scaleMatrix(out.scale) * eulerMatrix(out.rotateAxis) *
                       eulerMatrix(out.rotate, out.rotateOrder);
    if (out.scale.x * out.scale.y * out.scale.z != 0.0) {
        const M44d orient = inverseOf(inner) * uncompensated(local, out.inverseScale);
        out.jointOrient = eulerFromMatrix(rotationPart(orient), kXYZ, &out.jointOrient);
    }
    return nearlyEqual(localMatrixOf(out), local, kFitTolerance);
}

ChannelValues changedChannels(const Scene& scene, NodeHandle node, const Channels& wanted) {
    ChannelValues out;
    if (!isTransform(scene, node))
        return out;
    const TransformAttrs& a = transformAttrs();
    addChanges(scene, node, a.translate, wanted.translate, out);
    addChanges(scene, node, a.rotate, wanted.rotate, out);
    addChanges(scene, node, a.scale, wanted.scale, out);
    if (wanted.isJoint)
        addChanges(scene, node, jointAttrs().jointOrient, wanted.jointOrient, out);
    else
        addChanges(scene, node, a.shear, wanted.shear, out);
    return out;
}

Status checkWritable(const Scene& scene, const ChannelValues& values) {
    for (const ChannelValue& item : values)
        if (scene.isLocked(item.plug) && !isDriven(scene, item.plug))
            return Status::failure("The attribute '" + scene.plugName(item.plug) +
                                   "' is locked or connected and cannot be modified.");
    return Status::ok();
}

Status writeChannels(Scene& scene, const ChannelValues& values) {
    if (Status status = checkWritable(scene, values); !status)
        return status;
    for (const ChannelValue& item : values)
        if (!isDriven(scene, item.plug))
            scene.setNumber(item.plug, item.value);
    return Status::ok();
}

Status setLocalMatrix(Scene& scene, NodeHandle node, const M44d& local) {
    return writeChannels(scene, changedChannels(scene, node, channelsForLocal(scene, node, local)));
}

Status setWorldMatrix(Scene& scene, NodeHandle node, const M44d& world) {
    return setLocalMatrix(scene, node, world * inverseOf(parentWorldMatrix(scene, node)));
}

}  // namespace torvel
