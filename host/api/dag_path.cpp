#include <maya/MDagPath.h>
#include <maya/MMatrix.h>

#include "api/bridge.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::Node;
using torvel::NodeHandle;

namespace {

/// The node of a path that still exists; null otherwise.
const Node* pathNode(const MDagPath& path) {
    const Node* node = dagNode(MApiBridge::handle(path));
    if (!node)
        return nullptr;
    const int instance = MApiBridge::instance(path);
    return instance == 0 || instance < scene()->instanceCount(node->self) ? node : nullptr;
}

std::vector<NodeHandle> nodesOf(const MDagPath& path) {
    return scene()->path(MApiBridge::handle(path), MApiBridge::instance(path));
}

/// The path of these nodes from below the world; none stand for the world itself.
MDagPath pathOf(const std::vector<NodeHandle>& nodes) {
    return nodes.empty() ? MApiBridge::path(scene()->world())
                         : MApiBridge::path(nodes.back(), scene()->instanceNumber(nodes));
}

std::vector<NodeHandle> shapesBelow(const Node& node, bool intermediateToo) {
    std::vector<NodeHandle> shapes;
    for (const NodeHandle child : node.children)
        if (const Node* below = dagNode(child); below && below->type->is(torvel::kShapeType))
            if (intermediateToo || !isIntermediate(*below))
                shapes.push_back(child);
    return shapes;
}

MMatrix matrixOf(const MDagPath& path, const char* attribute) {
    const NodeHandle handle = MApiBridge::handle(path);
    const torvel::Plug array = scene()->findPlug(handle, attribute);
    if (array.isNull())
        return MMatrix();
    return MMatrix(scene()->matrix(scene()->element(array, MApiBridge::instance(path))).x);
}

}  // namespace

MDagPath::MDagPath() : fIndex(0), fGeneration(0), fInstance(0), fState(0) {}

