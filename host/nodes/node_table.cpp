#include "nodes/node_table.h"

#include <vector>

#include "nodes/core/rows.h"

// Every family of node types, one line each, bases before derived types. A family is the function
// of one source file that hands out its rows: the line declares and lists it. Listings of derived
// types show the types in this order.
// clang-format off
#define TORVEL_NODE_FAMILIES(family) \
    family(baseTypes) \
    family(transformTypes) \
    family(unknownTypes) \
    family(viewShapeTypes) \
    family(curveShapeTypes) \
    family(circleTypes) \
    family(ikTypes) \
    family(constraintTypes) \
    family(poseTypes) \
    family(scriptTypes) \
    family(timeTypes) \
    family(animCurveTypes) \
    family(meshTypes) \
    family(polyTypes) \
    family(filterTypes) \
    family(skinTypes) \
    family(defaultTypes) \
    family(arithmeticTypes) \
    family(rangeTypes) \
    family(blendTypes) \
    family(matrixTypes) \
    family(blendShapeTypes) \
    family(aimMatrixTypes)
// clang-format on

namespace torvel {

#define TORVEL_DECLARE(name) TypeRows name();
TORVEL_NODE_FAMILIES(TORVEL_DECLARE)
#undef TORVEL_DECLARE

namespace {

#define TORVEL_LIST(name) &name,
TypeRows (*const kFamilies[])() = {TORVEL_NODE_FAMILIES(TORVEL_LIST)};
#undef TORVEL_LIST

const TypeRegistry* filledRegistry() {
    std::vector<const NodeTypeRow*> rows;
    for (TypeRows (*const family)() : kFamilies) {
        const TypeRows own = family();
        for (std::size_t i = 0; i < own.count; ++i)
            rows.push_back(own.rows + i);
    }
    auto* registry = new TypeRegistry;  // lives as long as the process: scenes point into it
    registry->add(rows.data(), rows.size());
    return registry;
}

}  // namespace

const TypeRegistry& nodeTypes() {
    static const TypeRegistry* const registry = filledRegistry();
    return *registry;
}

}  // namespace torvel
