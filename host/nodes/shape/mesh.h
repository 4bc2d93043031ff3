#pragma once

#include <memory>

#include "graph/data.h"
#include "graph/scene.h"

/// Mesh shapes: their evaluated data and ways to give a shape points and faces of its own.
namespace torvel {

/// The evaluated mesh of a shape (its outMesh), points in the space of the shape; never null, empty
/// for a node that is no mesh. Shared with the graph: never changed.
std::shared_ptr<const MeshData> meshPoints(const Scene& scene, NodeHandle shape);
/// The points in world space, double precision.
std::vector<V3d> meshWorldPoints(const Scene& scene, NodeHandle shape);

/// Gives the shape these points and faces as its own (vrts, edges, faces), tweaks dropped. They
/// show once nothing feeds inMesh.
void setOwnMesh(Scene& scene, NodeHandle shape, const MeshData& mesh);
/// Copies the own points, edges, faces and tweaks of a shape and the file text kept with it.
void copyOwnMesh(Scene& scene, NodeHandle from, NodeHandle to);
/// Drops own points, edges and faces (a shape that gets its geometry by inMesh); `tweaksToo` drops
/// pnts as well.
void clearOwnMesh(Scene& scene, NodeHandle shape, bool tweaksToo);

}  // namespace torvel
