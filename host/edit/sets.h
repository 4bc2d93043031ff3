#pragma once

#include <vector>

#include "graph/scene.h"

namespace torvel {

/// Members of an object set in the order they joined; whole nodes only.
std::vector<SelectionItem> setMembers(const Scene& scene, NodeHandle set);

/// Adds a node to a set (nothing when it is a member) or takes it out (nothing when it is none).
Status addToSet(Scene& scene, NodeHandle set, NodeHandle member);
void removeFromSet(Scene& scene, NodeHandle set, NodeHandle member);

}  // namespace torvel
