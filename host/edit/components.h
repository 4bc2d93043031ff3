#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "graph/scene.h"

namespace torvel {

/// Points of one shape: mesh vertices ("vtx") or control vertices of a curve ("cv").
struct PointSet {
    NodeHandle shape;
    std::vector<int> points;  ///< ascending, without repeats; clamped to those that exist
};

/// Items of "name.vtx[0:3]", "name.cv[*]", "name.f[2]" with the name of a shape or its transform;
/// the selected node is the shape and the component text is in its short form ("vtx[0:7]"). False
/// when the text names no component kind; true with nothing added when the object does not exist or
/// has no such points. A range ends at the last point.
bool componentItems(const Scene& scene, const std::string& text, std::vector<SelectionItem>& out);

/// Where the text of an item's components belongs: the transform when the shape is its only one
/// that shows, else the shape. The node itself for an item without components.
NodeHandle componentOwner(const Scene& scene, const SelectionItem& item);

/// The item cut into single components: "cv[0:2]" into "cv[0]", "cv[1]" and "cv[2]". Others stay as
/// they are.
std::vector<SelectionItem> singleComponents(const SelectionItem& item);

/// Number of components of a kind ("vtx", "cv", "f", "e"; edges are not counted: 0).
int componentCount(const Scene& scene, NodeHandle shape, std::string_view kind);

/// The points that an item's component text names; faces give their vertices. False for an item
/// without components.
bool pointsOfItem(const Scene& scene, const SelectionItem& item, PointSet& out);

/// All points of a shape (mesh or curve); empty for other shapes.
PointSet allPoints(const Scene& scene, NodeHandle shape);

/// Points in the space of the shape, as they are shown now.
std::vector<V3d> shapePoints(const Scene& scene, NodeHandle shape);

/// Moves points of a shape: for a shape without history its own points change, otherwise tweaks are
/// added on top. `points` are new positions in the space of the shape, one for each entry of
/// `set.points`.
Status movePoints(Scene& scene, const PointSet& set, const std::vector<V3d>& points);

}  // namespace torvel
