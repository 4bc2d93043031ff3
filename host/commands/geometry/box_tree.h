#pragma once

#include <cstddef>
#include <limits>
#include <vector>

#include <Imath/ImathBox.h>

#include "graph/math.h"

namespace torvel {

/// Boxes in space, sorted so that the nearest of many things is found without looking at all of
/// them. It does not change once built.
class BoxTree {
  public:
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

    BoxTree() = default;
    explicit BoxTree(const std::vector<Imath::Box3d>& boxes);

    /// The item with the least `distance2(item)` from `point`, the lowest one of several; kNone
    /// without items. The function is asked only for items whose box is as near as the best so far.
    template <class Distance2>
    std::size_t nearest(const V3d& point, Distance2 distance2) const;

  private:
    struct Branch {
        Imath::Box3d box;
        std::size_t first = 0, count = 0;  ///< leaves: items; `count` 0: an inner branch
        std::size_t right = 0;             ///< the left one follows directly
    };
    std::size_t build(const std::vector<Imath::Box3d>& boxes, std::size_t first, std::size_t count);
    static double boxDistance2(const Imath::Box3d& box, const V3d& point);

    std::vector<Branch> m_branches;
    std::vector<std::size_t> m_items;
};

inline double BoxTree::boxDistance2(const Imath::Box3d& box, const V3d& point) {
    double sum = 0.0;
    for (int axis = 0; axis < 3; ++axis) {
        const double out = point[axis] < box.min[axis]   ? box.min[axis] - point[axis]
                           : point[axis] > box.max[axis] ? point[axis] - box.max[axis]
                                                         : 0.0;
        sum += out * out;
    }
    return sum;
}

template <class Distance2>
std::size_t BoxTree::nearest(const V3d& point, Distance2 distance2) const {
    std::size_t best = kNone;
    double least = std::numeric_limits<double>::infinity();
    std::size_t waiting[128];  // twice the depth of any tree that fits into memory
    std::size_t depth = 0;
    if (!m_branches.empty())
        waiting[depth++] = 0;
    while (depth > 0) {
        const std::size_t at = waiting[--depth];
        const Branch& branch = m_branches[at];
        if (boxDistance2(branch.box, point) > least)
            continue;
        for (std::size_t i = 0; i < branch.count; ++i) {
            const std::size_t item = m_items[branch.first + i];
            const double distance = distance2(item);
            if (distance < least || (distance == least && item < best)) {
                least = distance;
                best = item;
            }
        }
        if (branch.count > 0)
            continue;
        const std::size_t left = at + 1, right = branch.right;
        const bool leftNearer =
            boxDistance2(m_branches[left].box, point) <= boxDistance2(m_branches[right].box, point);
        waiting[depth++] = leftNearer ? right : left;
        waiting[depth++] = leftNearer ? left : right;
    }
    return best;
}

}  // namespace torvel
