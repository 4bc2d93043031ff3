#pragma once

#include <vector>

#include "graph/scene.h"

/// Changing the weights of one influence on many points at once.
namespace torvel {

enum class PaintMode {
    Replace,  ///< the value
    Add,      ///< the weight plus the value
    Scale,    ///< the weight times the value
    Smooth,   ///< towards the mean of the neighbours along edges; 1: the mean itself
};

struct PaintResult {
    std::size_t changed = 0;
    std::size_t refused =
        0;  ///< points whose other weights are all held, so that nothing could give way
};

/// Paints the influence of that logical index on the points (indices; those that do not exist are
/// skipped). Weights stay between 0 and what locked influences leave; while the skin normalises,
/// the other unlocked influences share the rest in proportion, and a point where none can is left
/// as it was. A locked influence is refused. Smoothing reads the weights as they were before any
/// point changed.
Status paintWeights(Scene& scene, NodeHandle cluster, std::int32_t influence, PaintMode mode,
                    double value, const std::vector<int>& points, PaintResult& result);

/// Points that share an edge with each point of the skin's mesh, ascending; empty without a mesh.
std::vector<std::vector<int>> neighbours(const Scene& scene, NodeHandle cluster);

}  // namespace torvel
