#pragma once

// Pairing by short name: the name as the node gives it, namespace included, case sensitive.

#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MString.h>

/// True when all short names differ; false at the first repeat, which two info lines report.
/// Mind the sense: true means that no duplicate exists. An unreadable element gives a warning and
/// does not fail the check. Nodes of one name under different parents count as duplicates.
bool findDuplicateNames(const MObjectArray& nodes);

/// The candidate of that short name, the last one when several bear it; the null object when none
/// does. Either outcome is one info line; a candidate outside the DAG gives an error and is
/// skipped.
MObject matchJointsByName(const MString& name, const MObjectArray& candidates);

/// Appends the suffix to the name of every joint below `root`, from the top down; `root` keeps its
/// name. A root without a DAG path gives an error line and no rename.
void renameHierarchy(const MObject& root, const MString& suffix);
