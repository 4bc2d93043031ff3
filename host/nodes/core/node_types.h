#pragma once

#include "graph/node_type.h"

/// The rows of the node types of this folder, except geometry, deformers and shading sets
/// (mesh_types.h, skin_types.h).
namespace torvel {

// base_types.cpp
extern const NodeTypeRow kDependNode;       ///< "dependNode", root of all
extern const NodeTypeRow kEntity;           ///< "entity"
extern const NodeTypeRow kDagNodeType;      ///< "dagNode"
extern const NodeTypeRow kWorldType;        ///< "world"
extern const NodeTypeRow kShapeBase;        ///< "shape", abstract
extern const NodeTypeRow kGeometryShape;    ///< "geometryShape", abstract
extern const NodeTypeRow kDeformableShape;  ///< "deformableShape", abstract
extern const NodeTypeRow kUnknownNode;      ///< "unknown"
extern const NodeTypeRow kUnknownDagNode;   ///< "unknownDag", a shape
extern const NodeTypeRow kUnknownTransform;

// transform_types.cpp
extern const NodeTypeRow kTransformNode;
extern const NodeTypeRow kJointNode;

// shape_types.cpp, nurbs_curve.cpp
extern const NodeTypeRow kLocatorShape;
extern const NodeTypeRow kCameraShape;
extern const NodeTypeRow kDistanceShape;  ///< distanceDimShape
extern const NodeTypeRow kNurbsCurveShape;

// make_nurb_circle.cpp
extern const NodeTypeRow kMakeNurbCircle;

// ik_types.cpp
extern const NodeTypeRow kIkHandle;
extern const NodeTypeRow kIkEffector;
extern const NodeTypeRow kIkSolver;
extern const NodeTypeRow kIkRPsolver;
extern const NodeTypeRow kIkSCsolver;
extern const NodeTypeRow kIkSplineSolver;  ///< kept, not evaluated
extern const NodeTypeRow kIkSystem;

// constraint_types.cpp
extern const NodeTypeRow kConstraintBase;
extern const NodeTypeRow kParentConstraint;
extern const NodeTypeRow kPointConstraint;
extern const NodeTypeRow kOrientConstraint;
extern const NodeTypeRow kAimConstraint;
extern const NodeTypeRow kScaleConstraint;
extern const NodeTypeRow kPoleVectorConstraint;
extern const NodeTypeRow kGeometryConstraint;
extern const NodeTypeRow kNormalConstraint;
extern const NodeTypeRow kTangentConstraint;

// dag_pose.cpp
extern const NodeTypeRow kDagPose;

// time_types.cpp
extern const NodeTypeRow kTimeNode;
extern const NodeTypeRow kUnitConversion;

// anim_curve.cpp
extern const NodeTypeRow kAnimCurveBase;
extern const NodeTypeRow kAnimCurveTL;
extern const NodeTypeRow kAnimCurveTA;
extern const NodeTypeRow kAnimCurveTU;
extern const NodeTypeRow kAnimCurveTT;
extern const NodeTypeRow kAnimCurveUL;
extern const NodeTypeRow kAnimCurveUA;
extern const NodeTypeRow kAnimCurveUU;
extern const NodeTypeRow kAnimCurveUT;

}  // namespace torvel
