#pragma once

// The steps that the skin-keeping tools have in common, beside those of toolkit/duplication.h. No
// status is read: a step that fails does not stop the ones after it.

#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MString.h>

/// Name of the transform that parks the old skeleton.
extern const char* const kTempGroup;

/// Restores the bind pose of the joint's skeleton; without a pose nothing happens.
void restoreBindPose(const MObject& joint);

/// A copy of the skeleton, as `cmds.duplicate` names it.
MString duplicateSkeleton(const MString& rootPath);

/// Parks the old skeleton under kTempGroup.
void parkOldSkeleton(const MString& rootPath);
/// Ends kTempGroup with all below it.
void deleteOldSkeleton();
/// Gives the node at `dup` a new name.
void renameTo(const MString& dup, const MString& name);

/// Rewires each cluster from `oldRoot` to the skeleton that now bears its name, in silence. Where
/// the joint counts differ, one error line is printed and the answer is false; the clusters before
/// it stay rewired.
bool reconnectInSilence(const MObject& oldRoot, const MString& rootName, const MObjectArray& skins);

/// Binds the mesh to the skeleton of that name, which takes up its kept cluster.
void bindMesh(const MString& rootName, const MString& mesh);

/// Binds every mesh downstream of the clusters; the null entry for "no meshes" is skipped.
void bindMeshesOf(const MString& rootName, const MObjectArray& skins);
