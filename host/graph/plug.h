#pragma once

#include <cstdint>

namespace torvel {

/// Identity of a node: survives rename and reparent; a handle of a deleted node never becomes valid
/// again.
struct NodeHandle {
    std::uint32_t index = 0;
    std::uint32_t generation = 0;  ///< 0: the null handle

    bool isNull() const { return generation == 0; }
    friend bool operator==(NodeHandle a, NodeHandle b) {
        return a.index == b.index && a.generation == b.generation;
    }
    friend bool operator!=(NodeHandle a, NodeHandle b) { return !(a == b); }
};

/// Position of an attribute in its node: the type's attributes first (base types before derived),
/// dynamic ones after.
using AttrIndex = std::uint32_t;
inline constexpr AttrIndex kNoAttr = ~AttrIndex(0);
inline constexpr int kMaxArrayDepth = 4;

/// One attribute of one node. `index[k]` is the logical index at the k-th array on the way from the
/// root attribute to this one; -1 at the last place means the array itself. Unused places are -1.
struct Plug {
    NodeHandle node;
    AttrIndex attr = kNoAttr;
    std::int32_t index[kMaxArrayDepth] = {-1, -1, -1, -1};

    Plug() = default;
    Plug(NodeHandle n, AttrIndex a) : node(n), attr(a) {}
    Plug(NodeHandle n, AttrIndex a, std::int32_t i) : node(n), attr(a) { index[0] = i; }

    bool isNull() const { return node.isNull() || attr == kNoAttr; }
    friend bool operator==(const Plug& a, const Plug& b) {
        return a.node == b.node && a.attr == b.attr && a.index[0] == b.index[0] &&
               a.index[1] == b.index[1] && a.index[2] == b.index[2] && a.index[3] == b.index[3];
    }
    friend bool operator!=(const Plug& a, const Plug& b) { return !(a == b); }
};

}  // namespace torvel
