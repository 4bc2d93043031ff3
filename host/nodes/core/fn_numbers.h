#pragma once

/// The function-set numbers that node types report. The same numbers as `MFn::Type`, which this
/// folder may not see; a test of the API compares the two.
namespace torvel::fn {

enum Number : int {
    kDependencyNode = 4,
    kAddDoubleLinear = 6,
    kAnimCurve = 7,
    kCircle = 9,
    kTime = 10,
    kUnitConversion = 11,
    kDagNode = 107,
    kWorld = 108,
    kShape = 109,
    kTransform = 110,
    kAimConstraint = 111,
    kIkEffector = 119,
    kIkHandle = 120,
    kJoint = 121,
    kLocator = 122,
    kCamera = 123,
    kDisplayLayer = 124,
    kReverse = 125,
    kMultiplyDivide = 126,
    kPlusMinusAverage = 127,
    kCondition = 128,
    kBlendNodeBase = 129,
    kBlendColors = 130,
    kUnknownDag = 132,
    kUnknown = 133,
    kDecomposeMatrix = 134,
    kMultMatrix = 135,
    kIkSolver = 136,
    kDagPose = 137,
    kOrientConstraint = 239,
    kPointConstraint = 240,
    kScaleConstraint = 241,
    kParentConstraint = 242,
    kPoleVectorConstraint = 243,
    kNormalConstraint = 244,
    kTangentConstraint = 245,
    kGeometryConstraint = 246,
    kNurbsCurve = 267,
    kNurbsSurface = 294,
    kConstraint = 933
};

}  // namespace torvel::fn
