#pragma once

#include <vector>

#include "graph/scene.h"

namespace torvel {

/// Leaves of a compound in order; the plug itself when it is one number.
std::vector<Plug> numericLeaves(const Scene& scene, const Plug& plug);

/// What feeds the plug is an animation curve.
bool isKeyed(const Scene& scene, const Plug& plug);

}  // namespace torvel
