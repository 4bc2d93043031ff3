#pragma once

#include "graph/data.h"
#include "graph/scene.h"

/// What deformers, sets and group nodes share.
namespace torvel {

class Evaluation;

/// Calls `deform(element, geometry)` for each element of the node's `input` array whose geometry is
/// there and puts what it returns into the same element of outputGeometry. nodeState 1 and an
/// envelope of 0 hand the geometry on unchanged, nodeState 2 gives none. For evaluate functions of
/// types that derive from geometryFilter.
using DeformFunction = PayloadPtr (*)(Evaluation& evaluation, std::int32_t element,
                                      const PayloadPtr& geometry);
void evaluateFilter(Evaluation& evaluation, DeformFunction deform);

}  // namespace torvel
