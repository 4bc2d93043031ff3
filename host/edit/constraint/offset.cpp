#include "edit/constraint/offset.h"

#include "nodes/constraint/math.h"

namespace torvel {
namespace {

// Rotation that the rotate channels stand for in the world: no rotate axis, no scale.
M44d channelRotation(const Channels& c, const M44d& parent) {
    return eulerMatrix(c.rotate, c.rotateOrder) * eulerMatrix(c.jointOrient) * rotationPart(parent);
}

// The target's space with its rotate pivot as origin, as parent constraints see it.
M44d targetFrame(const Channels& c, const M44d& parent) {
    Channels plain;
    plain.isJoint = c.isJoint;
    plain.scale = c.scale;
    plain.rotate = c.rotate;
    plain.rotateOrder = c.rotateOrder;
    plain.jointOrient = c.jointOrient;
    plain.inverseScale = c.inverseScale;
    plain.translate = c.translate + c.rotatePivot + c.rotatePivotTranslate;
    return localMatrixOf(plain) * parent;
}

M44d targetRotation(const Channels& c, const M44d& parent) {
    M44d above = parent;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            above[i][j] /= c.inverseScale[i] != 0.0 ? c.inverseScale[i] : 1.0;
    return channelRotation(c, above);
}

V3d solveTurn(const M44d& wanted, const M44d& without, int order, const V3d& hint) {
    return eulerFromMatrix(timesInverse(wanted, without), order, &hint);
}

// What the output is without any offset.
V3d bareOutput(Scene& scene, NodeHandle constraint, const char* output, double neutral) {
    scene.setVec3(scene.findPlug(constraint, "offset"), V3d(neutral));
    return scene.vec3(scene.findPlug(constraint, output));
}

}  // namespace

ParentOffset parentOffset(const Scene& scene, const Channels& present, NodeHandle object,
                          NodeHandle target) {
    const M44d parent = parentWorldMatrix(scene, object), above = parentWorldMatrix(scene, target);
    const Channels driver = channelsOf(scene, target);
    const V3d pivot =
        (present.translate + present.rotatePivot + present.rotatePivotTranslate) * parent;
    const M44d wanted = channelRotation(present, parent);
    return {pivot * inverseOf(targetFrame(driver, above)),
            solveTurn(wanted, targetRotation(driver, above), present.rotateOrder, present.rotate)};
}

void bakeOffset(Scene& scene, const ConstraintKind& kind, NodeHandle constraint,
                const Channels& present) {
    const Plug offset = scene.findPlug(constraint, "offset");
    if (kind.offset == OffsetOf::Translate) {
        scene.setVec3(
            offset, present.translate - bareOutput(scene, constraint, "constraintTranslate", 0.0));
    } else if (kind.offset == OffsetOf::Scale) {
        const V3d bare = bareOutput(scene, constraint, "constraintScale", 1.0);
        V3d factor(1.0);
        for (int i = 0; i < 3; ++i)
            factor[i] = bare[i] != 0.0 ? present.scale[i] / bare[i] : 1.0;
        scene.setVec3(offset, factor);
    } else {
        const int order = present.rotateOrder;
        const M44d bare =
            eulerMatrix(bareOutput(scene, constraint, "constraintRotate", 0.0), order);
        scene.setVec3(offset, solveTurn(eulerMatrix(present.rotate, order), bare, order, V3d(0.0)));
    }
}

}  // namespace torvel
