#pragma once

// Second half of the edit that keeps the skin: a kept cluster is rewired from the old skeleton to
// its copy, influence by influence. Weights stay in the cluster and are never read.

#include <maya/MObject.h>
#include <maya/MObjectArray.h>

/// Moves every `matrix` and `lockWeights` element of the cluster that a joint under `originalRoot`
/// feeds to the joint of the same short name under `duplicateRoot`, the last one if several bear
/// it. Elements keep their logical index. An old joint without a namesake gives a warning and stays
/// wired; influences outside the old hierarchy are left alone. Ends with an info line.
void reconnectInfluencesByName(const MObject& originalRoot, const MObject& duplicateRoot,
                               const MObject& skinCluster);

/// The whole second half for roots[0]: rewires each cluster to the skeleton that now bears that
/// root's name, deletes "tempOldSkeletonGroup" and binds every downstream mesh again. Stops with a
/// report, and nothing undone, when the joint counts differ. `duplicates` is not read.
void reconnectSkinCluster(const MObjectArray& roots, const MObjectArray& duplicates,
                          const MObjectArray& skinClusters);

/// Copies weights between bound mesh transforms, paired by position: first removes the influences
/// that the source lacks from the destination. Each refusal is an error line; a pair without two
/// clusters is skipped.
void transferSkinWeights(const MObjectArray& sources, const MObjectArray& destinations);

/// The error line for two skeletons of unequal size.
void printCountMismatch(unsigned int oldCount, unsigned int newCount);

/// Reports two skeletons of unequal size: an error line with both counts, then the short names of
/// the old and of the new joints as info lines.
void printJointMismatch(const MObjectArray& oldJoints, const MObjectArray& newJoints);
