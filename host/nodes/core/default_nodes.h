#pragma once

#include "graph/scene.h"

namespace torvel {

/// Makes the nodes a new scene starts with (flag `isDefault`), except those the scene makes itself
/// (world, time1). Nodes that exist already stay as they are; types that are not registered are
/// passed over.
void createDefaultNodes(Scene& scene);

}  // namespace torvel
