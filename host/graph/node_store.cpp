#include "graph/node_store.h"

#include <algorithm>

namespace torvel {

NodeHandle NodeStore::put(std::unique_ptr<Node> made) {
    const bool returns = !made->self.isNull();
    if (returns) {
        const std::uint32_t index = made->self.index;
        m_free.erase(std::find(m_free.rbegin(), m_free.rend(), index).base() - 1);
    } else {
        std::uint32_t index = static_cast<std::uint32_t>(m_nodes.size());
        if (m_free.empty()) {
            m_nodes.emplace_back();
            m_generations.push_back(0);
        } else {
            index = m_free.back();
            m_free.pop_back();
        }
        made->self = {index, ++m_lastGeneration};
        made->created = ++m_creations;
    }
    const NodeHandle handle = made->self;
    m_generations[handle.index] = handle.generation;
    m_nodes[handle.index] = std::move(made);
    ++m_alive;
    return handle;
}

std::unique_ptr<Node> NodeStore::takeOut(NodeHandle handle) {
    std::unique_ptr<Node> node = std::move(m_nodes[handle.index]);
    m_generations[handle.index] = 0;
    m_free.push_back(handle.index);
    --m_alive;
    ++m_structure;
    return node;
}

void NodeStore::dropNodes() {
    m_nodes.clear();
    m_generations.clear();
    m_free.clear();
    m_alive = 0;
    m_creations = 0;
    m_world = m_time = NodeHandle();
    ++m_structure;
}

void NodeStore::exchangeNodes(NodeStore& other) {
    m_nodes.swap(other.m_nodes);
    m_generations.swap(other.m_generations);
    m_free.swap(other.m_free);
    std::swap(m_alive, other.m_alive);
    std::swap(m_creations, other.m_creations);
    std::swap(m_visit, other.m_visit);
    std::swap(m_world, other.m_world);
    std::swap(m_time, other.m_time);
    m_lastGeneration = other.m_lastGeneration = std::max(m_lastGeneration, other.m_lastGeneration);
    m_structure = other.m_structure =
        std::max(m_structure, other.m_structure) + 1;  // no plan of either one holds
}

std::vector<NodeHandle> NodeStore::allNodes() const {
    std::vector<const Node*> nodes;
    nodes.reserve(m_alive);
    forEachNode([&](const Node& n) { nodes.push_back(&n); });
    std::sort(nodes.begin(), nodes.end(),
              [](const Node* a, const Node* b) { return a->created < b->created; });
    std::vector<NodeHandle> out;
    out.reserve(nodes.size());
    for (const Node* n : nodes)
        out.push_back(n->self);
    return out;
}

bool NodeStore::hasFn(NodeHandle handle, int fn) const {
    const Node* n = node(handle);
    return n && n->type->hasFn(fn);
}

bool NodeStore::isType(NodeHandle handle, std::string_view typeName) const {
    const Node* n = node(handle);
    return n && (n->type->derivesFrom(typeName) ||
                 (!n->unknownType.empty() && n->unknownType == typeName));
}

std::string NodeStore::typeName(NodeHandle handle) const {
    const Node* n = node(handle);
    if (!n)
        return {};
    return n->unknownType.empty() ? n->type->name : n->unknownType;
}

}  // namespace torvel
