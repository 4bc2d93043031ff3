#pragma once

#include <vector>

#include "graph/scene.h"
#include "nodes/deform/skin_weights.h"

/// Weights by closest distance.
namespace torvel {

/// Where an influence lies: the segments from it to its child joints, or just its position without
/// any. World space.
struct InfluenceShape {
    V3d position{0.0};
    std::vector<V3d> ends;
    double dropoff = 4.0;
};
InfluenceShape influenceShape(const Scene& scene, NodeHandle node, double dropoff);

double distanceTo(const InfluenceShape& influence, const V3d& point);

/// Weights of one point: the `most` nearest influences (ties: lower index), each distance ^
/// -dropoff, sum 1. Influences at distance zero share everything equally. `influence` in the result
/// is the position in the list.
std::vector<SkinWeight> distanceWeights(const std::vector<InfluenceShape>& influences,
                                        const V3d& point, int most);

}  // namespace torvel
