#pragma once

#include <maya/MString.h>

/// Moves the pole control to the side to which the chain bends: 30 units from the middle joint, at
/// right angles to the line from start to end, in the plane of the chain. World translations are
/// read and written; pivots play no part, rotation and groups of the control are untouched. The
/// distance does not grow with the chain. A straight chain has no such side: the control is then
/// put where a zero vector's normal leads. Names that do not resolve are not reported.
void computePoleVectorPosition(const MString& startJoint, const MString& middleJoint,
                               const MString& endJoint, const MString& poleControl);
