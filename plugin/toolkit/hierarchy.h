#pragma once

// Walks over joint hierarchies and from joints to meshes. "Joint" means the exact type "joint"
// unless a function says otherwise. Nothing here prints unless stated.

#include <maya/MObject.h>
#include <maya/MObjectArray.h>

/// All joints at and below `root`, in pre-order with children in DAG order. Other nodes are walked
/// through and not listed. Empty when `root` is not in the DAG. The walks of two skeletons of one
/// shape pair by position.
MObjectArray getJointHierarchy(const MObject& root);

/// The joint hierarchies of the roots one after another, repeats kept; a root outside the DAG is
/// skipped.
MObjectArray getJointsOfRoots(const MObjectArray& roots);

/// The highest joint reached from `node` through joint parents only: `node` itself when its parent
/// is no joint, and also when it has no DAG path.
MObject findRootJoint(const MObject& node);

/// The distinct tops of the nodes, in the order first reached: each climbs while its parent is a
/// joint. A node without a path gives a warning and no entry. A node that reports no parent at all
/// gives one null entry.
MObjectArray getRootJoints(const MObjectArray& nodes);

/// The parent of each node, position by position; a null object for a node at the top level.
MObjectArray getParentsOfArray(const MObjectArray& nodes);

/// Meshes downstream of each node in the dependency graph, in node and walk order, repeats kept.
/// Never empty: no mesh at all is one null object, so open each element with a status.
MObjectArray getDownstreamMeshes(const MObjectArray& nodes);

/// Whether a direct child of any of the nodes is a constraint of any kind.
bool hasConstraintChild(const MObjectArray& nodes);

/// The DAG nodes at and below `root`, shapes included, whose short name is that of a reference.
/// In walk order; a name found at several places gives all of them.
MObjectArray findNamesakesUnder(const MObjectArray& references, const MObject& root);

/// Puts nodes[i] under newParents[i], one after another, local transforms unchanged.
/// `newParents` must hold at least as many elements as `nodes`.
void reparentNode(const MObjectArray& newParents, const MObjectArray& nodes);

/// Replaces the active selection by the roots and every joint below them, here by function set.
/// With `skipEndJoints` joints that have no joint child stay out, the roots themselves never do.
void selectHierarchy(const MObjectArray& roots, bool skipEndJoints);
