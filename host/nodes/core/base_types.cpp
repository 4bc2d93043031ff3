// The types that others derive from, and those that stand for what the host does not know.
#include "nodes/core/base_attrs.h"
#include "nodes/core/fn_numbers.h"
#include "nodes/transform/attrs.h"
#include "nodes/transform/transform.h"

namespace torvel {
namespace {

constexpr TypeAttrs kWorld("world", kDagNode);

constexpr NodeTypeRow kBaseTypes[] = {
    typeRow(kDependNode, fn::kDependencyNode, "kDependencyNode", kAbstractType),
    typeRow(kEntity, fn::kDependencyNode, "kDependencyNode", kAbstractType),
    typeRow(kDagNode, fn::kDagNode, "kDagNode", kDagType | kAbstractType, evaluateDagNode),
    typeRow(kWorld, fn::kWorld, "kWorld", kUniqueType),
    typeRow(kShape, fn::kShape, "kShape", kShapeType | kAbstractType),
    typeRow(kGeometryShape, fn::kShape, "kShape", kAbstractType),
    typeRow(kDeformableShape, fn::kShape, "kShape", kAbstractType),
};

constexpr TypeAttrs kUnknown("unknown", kDependNode);
constexpr TypeAttrs kUnknownDag("unknownDag", kShape);
constexpr TypeAttrs kUnknownTransform("unknownTransform", kTransform);

constexpr NodeTypeRow kUnknownTypes[] = {
    typeRow(kUnknown, fn::kUnknown, "kUnknown"),
    typeRow(kUnknownDag, fn::kUnknownDag, "kUnknownDag"),
    typeRow(kUnknownTransform, fn::kUnknownDag, "kUnknownDag"),
};

}  // namespace

const DagAttrs& dagAttrs() {
    static constexpr DagAttrs attrs{
        kDagNode["visibility"],    kDagNode["intermediateObject"],  kDagNode["matrix"],
        kDagNode["inverseMatrix"], kDagNode["worldMatrix"],         kDagNode["worldInverseMatrix"],
        kDagNode["parentMatrix"],  kDagNode["parentInverseMatrix"], kDagNode["offsetParentMatrix"]};
    return attrs;
}

TypeRows baseTypes() {
    return family(kBaseTypes);
}

TypeRows unknownTypes() {
    return family(kUnknownTypes);
}

}  // namespace torvel
