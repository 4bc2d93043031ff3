#pragma once

#include <cstddef>

#include "graph/node_type.h"

/// Rows of deformers (geometryFilter, tweak, skinCluster), group nodes and sets; after the mesh
/// types, in this order.
namespace torvel {

extern const NodeTypeRow* const kSkinTypes[];
extern const std::size_t kSkinTypeCount;

}  // namespace torvel
