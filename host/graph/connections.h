#pragma once

#include "base/status.h"
#include "graph/plug_store.h"

namespace torvel {

/// The fourth layer of a scene: what feeds what. As a source, worldMatrix and its kin named without
/// an index mean element 0.
class Connections : public PlugStore {
  public:
    /// What connect refuses about the two plugs themselves: missing, not readable, not writable, of
    /// unlike types.
    Status checkConnection(const Plug& source, const Plug& target) const;
    /// The plug that feeds exactly this one; null when none.
    Plug source(const Plug& target) const;
    /// Source on the plug or on a compound/array above it (then the matching child of that source).
    Plug effectiveSource(const Plug& target) const;
    const std::vector<Plug>& targets(const Plug& source) const;
    bool isConnected(const Plug& source, const Plug& target) const;
    struct Connection {
        Plug source, target;
        std::uint64_t order;
    };
    /// Of one node: what feeds it and what it feeds, ascending order of creation.
    std::vector<Connection> incoming(NodeHandle handle) const;
    std::vector<Connection> outgoing(NodeHandle handle) const;
    std::vector<Connection> allConnections() const;

  protected:
    using PlugStore::PlugStore;
    /// A world matrix named without an index means that of the first path.
    Plug firstPath(const Plug& source) const;
};

}  // namespace torvel
