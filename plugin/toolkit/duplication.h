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
