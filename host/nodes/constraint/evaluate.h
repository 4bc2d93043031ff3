#pragma once

#include "graph/evaluation.h"

/// Evaluate functions of the constraint node types. Every input of a constraint dirties all of its
/// outputs, so that one call computes them all. P is the parent of the constrained object (the
/// inverse of constraintParentInverseMatrix).
///
/// Weights below 0 count as 0. When all are 0 the rest values come out if enableRestPosition is on,
/// otherwise what came out last (the rest values before that). A target of weight 0 has no
/// influence at all; a single weighted target is taken exactly. Angles come out on the turn nearest
/// to restRotate, whatever came out before.
namespace torvel {

/// Position: the rotate pivots' weighted mean, targetOffsetTranslate counting in each target's
/// space, its scale included. Rotation: Rot(targetOffsetRotate) * target, by interpType.
/// lastTargetRotate keeps the rotation put out.
void evaluateParentConstraint(Evaluation& evaluation);
/// Rotate pivots' weighted mean in the space of P, plus offset.
void evaluatePointConstraint(Evaluation& evaluation);
/// Rot(offset) * mean of the targets. lastTargetRotate keeps the rotation before the offset.
void evaluateOrientConstraint(Evaluation& evaluation);
/// Keeps what came out last while the target point lies on the pivot. With the up direction along
/// the aim (or up type "none" with nothing to lean to) the up axis stays as near as possible to
/// where it was.
void evaluateAimConstraint(Evaluation& evaluation);
/// Geometric mean of the targets' world scales times offset, over the world scale of P; for a joint
/// with segmentScaleCompensate the parent's scale is not taken out, since the joint does that
/// itself.
void evaluateScaleConstraint(Evaluation& evaluation);
/// Direction from the start joint to the targets' mean, in the space of P, plus offset.
void evaluatePoleVectorConstraint(Evaluation& evaluation);

}  // namespace torvel
