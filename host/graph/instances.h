#pragma once

#include "graph/scene.h"

namespace torvel {

/// The most paths that one node may have: each is an element of its worldMatrix, and they multiply
/// from level to level.
inline constexpr int kMostPaths = 16384;

/// Fails when a node that is put below another one (`added`: besides the parents that it has), or a
/// node below it, came to more than kMostPaths paths.
Status checkPaths(const Scene& scene, NodeHandle child, NodeHandle newParent, bool added);

}  // namespace torvel
