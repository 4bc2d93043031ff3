#pragma once

// What drives the old joints besides the skin, built again on their copies. Both functions pair
// the arrays by position, as getJointHierarchy orders them, and must run before the old skeleton
// is deleted. Arrays of unequal length give an error line and nothing is done.

#include <maya/MObjectArray.h>

/// Makes a parent, orient, point or aim constraint on duplicates[i] for each one that is a child of
/// originals[i], from the same drivers, with a fresh offset. An aim constraint's up matrix is
/// linked again. Other kinds, and constraints without drivers, are refused with a warning; each
/// step is told in the Script Editor. One failure never stops the next constraint.
void recreateConstraints(const MObjectArray& originals, const MObjectArray& duplicates);

/// For each rotate channel by which one of the originals feeds another one, links the same channel
/// of the two copies; the attribute at the receiving end is taken to be the same. Links to other
/// nodes are left out. Prints nothing.
void reconnectRotations(const MObjectArray& originals, const MObjectArray& duplicates);
