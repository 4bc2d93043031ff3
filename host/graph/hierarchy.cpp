#include "graph/hierarchy.h"

#include <algorithm>

namespace torvel {

bool Hierarchy::isAncestor(NodeHandle ancestor, NodeHandle handle) const {
    const std::uint64_t stamp = nextVisit();
    std::vector<NodeHandle> stack{handle};
    while (!stack.empty()) {
        const NodeHandle at = stack.back();
        stack.pop_back();
        if (at == ancestor)
            return true;
        const Node* n = node(at);
        if (!n || n->visit == stamp)
            continue;
        n->visit = stamp;
        stack.insert(stack.end(), n->parents.begin(), n->parents.end());
    }
    return false;
}

int Hierarchy::instanceCount(NodeHandle handle) const {
    const Node* n = node(handle);
    int count = 1;
    while (n && n->parents.size() == 1)  // the usual case, however deep
        n = node(n->parents.front());
    if (!n || n->parents.empty())
        return count;
    count = 0;
    for (NodeHandle parent : n->parents)
        count += instanceCount(parent);
    return count;
}

std::vector<NodeHandle> Hierarchy::path(NodeHandle handle, int instance) const {
    std::vector<NodeHandle> steps;
    const Node* n = node(handle);
    if (!n || !n->isDag())
        return steps;
    while (n && n->self != m_world) {
        steps.push_back(n->self);
        if (n->parents.size() == 1) {
            n = node(n->parents.front());
            continue;
        }
        const Node* above = nullptr;
        for (NodeHandle parent : n->parents) {
            const int count = instanceCount(parent);
            if (instance < count) {
                above = node(parent);
                break;
            }
            instance -= count;
        }
        n = above;
    }
    std::reverse(steps.begin(), steps.end());
    return steps;
}

int Hierarchy::instanceNumber(const std::vector<NodeHandle>& steps) const {
    if (steps.empty())
        return 0;
    const int count = instanceCount(steps.back());
    for (int i = 0; i < count; ++i)
        if (path(steps.back(), i) == steps)
            return i;
    return 0;
}

}  // namespace torvel
