#pragma once

/// The function-set numbers that objects answer to: one table for node types, which may not see
/// `MFn`, and for the API, which is compared with it while it is compiled.
// clang-format off
#define TORVEL_FN_NUMBERS(row) \
    row(kInvalid, 0) \
    row(kBase, 1) \
    row(kNamedObject, 2) \
    row(kDependencyNode, 4) \
    row(kPlugin, 5) \
    row(kAddDoubleLinear, 6) \
    row(kAnimCurve, 7) \
    row(kCreate, 8) \
    row(kCircle, 9) \
    row(kTime, 10) \
    row(kUnitConversion, 11) \
    row(kDagNode, 107) \
    row(kWorld, 108) \
    row(kShape, 109) \
    row(kTransform, 110) \
    row(kAimConstraint, 111) \
    row(kIkEffector, 119) \
    row(kIkHandle, 120) \
    row(kJoint, 121) \
    row(kLocator, 122) \
    row(kCamera, 123) \
    row(kDisplayLayer, 124) \
    row(kReverse, 125) \
    row(kMultiplyDivide, 126) \
    row(kPlusMinusAverage, 127) \
    row(kCondition, 128) \
    row(kBlendNodeBase, 129) \
    row(kBlendColors, 130) \
    row(kAttribute, 131) \
    row(kUnknownDag, 132) \
    row(kUnknown, 133) \
    row(kDecomposeMatrix, 134) \
    row(kMultMatrix, 135) \
    row(kIkSolver, 136) \
    row(kDagPose, 137) \
    row(kOrientConstraint, 239) \
    row(kPointConstraint, 240) \
    row(kScaleConstraint, 241) \
    row(kParentConstraint, 242) \
    row(kPoleVectorConstraint, 243) \
    row(kNormalConstraint, 244) \
    row(kTangentConstraint, 245) \
    row(kGeometryConstraint, 246) \
    row(kNurbsCurve, 267) \
    row(kNurbsSurface, 294) \
    row(kMesh, 296) \
    row(kGeometryFilt, 332) \
    row(kTweak, 345) \
    row(kGroupId, 351) \
    row(kGroupParts, 352) \
    row(kPolyCreator, 434) \
    row(kSet, 464) \
    row(kShadingEngine, 468) \
    row(kSkinClusterFilter, 687) \
    row(kConstraint, 933) \
    row(kLast, 1200)
// clang-format on

namespace torvel::fn {

enum Number : int {
#define TORVEL_ENUMERATOR(name, number) name = number,
    TORVEL_FN_NUMBERS(TORVEL_ENUMERATOR)
#undef TORVEL_ENUMERATOR

    // Node types that have no enumerator in MFn.
    kBlendShape = 336,
    kPolyCube = 435,
    kPolyCylinder = 436,
    kPolyPlane = 437,
};

}  // namespace torvel::fn
