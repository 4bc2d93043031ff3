#pragma once

#include <memory>
#include <vector>

#include "graph/data.h"
#include "graph/scene.h"

/// Curve shapes. Without construction history a shape keeps its curve in `cached`; with history the
/// curve comes in by `create` and edits of its points are kept in `controlPoints` as differences.
namespace torvel {

/// The evaluated curve in the shape's own space; null when the node is no curve or has none yet.
std::shared_ptr<const NurbsCurveData> curveOf(const Scene& scene, NodeHandle shape);

/// Makes `curve` the stored curve of the shape, which shows without history; kept edits of points
/// end.
void setCurve(Scene& scene, NodeHandle shape, std::shared_ptr<const NurbsCurveData> curve);

/// Moves all points (own space, as many as the curve has; fewer leave the rest). Returns false
/// without a curve.
bool setCurvePoints(Scene& scene, NodeHandle shape, const std::vector<V3d>& points);

/// The same curve with every point moved by `matrix`.
std::shared_ptr<const NurbsCurveData> transformed(const NurbsCurveData& curve, const M44d& matrix);

}  // namespace torvel
