#include "api/bridge.h"

#include "nodes/core/fn_numbers.h"

namespace torvel::api {

namespace {

// MFn and the table of the node types say the same; a number that only MFn has is found by the
// switch of typeName().
#define TORVEL_SAME(name, number) \
    static_assert(MFn::name == (number), "MFn::" #name);
TORVEL_FN_NUMBERS(TORVEL_SAME)
#undef TORVEL_SAME

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
#define TORVEL_NAME(name, number) \
    case MFn::name: return #name;
    switch (static_cast<MFn::Type>(apiType)) { TORVEL_FN_NUMBERS(TORVEL_NAME) }
#undef TORVEL_NAME
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
