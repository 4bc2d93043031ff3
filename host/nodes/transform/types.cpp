// transform and joint. Their matrices are in transform.cpp.
#include "nodes/core/fn_numbers.h"
#include "nodes/transform/attrs.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

constexpr NodeTypeRow kTypes[] = {
    typeRow(kTransform, fn::kTransform, "kTransform", kTransformType, evaluateTransform),
    typeRow(kJoint, fn::kJoint, "kJoint", 0, evaluateJoint),
};

}  // namespace

const TransformAttrs& transformAttrs() {
    static constexpr TransformAttrs attrs{kTransform["translate"],
                                          kTransform["rotate"],
                                          kTransform["rotateOrder"],
                                          kTransform["scale"],
                                          kTransform["shear"],
                                          kTransform["rotatePivot"],
                                          kTransform["rotatePivotTranslate"],
                                          kTransform["scalePivot"],
                                          kTransform["scalePivotTranslate"],
                                          kTransform["rotateAxis"],
                                          kTransform["inheritsTransform"],
                                          kTransform["xformMatrix"]};
    return attrs;
}

const JointAttrs& jointAttrs() {
    static constexpr JointAttrs attrs{kJoint["jointOrient"],  kJoint["segmentScaleCompensate"],
                                      kJoint["inverseScale"], kJoint["preferredAngle"],
                                      kJoint["radius"],       kJoint["bindPose"],
                                      kJoint["drawStyle"]};
    return attrs;
}

TypeRows transformTypes() {
    return family(kTypes);
}

}  // namespace torvel
