#include "nodes/node_table.h"

#include <vector>

#include "nodes/core/default_nodes.h"
#include "nodes/shape/mesh_types.h"
#include "nodes/core/node_types.h"
#include "nodes/deform/skin_types.h"
#include "nodes/utility/types.h"

namespace torvel {
namespace {

// Bases before derived types, families together.
const NodeTypeRow* const kNodeTypes[] = {&kDependNode,
                                         &kEntity,
                                         &kDagNodeType,
                                         &kWorldType,
                                         &kShapeBase,
                                         &kGeometryShape,
                                         &kDeformableShape,
                                         &kTransformNode,
                                         &kJointNode,
                                         &kUnknownNode,
                                         &kUnknownDagNode,
                                         &kUnknownTransform,
                                         &kLocatorShape,
                                         &kCameraShape,
                                         &kDistanceShape,
                                         &kNurbsCurveShape,
                                         &kMakeNurbCircle,
                                         &kIkHandle,
                                         &kIkEffector,
                                         &kIkSolver,
                                         &kIkRPsolver,
                                         &kIkSCsolver,
                                         &kIkSplineSolver,
                                         &kIkSystem,
                                         &kConstraintBase,
                                         &kParentConstraint,
                                         &kPointConstraint,
                                         &kOrientConstraint,
                                         &kAimConstraint,
                                         &kScaleConstraint,
                                         &kPoleVectorConstraint,
                                         &kGeometryConstraint,
                                         &kNormalConstraint,
                                         &kTangentConstraint,
                                         &kDagPose,
                                         &kTimeNode,
                                         &kUnitConversion,
                                         &kAnimCurveBase,
                                         &kAnimCurveTL,
                                         &kAnimCurveTA,
                                         &kAnimCurveTU,
                                         &kAnimCurveTT,
                                         &kAnimCurveUL,
                                         &kAnimCurveUA,
                                         &kAnimCurveUU,
                                         &kAnimCurveUT};

}  // namespace

void registerNodeTypes(TypeRegistry& registry) {
    registry.add(kNodeTypes, sizeof kNodeTypes / sizeof *kNodeTypes);
    registry.add(kMeshTypes, kMeshTypeCount);
    registry.add(kSkinTypes, kSkinTypeCount);
    registry.add(kDefaultNodeTypes, kDefaultNodeTypeCount);
    for (const TypeRows& family :
         {arithmeticTypes(), rangeTypes(), blendTypes(), matrixTypes(), blendShapeTypes()})
        registry.add(family.rows, family.count);
}

const TypeRegistry& nodeTypes() {
    static const TypeRegistry* const registry = [] {
        auto* filled = new TypeRegistry;  // lives as long as the process: scenes of every lifetime
                                          // point into it
        registerNodeTypes(*filled);
        return filled;
    }();
    return *registry;
}

}  // namespace torvel
