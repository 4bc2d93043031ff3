#pragma once

#include "graph/node_type.h"

namespace torvel {

/// All node types of the host, filled on first use; all scenes share them. A fault in the tables
/// (an unknown base, a name taken twice, an attribute that does not exist) ends the program with a
/// line that names it.
const TypeRegistry& nodeTypes();

}  // namespace torvel
