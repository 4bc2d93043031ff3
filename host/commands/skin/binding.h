#pragma once

#include <functional>
#include <string>
#include <vector>

#include "graph/scene.h"

/// Skins of shapes: finding them, and what the commands skinCluster, skinPercent and dagPose do to
/// the scene.
namespace torvel {

class WeightList;

/// The bindable shape (mesh or curve) a node stands for: itself, or the first one below a transform
/// that is no intermediate object; null when there is none.
NodeHandle bindableShape(const Scene& scene, NodeHandle node);

/// Skin clusters in the history of a shape, nearest first; dormant ones (nodeState other than 0)
/// included.
std::vector<NodeHandle> findSkinClusters(const Scene& scene, NodeHandle shape);

/// The shapes that show a cluster's output, by output index; walks on through other deformers.
std::vector<NodeHandle> outputShapes(const Scene& scene, NodeHandle cluster);

struct Influence {
    std::int32_t logical;
    NodeHandle node;
};
/// Nodes connected to matrix[], ascending logical index.
std::vector<Influence> influencesOf(const Scene& scene, NodeHandle cluster);
/// Logical index of a node in matrix[]; -1 when it is no influence.
std::int32_t influenceIndex(const Scene& scene, NodeHandle cluster, NodeHandle node);
/// Whether the influence's weights are held (lockWeights, usually fed by the joint).
bool isInfluenceLocked(const Scene& scene, NodeHandle cluster, std::int32_t logical);

/// Null when the node is no skin cluster.
const WeightList* weightsOf(const Scene& scene, NodeHandle cluster);
void changeWeights(Scene& scene, NodeHandle cluster,
                   const std::function<void(WeightList&)>& change);

struct BindOptions {
    std::string name;  ///< of a new cluster; empty: numbered
    int maxInfluences = 2;
    bool obeyMax = false;
    double dropoff = 4.0;
    int bindMethod = 0;  ///< 0 closest distance, 1 in the hierarchy
    int skinMethod = 0;
    int normalize = 1;
    bool multi = false;  ///< allows a second live cluster
    bool setsSkinMethod = false,
         setsNormalize = false;  ///< given by the caller: also stored in a cluster taken up
};

/// Binds the shape to the influences, or takes up a dormant cluster of its history as it stands
/// (weights, influences, dropoff and name kept). Refused when a live cluster is there and `multi`
/// is off; nothing changes then.
Status bindSkin(Scene& scene, NodeHandle shape, const std::vector<NodeHandle>& influences,
                const BindOptions& options, NodeHandle& cluster);

/// Makes the cluster dormant: everything stays connected, the shape shows its original points,
/// channels unlocked.
void unbindKeepHistory(Scene& scene, NodeHandle cluster);
/// Deletes the cluster; its shapes keep their original geometry, channels unlocked.
Status unbindSkin(Scene& scene, NodeHandle cluster);

struct AddInfluenceOptions {
    bool hasWeight = false;
    double weight = 0.0;
    bool lock = false;
    double dropoff = 4.0;
};
Status addInfluence(Scene& scene, NodeHandle cluster, NodeHandle node,
                    const AddInfluenceOptions& options);
Status removeInfluence(Scene& scene, NodeHandle cluster, NodeHandle node);

/// Connects influence number `logical` of the cluster: matrix, lock, colour, bind matrices,
/// dropoff.
Status connectInfluence(Scene& scene, NodeHandle cluster, NodeHandle node, std::int32_t logical,
                        double dropoff);

/// Locks or unlocks translate, rotate and scale of the shape's transform.
void lockGeometryChannels(Scene& scene, NodeHandle shape, bool on);

/// Makes the sum of a vertex 1 without touching locked influences: the others share the rest in
/// proportion. False, and nothing changed, when no unlocked influence has weight to share it.
bool normalizeVertex(WeightList& weights, std::size_t vertex, const std::vector<bool>& locked);
/// Locks by logical index, for all influences of the cluster.
std::vector<bool> influenceLocks(const Scene& scene, NodeHandle cluster);

}  // namespace torvel
