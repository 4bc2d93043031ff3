#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "graph/node.h"

namespace torvel {

/// The first layer of a scene: its nodes by handle.
class NodeStore {
  public:
    NodeStore(const NodeStore&) = delete;
    NodeStore& operator=(const NodeStore&) = delete;

    const TypeRegistry& types() const { return m_types; }
    /// Null for a null, stale or foreign handle.
    Node* node(NodeHandle handle) {
        const bool alive =
            handle.index < m_generations.size() && m_generations[handle.index] == handle.generation;
        return alive ? m_nodes[handle.index].get() : nullptr;
    }
    const Node* node(NodeHandle handle) const { return const_cast<NodeStore*>(this)->node(handle); }
    bool isValid(NodeHandle handle) const { return node(handle) != nullptr; }
    NodeHandle world() const { return m_world; }
    NodeHandle timeNode() const { return m_time; }
    std::size_t nodeCount() const { return m_alive; }
    /// All nodes by creation; the world first.
    std::vector<NodeHandle> allNodes() const;
    template <class F>
    void forEachNode(F&& f) const {
        for (const auto& n : m_nodes)
            if (n)
                f(*n);
    }
    bool hasFn(NodeHandle handle, int fn) const;
    bool isType(NodeHandle handle, std::string_view typeName) const;  ///< derived types included
    std::string typeName(NodeHandle handle) const;  ///< real name, of unknown nodes too

    std::uint64_t nextVisit() const { return ++m_visit; }
    /// Ascends with every change of connections, hierarchy or attributes.
    std::uint64_t structure() const { return m_structure; }

  protected:
    explicit NodeStore(const TypeRegistry& types) : m_types(types) {}
    ~NodeStore() = default;

    /// Gives the node its handle, or the one it had before it was taken out.
    NodeHandle put(std::unique_ptr<Node> node);
    std::unique_ptr<Node> takeOut(NodeHandle handle);
    void dropNodes();  ///< all of them; their handles stay dead
    void exchangeNodes(NodeStore& other);

    const TypeRegistry& m_types;
    std::uint64_t m_structure = 1;
    mutable std::uint64_t m_visit = 0;
    std::uint32_t m_lastGeneration = 0;  ///< of every node ever made here: no handle comes back
    NodeHandle m_world;
    NodeHandle m_time;

  private:
    std::vector<std::unique_ptr<Node>> m_nodes;
    std::vector<std::uint32_t> m_generations;  ///< 0 at a free place
    std::vector<std::uint32_t> m_free;
    std::size_t m_alive = 0;
    std::uint64_t m_creations = 0;
};

}  // namespace torvel
