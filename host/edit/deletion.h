#pragma once

#include <vector>

#include "graph/scene.h"

namespace torvel {

/// The nodes, everything below them in the DAG and what goes along with them: makers, deformers and
/// intermediate shapes that feed only doomed shapes, curves and conversions that feed only doomed
/// nodes, constraints without a target, ikHandles without start joint or effector (and the
/// effectors of doomed handles), poses without members. The given nodes first, then the others in
/// the order they were found. Default nodes are never among them.
std::vector<NodeHandle> withDependents(const Scene& scene, const std::vector<NodeHandle>& nodes);

/// Deletes nodes with all that goes along; handles of nodes that are gone are passed over. Refused,
/// before anything happens, for the world, default and locked nodes. Constraints that lose some of
/// their targets lose those targets' elements and weights.
Status deleteWithDependents(Scene& scene, const std::vector<NodeHandle>& nodes);

/// Deletes the history of a shape: what it shows now becomes its own geometry. Nothing happens for
/// a shape that is gone already.
Status deleteHistory(Scene& scene, NodeHandle shape);

/// Makes what a shape shows now (mesh, curve) the geometry of its own, to be seen once nothing
/// feeds it.
void bakeGeometry(Scene& scene, NodeHandle from, NodeHandle to);

}  // namespace torvel
