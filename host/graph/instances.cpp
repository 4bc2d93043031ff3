#include "graph/instances.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

namespace torvel {

namespace {

// A node and all below it, each before its children.
std::vector<NodeHandle> parentsFirst(const Scene& scene, NodeHandle top) {
    std::vector<NodeHandle> order;
    std::unordered_map<std::uint32_t, bool> done;
    std::vector<NodeHandle> stack{top};
    while (!stack.empty()) {
        const NodeHandle at = stack.back();
        const auto [state, fresh] = done.emplace(at.index, false);
        if (fresh) {
            for (NodeHandle child : scene.node(at)->children)
                if (done.count(child.index) == 0)
                    stack.push_back(child);
            continue;
        }
        stack.pop_back();
        if (!std::exchange(state->second, true))
            order.push_back(at);
    }
    std::reverse(order.begin(), order.end());
    return order;
}

// The most paths from a node to one below it.
double mostPathsBelow(const Scene& scene, NodeHandle top) {
    std::unordered_map<std::uint32_t, double> paths{{top.index, 1.0}};
    double most = 1.0;
    for (NodeHandle at : parentsFirst(scene, top)) {
        const double own = paths[at.index];
        most = std::max(most, own);
        for (NodeHandle child : scene.node(at)->children)
            paths[child.index] += own;
    }
    return most;
}

}  // namespace

Status checkPaths(const Scene& scene, NodeHandle child, NodeHandle newParent, bool added) {
    const int above = scene.instanceCount(newParent);
    if (above == 1 && !added)
        return Status::ok();
    const double own = above + (added ? scene.instanceCount(child) : 0);
    if (own * mostPathsBelow(scene, child) <= kMostPaths)
        return Status::ok();
    return Status::failure("A node can have " + std::to_string(kMostPaths) +
                           " paths at most: " + scene.node(child)->name);
}

}  // namespace torvel
