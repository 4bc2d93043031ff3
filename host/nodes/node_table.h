#pragma once

#include "graph/node_type.h"

namespace torvel {

/// Enters every node type of the host, bases before derived types.
void registerNodeTypes(TypeRegistry& registry);

/// The registry of the process, filled on first use. All scenes share it.
const TypeRegistry& nodeTypes();

}  // namespace torvel
