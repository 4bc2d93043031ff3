#pragma once

// First half of the edit that keeps the skin: detach, duplicate, clean, freeze, park the old
// skeleton. The second half is in reconnection.h; constraints are carried by constraint_transfer.h.

#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MString.h>

/// What duplicateCharacterGroup parked and made.
struct CharacterDuplicate {
    MObjectArray oldRoots;        ///< the roots given, in order
    MObjectArray oldMeshParents;  ///< first parent of each mesh given, in order
    MObjectArray newRoots;        ///< top joints of the copy
    MObjectArray newMeshParents;  ///< first parent of each mesh shape in the copy, each once
};

// --- its steps, for tools that place them in another order ---

/// Detaches the cluster with its history kept, once per output geometry: the command names the
/// cluster, so two outputs detach it twice.
void detachSkin(const MObject& skinCluster);

/// Deletes each constraint below a joint of the copy, the top included.
void removeConstraints(const MString& dup);

/// Moves the rotation of the joint, and of all below it, into joint orientation.
void freezeJoint(const MString& joint);

/// The same for each joint below `top` and then for `top` itself. A top with no joint below it
/// fails in the listing and is left alone.
void freezeHierarchy(const MString& top);

// --- the whole of it ---

/// Detaches the clusters with their history, copies each root's hierarchy without its constraints,
/// freezes the copy's rotations, parks the old root under "tempOldSkeletonGroup" and gives the copy
/// its name. Returns the new root of each root, same order; null where a copy was not found.
/// The caller owes the rest: edit, transfer, reconnect, delete the group, bind again.
MObjectArray duplicateSkeletonForEdit(const MObjectArray& roots, const MObjectArray& skinClusters);

/// Moves roots and the parents of the meshes under a group "oldChr" and duplicates it as "newChr".
/// Both groups stay; the copy becomes the selection. The new lists are empty when it is not found.
CharacterDuplicate duplicateCharacterGroup(const MObjectArray& roots, const MObjectArray& meshes);

/// A new transform at the top of the scene. The name may be altered to be legal and unique.
MObject createNamedTransform(const MString& name);

/// Deletes every direct child of `root`, by short name, with all that lies below; `root` stays.
/// A root outside the DAG gives an error line.
void deleteHierarchyChildren(const MObject& root);
