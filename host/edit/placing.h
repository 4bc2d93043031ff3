#pragma once

#include <vector>

#include "graph/scene.h"
#include "nodes/transform/transform.h"

/// Changes of the DAG that keep nodes where they are in the world, and the inverseScale links of
/// joints.
namespace torvel {

struct ChannelValue {
    Plug plug;
    double value;
};

/// The plugs of translate, rotate, scale, rotateAxis, pivots and shear (transforms) or joint orient
/// (joints) whose value in `wanted` differs from the present one by more than `tolerance`, relative
/// to the larger one above 1. In channel order, locked and driven ones included; none for a node
/// that is no transform.
std::vector<ChannelValue> changedChannels(const Scene& scene, NodeHandle node,
                                          const Channels& wanted, double tolerance);

/// Channels still to be written to one node. Nothing is changed before `apply`.
class ChannelPlan {
  public:
    /// Plans `wanted` for the channels of `node` that differ from it by more than 1e-13. Driven
    /// channels are left to their driver. Failure, naming the channel, when a locked one would
    /// change by more than 1e-9.
    Status plan(const Scene& scene, NodeHandle node, const Channels& wanted);
    void apply(Scene& scene) const;
    bool empty() const { return m_writes.empty(); }

  private:
    std::vector<ChannelValue> m_writes;
};

/// Channels that give a transform or joint the local matrix `local`. Transforms: translate, rotate,
/// scale and shear with pivots and rotateAxis kept. Joints: translate and jointOrient with scale,
/// rotateAxis and rotate kept. False when a joint cannot hold the matrix that way.
bool channelsForLocal(Channels& channels, const M44d& local);
/// The same with rotate (and scale for transforms and joints) taking the change; jointOrient is
/// kept, and so is rotate where an axis of `local` has no length.
void channelsForLocalByRotate(Channels& channels, const M44d& local);

/// Links parent.scale to child.inverseScale when both are joints and nothing feeds it yet.
void linkInverseScale(Scene& scene, NodeHandle parent, NodeHandle child);
/// Breaks the link that comes from the joint `parent`; inverseScale is 1 afterwards.
void unlinkInverseScale(Scene& scene, NodeHandle parent, NodeHandle child);

enum class Placement { World, Local };

struct MoveOptions {
    Placement keep = Placement::World;
    bool linkScales = true;  ///< the inverseScale links follow
};

/// Moves nodes last under `parent` (null or the world handle: the world), in order. All or nothing:
/// cycles, locked channels that would have to change and shapes that cannot move are refused before
/// anything happens. A joint that cannot hold its placement gets a transform between itself and the
/// parent; a shape's points move the other way.
Status moveUnder(Scene& scene, const std::vector<NodeHandle>& nodes, NodeHandle parent,
                 const MoveOptions& options);

/// Deepest transform that all nodes lie below (not counting themselves); the world when there is
/// none.
NodeHandle lowestCommonParent(const Scene& scene, const std::vector<NodeHandle>& nodes);

/// The first parent of a DAG node; null for the world and for nodes outside the DAG.
NodeHandle parentOf(const Scene& scene, NodeHandle node);

}  // namespace torvel
