#pragma once

#include "graph/scene.h"

namespace torvel {

/// Shown as far as switches go: along one of its paths, the node itself included, every visibility
/// and lodVisibility is on (whatever drives them; any value but 0 is on), so is overrideVisibility
/// where overrides are enabled, and nothing is an intermediate object. False for nodes outside the
/// DAG.
bool isShown(const Scene& scene, NodeHandle node);

}  // namespace torvel
