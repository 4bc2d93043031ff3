#pragma once

#include "graph/node_type.h"
#include "graph/scene.h"
#include "nodes/transform/rotation.h"

/// Matrices of DAG nodes. All values in centimetres and radians.
namespace torvel {

/// Attribute positions, looked up once; good for every scene, since all scenes share the one table
/// of node types.
struct DagAttrs {
    AttrIndex visibility, intermediateObject, matrix, inverseMatrix, worldMatrix,
        worldInverseMatrix, parentMatrix, parentInverseMatrix, offsetParentMatrix;
};
struct TransformAttrs {
    AttrIndex translate, rotate, rotateOrder, scale, shear, rotatePivot, rotatePivotTranslate,
        scalePivot, scalePivotTranslate, rotateAxis, inheritsTransform, xformMatrix;
};
struct JointAttrs {
    AttrIndex jointOrient, segmentScaleCompensate, inverseScale, preferredAngle, radius, bindPose,
        drawStyle;
};
const DagAttrs& dagAttrs();  ///< of dagNode; valid on every DAG node
const TransformAttrs&
transformAttrs();                ///< of transform; valid on joints, constraints, ikHandles ...
const JointAttrs& jointAttrs();  ///< of joint

/// The stored or driven channels of a transform or joint.
struct Channels {
    V3d translate{0.0}, rotate{0.0}, scale{1.0}, shear{0.0};
    V3d rotatePivot{0.0}, rotatePivotTranslate{0.0}, scalePivot{0.0}, scalePivotTranslate{0.0};
    V3d rotateAxis{0.0};
    int rotateOrder = kXYZ;
    bool isJoint = false;
    V3d jointOrient{0.0};
    V3d inverseScale{
        1.0};  ///< joint: the parent's scale to take out; 1 when not compensated or not connected
};
/// Everything of a node, connections evaluated; the defaults for a node that is no transform.
Channels channelsOf(const Scene& scene, NodeHandle node);
/// transform: SP^-1 S SH SP ST RP^-1 RA R RP RT T. joint: S RO R JO IS T (pivots and shear
/// ignored).
M44d localMatrixOf(const Channels& channels);

bool isJoint(const Scene& scene, NodeHandle node);
bool isTransform(const Scene& scene, NodeHandle node);

// Evaluated matrices; the identity for nodes that are not in the DAG and for instances that do not
// exist.
M44d localMatrix(const Scene& scene,
                 NodeHandle node);  ///< the `matrix` plug: without offsetParentMatrix
M44d worldMatrix(const Scene& scene, NodeHandle node, int instance = 0);
/// The `parentMatrix` plug: offsetParentMatrix * the parent's world matrix (identity where
/// inheritsTransform is off).
M44d parentWorldMatrix(const Scene& scene, NodeHandle node, int instance = 0);
V3d worldPosition(const Scene& scene, NodeHandle node, int instance = 0);
/// What parentMatrix of `node` will be under `parent` (null: the world), instance 0.
M44d parentMatrixUnder(const Scene& scene, NodeHandle node, NodeHandle parent);

// Evaluate functions of the node type tables.
void evaluateDagNode(Evaluation& evaluation);  ///< local matrix is the identity
void evaluateTransform(Evaluation& evaluation);
void evaluateJoint(Evaluation& evaluation);

}  // namespace torvel
