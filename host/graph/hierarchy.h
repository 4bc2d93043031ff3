#pragma once

#include "graph/node_store.h"

namespace torvel {

/// The second layer of a scene: which node stands below which. A node with several parents is an
/// instance: one node, one path for each way up to the world.
class Hierarchy : public NodeStore {
  public:
    bool isAncestor(NodeHandle ancestor, NodeHandle node) const;  ///< itself included
    int instanceCount(NodeHandle node) const;
    /// Nodes from just below the world down to `node` along instance number `instance`; empty when
    /// not DAG.
    std::vector<NodeHandle> path(NodeHandle node, int instance = 0) const;
    int instanceNumber(const std::vector<NodeHandle>& path) const;

  protected:
    using NodeStore::NodeStore;
};

}  // namespace torvel
