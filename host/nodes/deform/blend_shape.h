#pragma once

#include <string>
#include <utility>
#include <vector>

#include "graph/data.h"

/// The arithmetic of blend shapes, apart from the graph.
namespace torvel {

/// What one target does at one weight: offsets of single points, ascending by point.
struct ShapeItem {
    double weight = 1.0;
    std::vector<std::pair<std::size_t, V3d>> offsets;
};

/// Share of each item (ascending by weight, none at 0) at the given weight of the target. Between
/// two items the offsets run straight from one to the other, the unmoved shape standing at weight
/// 0; beyond the outermost item its offsets go on in proportion to the weight.
std::vector<double> itemShares(const std::vector<ShapeItem>& items, double weight);

/// Weight that the index of an inputTargetItem stands for: 6000 is 1, 5500 is 0.5.
double itemWeight(std::int32_t index);

/// Points that component texts name ("vtx[3]", "cv[2:5]", "vtx[*]"), in their order, none beyond
/// `count`.
std::vector<std::size_t> namedPoints(const std::vector<std::string>& components, std::size_t count);

}  // namespace torvel
