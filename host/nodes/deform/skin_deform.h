#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "graph/math.h"

/// The arithmetic of a skin, apart from the graph. Row vectors; results do not depend on the number
/// of threads.
namespace torvel {

class WeightList;

/// Weights in the form the inner loop wants. Each list is filled up to a weight sum of 1 with the
/// influence that pulls to the origin (`missing`): an influence without a matrix, and weights that
/// are simply not there, do the same.
struct CompiledWeights {
    static constexpr std::size_t kLanes = 4;

    std::size_t vertices = 0;
    std::uint32_t missing = 0;  ///< number of that influence: one past the highest used
    bool narrow = false;        ///< every list fits into four entries
    // narrow: kLanes entries a vertex, padded with weight 0
    std::vector<std::uint16_t> index;
    std::vector<float> weight;
    // else: entries start[v] .. start[v + 1]
    std::vector<std::size_t> start;
    std::vector<std::uint32_t> wideIndex;
    std::vector<float> wideWeight;
};
std::shared_ptr<const CompiledWeights> compileWeights(const WeightList& weights, bool normalized);

/// One influence at evaluation.
struct SkinInfluence {
    bool present = false;
    M44d move;  ///< bindPreMatrix * matrix
};

struct SkinSetup {
    const CompiledWeights* weights = nullptr;
    std::vector<SkinInfluence> influences;  ///< by logical index
    M44d geom;                              ///< geomMatrix
    int method = 0;                         ///< 0 linear, 1 dual quaternion, 2 blended
    bool keepScale = false;  ///< dual quaternion: scale and shear of the influences act, too
    double envelope = 1.0;
    const std::vector<double>* blend =
        nullptr;  ///< by vertex: 0 linear, 1 dual quaternion; null: 0
};

/// Moves `count` points from `in` to `out` (which may be the same). Vertices without weights in the
/// list count as vertices whose weights are all missing. Runs over as many threads as the caller's
/// arena has.
void deformPoints(const SkinSetup& setup, const V3f* in, V3f* out, std::size_t count);
void deformPoints(const SkinSetup& setup, const V3d* in, V3d* out, std::size_t count);

}  // namespace torvel
