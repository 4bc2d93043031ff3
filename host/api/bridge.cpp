#include "api/bridge.h"

namespace torvel::api {

namespace {

struct TypeName {
    MFn::Type type;
    const char* name;
};

#define TORVEL_TYPE(name) \
    { MFn::name, #name }

const TypeName kTypeNames[] = {
    TORVEL_TYPE(kInvalid),
    TORVEL_TYPE(kBase),
    TORVEL_TYPE(kNamedObject),
    TORVEL_TYPE(kDependencyNode),
    TORVEL_TYPE(kPlugin),
    TORVEL_TYPE(kAddDoubleLinear),
    TORVEL_TYPE(kAnimCurve),
    TORVEL_TYPE(kCreate),
    TORVEL_TYPE(kCircle),
    TORVEL_TYPE(kTime),
    TORVEL_TYPE(kUnitConversion),
    TORVEL_TYPE(kDagNode),
    TORVEL_TYPE(kWorld),
    TORVEL_TYPE(kShape),
    TORVEL_TYPE(kTransform),
    TORVEL_TYPE(kAimConstraint),
    TORVEL_TYPE(kIkEffector),
    TORVEL_TYPE(kIkHandle),
    TORVEL_TYPE(kJoint),
    TORVEL_TYPE(kLocator),
    TORVEL_TYPE(kCamera),
    TORVEL_TYPE(kDisplayLayer),
    TORVEL_TYPE(kReverse),
    TORVEL_TYPE(kMultiplyDivide),
    TORVEL_TYPE(kPlusMinusAverage),
    TORVEL_TYPE(kCondition),
    TORVEL_TYPE(kBlendColors),
    TORVEL_TYPE(kAttribute),
    TORVEL_TYPE(kUnknownDag),
    TORVEL_TYPE(kUnknown),
    TORVEL_TYPE(kDecomposeMatrix),
    TORVEL_TYPE(kMultMatrix),
    TORVEL_TYPE(kIkSolver),
    TORVEL_TYPE(kDagPose),
    TORVEL_TYPE(kOrientConstraint),
    TORVEL_TYPE(kPointConstraint),
    TORVEL_TYPE(kScaleConstraint),
    TORVEL_TYPE(kParentConstraint),
    TORVEL_TYPE(kPoleVectorConstraint),
    TORVEL_TYPE(kNormalConstraint),
    TORVEL_TYPE(kTangentConstraint),
    TORVEL_TYPE(kGeometryConstraint),
    TORVEL_TYPE(kNurbsCurve),
    TORVEL_TYPE(kNurbsSurface),
    TORVEL_TYPE(kMesh),
    TORVEL_TYPE(kSet),
    TORVEL_TYPE(kShadingEngine),
    TORVEL_TYPE(kGeometryFilt),
    TORVEL_TYPE(kGroupParts),
    TORVEL_TYPE(kGroupId),
    TORVEL_TYPE(kTweak),
    TORVEL_TYPE(kPolyCreator),
    TORVEL_TYPE(kSkinClusterFilter),
    TORVEL_TYPE(kConstraint),
};

#undef TORVEL_TYPE

}  // namespace

Node* dagNode(NodeHandle handle) {
    Node* node = sceneNode(handle);
    return node && node->isDag() ? node : nullptr;
}

bool hasFn(NodeHandle handle, MFn::Type type) {
    const Node* node = sceneNode(handle);
    if (!node)
        return false;
    switch (type) {
        case MFn::kBase:
        case MFn::kNamedObject:
        case MFn::kDependencyNode: return true;
        case MFn::kDagNode: return node->isDag();
        case MFn::kTransform: return node->type->is(kTransformType);
        case MFn::kShape: return node->type->is(kShapeType);
        case MFn::kConstraint: return node->type->is(kConstraintType);
        case MFn::kGeometryFilt: return node->type->is(kDeformerType);
        default: return node->type->hasFn(type);
    }
}

bool passes(NodeHandle handle, MFn::Type filter) {
    return filter == MFn::kInvalid ? sceneNode(handle) != nullptr : hasFn(handle, filter);
}

bool isIntermediate(const Node& node) {
    const Plug plug = scene()->findPlug(node.self, "intermediateObject");
    return !plug.isNull() && scene()->number(plug) != 0.0;
}

const char* typeName(int apiType) {
    for (const TypeName& row : kTypeNames)
        if (row.type == apiType)
            return row.name;
    return "kInvalid";
}

const char* apiTypeStr(NodeHandle handle) {
    const Node* node = sceneNode(handle);
    return node ? node->type->apiTypeName.c_str() : "kInvalid";
}

Status createNode(const std::string& type, const std::string& name, NodeHandle parent,
                  NodeHandle& made, NodeHandle* shape) {
    Scene* current = scene();
    if (!current)
        return Status::failure("no scene");
    const NodeType* row = current->types().find(type);
    const bool bare = row && row->is(kShapeType) && (parent.isNull() || parent == current->world());
    if (!bare)
        return current->createNode(type, name, parent, made);

    NodeHandle below;
    if (Status status = current->createNode("transform", name, {}, made); !status)
        return status;
    const Status status = current->createNode(type, {}, made, below);
    if (!status) {
        current->deleteNodes({made});
        made = {};
    }
    if (shape)
        *shape = below;
    return status;
}

}  // namespace torvel::api
