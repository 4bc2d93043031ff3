#pragma once

#include <Imath/ImathBox.h>

#include "graph/scene.h"

namespace torvel {

using Box3d = Imath::Box3d;

struct BoxOptions {
    bool curvesExactly = false;  ///< the curves themselves instead of their control points
    bool visibleOnly = false;    ///< without hidden nodes and what is below them
};

/// World-space box around a DAG node and all below it: shape points (intermediate shapes left out),
/// locator crosses, and the positions of joints. A tree without any of them gives the node's own
/// position.
Box3d worldBounds(const Scene& scene, NodeHandle node, const BoxOptions& options = {});

}  // namespace torvel
