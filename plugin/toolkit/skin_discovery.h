#pragma once

// From joints and meshes to the skin clusters between them. A cluster is known by its function
// set, never by name. Nothing here changes the scene.

#include <map>
#include <set>
#include <string>

#include <maya/MObject.h>
#include <maya/MObjectArray.h>

/// The distinct skin clusters of the nodes, in order of first reach. Joints are followed
/// downstream, and one without a cluster is silent. Any other node is asked for its mesh and then
/// for that mesh's cluster, which finds nothing through a transform and says so: pass joints.
MObjectArray collectSkinClusters(const MObjectArray& nodes);

/// The first cluster upstream of the mesh below `transform`; null object when there is none.
/// `transform` is the parent of the mesh, not the mesh: a node with no mesh child gives an error.
MObject findSkinClusterOfMesh(const MObject& transform);

/// Every cluster downstream of the joint, in walk order; empty is a normal answer. Prints nothing.
MObjectArray findSkinClustersOfJoint(const MObject& joint);

/// Short names of the cluster's influences, sorted; `fullPathByName` receives the full path of
/// each, the later one when two share a name. Empty, with an error line, for any other node.
std::set<std::string> getSkinInfluences(const MObject& skinCluster,
                                        std::map<std::string, std::string>& fullPathByName);
