#pragma once

#include <cstdint>
#include <string_view>

#include "graph/scene.h"

namespace torvel {

/// One step of an attribute path of a file: "wl[0:7]".
struct PathStep {
    std::string_view name;
    std::int64_t first = -1;  ///< -1: no index
    std::int64_t last = -1;
};

/// A path cut into steps, without allocation.
struct AttrPath {
    static constexpr int kMaxSteps = 12;
    PathStep steps[kMaxSteps];
    int count = 0;

    enum class Cut { Good, Malformed, HugeIndex };
    /// HugeIndex: an index that no array can have (beyond 31 bits, or a range that runs backwards).
    Cut cut(std::string_view text);
};

/// What a path means on a node.
struct PathTarget {
    Plug plug;            ///< of a range: its first element's
    int rangeDepth = -1;  ///< place in Plug::index that the range fills; -1 when there is no range
    std::int64_t first = -1;
    std::int64_t last = -1;
    int bulkLevel =
        -1;  ///< of bulk arrays: 0 the array, 1 its inner array; -1 when no element is named
    bool bulkInner = false;  ///< a range of the outer array that holds whole inner arrays
};

/// Resolves a path; false when the node has no such attribute, or it is known to files only.
bool resolvePath(const Node& node, const AttrPath& path, PathTarget& target);

}  // namespace torvel
