#pragma once

#include <cstddef>

#include "graph/node_type.h"

/// Rows of the mesh shape and of the nodes that make meshes; after the base types, in this order.
namespace torvel {

extern const NodeTypeRow* const kMeshTypes[];
extern const std::size_t kMeshTypeCount;

}  // namespace torvel
