#pragma once

#include "graph/data.h"
#include "graph/scene.h"
#include "nodes/core/base_attrs.h"

/// What deformers, sets and group nodes share.
namespace torvel {

class Evaluation;

inline constexpr const char* kFilterOutput = "outputGeometry";
inline constexpr std::uint32_t kGeometryOutput = kOutput | kNotStored | kGeometryOut;

inline constexpr AttrRow kFilterRows[] = {
    attrRow("outputGeometry", "og", AttrType::Mesh, 0.0, kGeometryOutput | kArray),
    compoundRow("input", "ip", AttrType::Compound, kArray, kFilterOutput),
    under("input", attrRow("inputGeometry", "ig", AttrType::Mesh, 0.0, kNotStored | kGeometryIn)),
    under("input", attrRow("groupId", "gi", AttrType::Long)),
    under("input", attrRow("componentTagExpression", "gtg", AttrType::String)),
    attrRow("originalGeometry", "orggeom", AttrType::Mesh, 0.0, kNotStored | kArray),
    attrRow("envelope", "en", AttrType::Float, 1.0, kKeyable, kFilterOutput),
    attrRow("function", "f", AttrType::Any, 0.0, kNotStored),
    attrRow("map64BitIndices", "mbi", AttrType::Bool),
};
inline constexpr AffectRow kFilterAffects[] = {{"nodeState", "outputGeometry"}};

/// The base of all deformers.
inline constexpr TypeAttrs kGeometryFilter("geometryFilter", kDependNode, kFilterRows,
                                           kFilterAffects);

/// Calls `deform(element, geometry)` for each element of the node's `input` array whose geometry is
/// there and puts what it returns into the same element of outputGeometry. nodeState 1 and an
/// envelope of 0 hand the geometry on unchanged, nodeState 2 gives none. For evaluate functions of
/// types that derive from geometryFilter.
using DeformFunction = PayloadPtr (*)(Evaluation& evaluation, std::int32_t element,
                                      const PayloadPtr& geometry);
void evaluateFilter(Evaluation& evaluation, DeformFunction deform);

}  // namespace torvel
