#include "edit/world_placing.h"

#include <string_view>

namespace torvel {
namespace {

// What turns with the parent, between the node's own rotation and the parent's axes.
M44d inheritedRotation(const Scene& scene, NodeHandle node, const Channels& channels) {
    const M44d orient = channels.isJoint ? eulerMatrix(channels.jointOrient) : M44d();
    return orient * rotationPart(parentWorldMatrix(scene, node));
}

void writeFree(Scene& scene, NodeHandle node, AttrIndex compound, const V3d& now,
               const V3d& wanted) {
    for (int i = 0; i < 3; ++i) {
        const Plug plug = scene.child(Plug(node, compound), i);
        if (now[i] != wanted[i] && scene.isSettable(plug))
            scene.setNumber(plug, wanted[i]);
    }
}

}  // namespace

V3d worldTranslation(const Scene& scene, NodeHandle node) {
    if (!isTransform(scene, node))
        return worldPosition(scene, node);
    return scene.vec3(Plug(node, transformAttrs().translate)) * parentWorldMatrix(scene, node);
}

M44d worldRotation(const Scene& scene, NodeHandle node) {
    return rotationPart(worldMatrix(scene, node));
}

V3d worldRotatePivot(const Scene& scene, NodeHandle node) {
    return channelsOf(scene, node).rotatePivot * worldMatrix(scene, node);
}

V3d worldScalePivot(const Scene& scene, NodeHandle node) {
    return channelsOf(scene, node).scalePivot * worldMatrix(scene, node);
}

void setWorldTranslation(const Scene& scene, NodeHandle node, const V3d& position,
                         Channels& channels) {
    channels.translate = position * inverseOf(parentWorldMatrix(scene, node));
}

void setWorldRotation(const Scene& scene, NodeHandle node, const M44d& rotation,
                      Channels& channels) {
    const M44d axis = eulerMatrix(channels.rotateAxis);
    const M44d own =
        inverseOf(axis) * rotation * inverseOf(inheritedRotation(scene, node, channels));
    const V3d hint = channels.rotate;
    channels.rotate = eulerFromMatrix(own, channels.rotateOrder, &hint);
}

void setWorldMatrixChannels(const Scene& scene, NodeHandle node, const M44d& world,
                            Channels& channels) {
    channelsForLocalByRotate(channels, world * inverseOf(parentWorldMatrix(scene, node)));
}

void setWorldPivotPosition(const Scene& scene, NodeHandle node, const V3d& position,
                           Channels& channels) {
    const V3d wanted = position * inverseOf(parentWorldMatrix(scene, node));
    channels.translate += wanted - channels.rotatePivot * localMatrixOf(channels);
}

void moveRotatePivot(Channels& channels, const V3d& pivot) {
    const V3d before = translationOf(localMatrixOf(channels));
    channels.rotatePivot = pivot;
    channels.rotatePivotTranslate += before - translationOf(localMatrixOf(channels));
}

void moveScalePivot(Channels& channels, const V3d& pivot) {
    const V3d before = translationOf(localMatrixOf(channels));
    channels.scalePivot = pivot;
    const V3d offset = before - translationOf(localMatrixOf(channels));
    const M44d turn =
        eulerMatrix(channels.rotateAxis) * eulerMatrix(channels.rotate, channels.rotateOrder);
    channels.scalePivotTranslate += offset * inverseOf(turn);
}

int rotateOrderOf(const std::string& name) {
    for (int order = kXYZ; order <= kZYX; ++order)
        if (name == rotateOrderName(order))
            return order;
    return -1;
}

std::string rotateOrderName(int order) {
    const int known = order >= kXYZ && order <= kZYX ? order : kXYZ;
    return std::string(std::string_view(kRotateOrderNames).substr(4 * known, 3));
}

void changeRotateOrder(Channels& channels, int order, bool preserve) {
    if (preserve)
        channels.rotate =
            eulerFromMatrix(eulerMatrix(channels.rotate, channels.rotateOrder), order);
    channels.rotateOrder = order;
}

void writeFreeChannels(Scene& scene, NodeHandle node, const Channels& channels) {
    const Channels now = channelsOf(scene, node);
    const TransformAttrs& a = transformAttrs();
    if (now.rotateOrder != channels.rotateOrder && scene.isSettable(Plug(node, a.rotateOrder)))
        scene.setNumber(Plug(node, a.rotateOrder), channels.rotateOrder);
    writeFree(scene, node, a.translate, now.translate, channels.translate);
    writeFree(scene, node, a.rotate, now.rotate, channels.rotate);
    writeFree(scene, node, a.scale, now.scale, channels.scale);
    writeFree(scene, node, a.rotateAxis, now.rotateAxis, channels.rotateAxis);
    if (channels.isJoint) {
        writeFree(scene, node, jointAttrs().jointOrient, now.jointOrient, channels.jointOrient);
        return;
    }
    writeFree(scene, node, a.shear, now.shear, channels.shear);
    writeFree(scene, node, a.rotatePivot, now.rotatePivot, channels.rotatePivot);
    writeFree(scene, node, a.rotatePivotTranslate, now.rotatePivotTranslate,
              channels.rotatePivotTranslate);
    writeFree(scene, node, a.scalePivot, now.scalePivot, channels.scalePivot);
    writeFree(scene, node, a.scalePivotTranslate, now.scalePivotTranslate,
              channels.scalePivotTranslate);
}

}  // namespace torvel
