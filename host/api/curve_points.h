#pragma once

#include <vector>

#include "base/status.h"
#include "graph/math.h"
#include "graph/plug.h"

namespace torvel::api {

/// Moves the vertices of a curve shape to these places in its own space. With construction history the way is kept as
/// offsets in `controlPoints`, so that it stays when the history computes anew; without, the stored curve changes.
Status moveCurvePoints(NodeHandle shape, const std::vector<V3d>& points);

}  // namespace torvel::api
