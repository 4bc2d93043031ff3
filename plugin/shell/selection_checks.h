#pragma once

#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MSelectionList.h>

/// True when every item is a node of the exact type "joint".
/// An empty list is false and tells the user to select a joint; a foreign item is false in silence.
bool isJointSelection(const MSelectionList& selection);

/// The same question for an array, with the same message when it is empty.
bool isJointArray(const MObjectArray& nodes);

/// True when every item passes isNurbsControl.
/// An empty list is false and tells the user to select a control; a foreign item is false silently.
bool isNurbsControlSelection(const MSelectionList& selection);

/// True for a transform with a NURBS curve among its direct children, and for a curve itself.
/// Curves deeper below a transform do not count. False for the null object. Prints nothing.
bool isNurbsControl(const MObject& node);

/// Prints the full DAG path of each object as one info line, in array order; an object outside the
/// DAG gives an empty line.
void printObjectPaths(const MObjectArray& nodes);