MStatus MDagPath::getAPathTo(const MObject& node, MDagPath& path) {
    const NodeHandle handle = MApiBridge::handle(node);
    const bool good = dagNode(handle) != nullptr;
    path = good ? MApiBridge::path(handle) : MDagPath();
    return good ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

MDagPath MDagPath::getAPathTo(const MObject& node, MStatus* ReturnStatus) {
    MDagPath path;
    const MStatus status = getAPathTo(node, path);
    report(ReturnStatus, status.statusCode());
    return path;
}

bool MDagPath::isValid(MStatus* ReturnStatus) const {
    report(ReturnStatus, MStatus::kSuccess);
    return pathNode(*this) != nullptr;
}

MObject MDagPath::node(MStatus* ReturnStatus) const {
    const Node* found = pathNode(*this);
    return check(ReturnStatus, found) ? MApiBridge::object(found->self) : MObject();
}

MObject MDagPath::transform(MStatus* ReturnStatus) const {
    if (!check(ReturnStatus, pathNode(*this)))
        return MObject();
    const std::vector<NodeHandle> nodes = nodesOf(*this);
    for (std::size_t i = nodes.size(); i-- > 0;)
        if (torvel::api::hasFn(nodes[i], MFn::kTransform))
            return MApiBridge::object(nodes[i]);
    report(ReturnStatus, MStatus::kFailure);
    return MObject();
}

unsigned int MDagPath::length(MStatus* ReturnStatus) const {
    return check(ReturnStatus, pathNode(*this)) ? static_cast<unsigned int>(nodesOf(*this).size())
                                                : 0;
}

MFn::Type MDagPath::apiType(MStatus* ReturnStatus) const {
    return node(ReturnStatus).apiType();
}

bool MDagPath::hasFn(MFn::Type type, MStatus* ReturnStatus) const {
    return node(ReturnStatus).hasFn(type);
}

MString MDagPath::fullPathName(MStatus* ReturnStatus) const {
    const Node* found = pathNode(*this);
    if (!check(ReturnStatus, found))
        return MString();
    return MApiBridge::text(scene()->names().fullPath(found->self, MApiBridge::instance(*this)));
}

MString MDagPath::partialPathName(MStatus* ReturnStatus) const {
    const Node* found = pathNode(*this);
    if (!check(ReturnStatus, found) || found->self == scene()->world())
        return MString();
    return MApiBridge::text(scene()->names().shortest(found->self));
}

unsigned int MDagPath::childCount(MStatus* ReturnStatus) const {
    const Node* found = pathNode(*this);
    return check(ReturnStatus, found) ? static_cast<unsigned int>(found->children.size()) : 0;
}

MObject MDagPath::child(unsigned int index, MStatus* ReturnStatus) const {
    const Node* found = pathNode(*this);
    const bool good = found && index < found->children.size();
    return check(ReturnStatus, good) ? MApiBridge::object(found->children[index]) : MObject();
}

MStatus MDagPath::pop(unsigned int num) {
    if (!pathNode(*this))
        return MStatus::kInvalidParameter;
    std::vector<NodeHandle> nodes = nodesOf(*this);
    if (num > nodes.size())
        return MStatus::kInvalidParameter;
    nodes.resize(nodes.size() - num);
    *this = pathOf(nodes);
    return MStatus::kSuccess;
}

MStatus MDagPath::push(const MObject& child) {
    const Node* found = pathNode(*this);
    const NodeHandle handle = MApiBridge::handle(child);
    if (!found || !dagNode(handle))
        return MStatus::kInvalidParameter;
    for (const NodeHandle below : found->children) {
        if (below != handle)
            continue;
        std::vector<NodeHandle> nodes = nodesOf(*this);
        nodes.push_back(handle);
        *this = pathOf(nodes);
        return MStatus::kSuccess;
    }
    return MStatus::kInvalidParameter;
}

MStatus MDagPath::extendToShape() {
    const Node* found = pathNode(*this);
    if (!found)
        return MStatus::kInvalidParameter;
    if (found->type->is(torvel::kShapeType))
        return MStatus::kSuccess;
    const std::vector<NodeHandle> shapes = shapesBelow(*found, false);
    return shapes.size() == 1 ? push(MApiBridge::object(shapes.front()))
                              : MStatus(MStatus::kFailure);
}

MStatus MDagPath::extendToShapeDirectlyBelow(unsigned int index) {
    const Node* found = pathNode(*this);
    if (!found)
        return MStatus::kInvalidParameter;
    const std::vector<NodeHandle> shapes = shapesBelow(*found, true);
    return index < shapes.size() ? push(MApiBridge::object(shapes[index]))
                                 : MStatus(MStatus::kInvalidParameter);
}

MStatus MDagPath::numberOfShapesDirectlyBelow(unsigned int& count) const {
    const Node* found = pathNode(*this);
    count = found ? static_cast<unsigned int>(shapesBelow(*found, true).size()) : 0;
    return found ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

MStatus MDagPath::set(const MDagPath& source) {
    *this = source;
    return pathNode(*this) ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

MMatrix MDagPath::inclusiveMatrix(MStatus* ReturnStatus) const {
    return check(ReturnStatus, pathNode(*this)) ? matrixOf(*this, "worldMatrix") : MMatrix();
}

MMatrix MDagPath::exclusiveMatrix(MStatus* ReturnStatus) const {
    return check(ReturnStatus, pathNode(*this)) ? matrixOf(*this, "parentMatrix") : MMatrix();
}

bool MDagPath::operator==(const MDagPath& other) const {
    const bool same = fIndex == other.fIndex && fGeneration == other.fGeneration &&
                      fInstance == other.fInstance && fState == other.fState;
    return same || (!isValid() && !other.isValid());
}

bool MDagPath::operator!=(const MDagPath& other) const {
    return !(*this == other);
}

MAYA_API_NAMESPACE_CLOSE
