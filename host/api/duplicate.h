#pragma once

#include "base/status.h"
#include "graph/plug.h"

namespace torvel::api {

/// Copies a DAG node with all below it under the same parent, as the command `duplicate` does; the
/// selection stays.
Status duplicateSubtree(NodeHandle top, NodeHandle& copy);

}  // namespace torvel::api
