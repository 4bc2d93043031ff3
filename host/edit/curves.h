#pragma once

#include <memory>
#include <string>

#include "graph/data.h"
#include "graph/scene.h"

namespace torvel {

/// A transform named `name` with a curve shape named `shapeName` below it (empty: the transform's
/// name + "Shape"). Both are numbered when the names are taken.
Status makeCurveNodes(Scene& scene, const std::string& name, const std::string& shapeName,
                      NodeHandle& transform, NodeHandle& shape);

/// The stem with this number; with the first free one when that name is taken anywhere in the
/// scene.
std::string freeShapeName(const Scene& scene, const std::string& stem, const std::string& number);

/// The curve shape that a node is or holds (the first that is no intermediate object); null when
/// there is none.
NodeHandle curveShapeOf(const Scene& scene, NodeHandle node);

/// The curve with points added at its end. Ends with equal knots get them again behind the new
/// points; the new spans are as long as the last one was. Null for a periodic curve.
std::shared_ptr<NurbsCurveData> appended(const NurbsCurveData& curve,
                                         const std::vector<V3d>& points);

}  // namespace torvel
