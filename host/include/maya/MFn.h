// The kinds of objects. One object answers to several: a joint is a transform and a DAG node.
#pragma once

#include <maya/MApiNamespace.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MFn {
  public:
    enum Type {
        kInvalid = 0,
        kBase = 1,
        kNamedObject = 2,
        kDependencyNode = 4,
        kPlugin = 5,
        kAddDoubleLinear = 6,
        kAnimCurve = 7,
        kCreate = 8,
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
        kAttribute = 131,
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
        kMesh = 296,
        kGeometryFilt = 332,
        kTweak = 345,
        kGroupId = 351,
        kGroupParts = 352,
        kPolyCreator = 434,
        kSet = 464,
        kShadingEngine = 468,
        kSkinClusterFilter = 687,
        kConstraint = 933,
        kLast = 1200
    };
};

MAYA_API_NAMESPACE_CLOSE
