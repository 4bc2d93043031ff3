#pragma once

#include "graph/scene.h"
#include "nodes/core/rows.h"

namespace torvel {

/// Types of the nodes that every scene holds and that have no behaviour here: lists, globals, the
/// default materials. Attributes that files set on them are kept as they are.
extern const NodeTypeRow* const kDefaultNodeTypes[];
extern const std::size_t kDefaultNodeTypeCount;

/// Makes the nodes a new scene starts with (flag `isDefault`), except those the scene makes itself
/// (world, time1). Nodes that exist already stay as they are; types that are not registered are
/// passed over.
void createDefaultNodes(Scene& scene);

}  // namespace torvel
