#pragma once

#include <vector>

#include "graph/scene.h"

/// The poses (dagPose nodes) of skeletons.
namespace torvel {

struct PoseMember {
    std::int32_t logical;
    NodeHandle node;
};
/// Members that are connected, ascending index.
std::vector<PoseMember> poseMembers(const Scene& scene, NodeHandle pose);

/// Poses that have the node or a joint of its skeleton (its ancestors and everything below them) as
/// a member, by creation; `bindOnly` leaves out those that are no bind poses.
std::vector<NodeHandle> posesOf(const Scene& scene, NodeHandle node, bool bindOnly);

/// A new pose of these nodes as they stand, parents taken from the DAG. A bind pose takes world
/// matrices from the joints' bindPose attribute, which is set.
Status createPose(Scene& scene, const std::vector<NodeHandle>& nodes, bool bindPose,
                  const std::string& name, NodeHandle& pose);
/// Adds nodes as they stand now; takes the values of those again that are members.
void addToPose(Scene& scene, NodeHandle pose, const std::vector<NodeHandle>& nodes);
/// Drops members without a node, adds `nodes` and takes all members' values again.
void refreshPose(Scene& scene, NodeHandle pose, const std::vector<NodeHandle>& nodes);
/// Takes the values of one member again; false when it is none.
bool resetMember(Scene& scene, NodeHandle pose, NodeHandle node);

/// Whether every member stands in the world where the pose holds it (1e-6).
bool isAtPose(const Scene& scene, NodeHandle pose);

/// Puts all members back; `global` also places the top members in the world. Nothing moves when a
/// channel that would have to change is locked or driven.
Status restorePose(Scene& scene, NodeHandle pose, bool global);

/// Joints of the list and their joint ancestors, ancestors first, no repeats; other nodes as they
/// stand.
std::vector<NodeHandle> withJointParents(const Scene& scene, const std::vector<NodeHandle>& nodes);

}  // namespace torvel
