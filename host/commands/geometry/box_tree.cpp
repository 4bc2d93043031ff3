#include "commands/geometry/box_tree.h"

#include <algorithm>
#include <numeric>

namespace torvel {

namespace {

constexpr std::size_t kLeaf = 6;

}  // namespace

BoxTree::BoxTree(const std::vector<Imath::Box3d>& boxes) : m_items(boxes.size()) {
    std::iota(m_items.begin(), m_items.end(), std::size_t(0));
    if (!boxes.empty())
        build(boxes, 0, boxes.size());
}

// Halves by count, so that the depth is the logarithm of the number of items.
std::size_t BoxTree::build(const std::vector<Imath::Box3d>& boxes, std::size_t first,
                           std::size_t count) {
    const std::size_t at = m_branches.size();
    m_branches.emplace_back();
    Imath::Box3d all, centers;
    for (std::size_t i = first; i < first + count; ++i) {
        all.extendBy(boxes[m_items[i]]);
        centers.extendBy(boxes[m_items[i]].center());
    }
    m_branches[at].box = all;
    if (count <= kLeaf) {
        m_branches[at].first = first;
        m_branches[at].count = count;
        return at;
    }
    const unsigned axis = centers.majorAxis();
    const std::size_t half = count / 2;
    const auto begin = m_items.begin() + static_cast<std::ptrdiff_t>(first);
    std::nth_element(begin, begin + static_cast<std::ptrdiff_t>(half),
                     begin + static_cast<std::ptrdiff_t>(count), [&](std::size_t a, std::size_t b) {
                         const double ca = boxes[a].center()[axis], cb = boxes[b].center()[axis];
                         return ca < cb || (ca == cb && a < b);
                     });
    build(boxes, first, half);
    const std::size_t right = build(boxes, first + half, count - half);
    m_branches[at].right = right;
    return at;
}

}  // namespace torvel
