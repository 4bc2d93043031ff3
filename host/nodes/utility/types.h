#pragma once

#include <cstddef>

#include "graph/node_type.h"

/// Rows of the utility nodes, one group for each family file. A type without a function-set number
/// of its own reports that of a plain dependency node.
namespace torvel {

struct TypeRows {
    const NodeTypeRow* const* rows;
    std::size_t count;
};

TypeRows
arithmeticTypes();  ///< multiplyDivide plusMinusAverage reverse addDoubleLinear distanceBetween ...
TypeRows rangeTypes();       ///< clamp setRange remapValue condition
TypeRows blendTypes();       ///< blendColors blendTwoAttr blendWeighted pairBlend choice
TypeRows matrixTypes();      ///< composeMatrix decomposeMatrix multMatrix inverseMatrix pickMatrix
                             ///< blendMatrix ...
TypeRows blendShapeTypes();  ///< blendShape; after geometryFilter

}  // namespace torvel
