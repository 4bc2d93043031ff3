#include <algorithm>

#include <maya/MDagPath.h>
#include <maya/MFnDagNode.h>
#include <maya/MTypeId.h>

#include "api/bridge.h"
#include "api/duplicate.h"

MAYA_API_NAMESPACE_OPEN

using namespace torvel::api;
using torvel::Node;
using torvel::NodeHandle;

namespace {

// What `fPath` holds: whether a path is attached, and which of the node's instances it takes.
enum PathPart { kAttached, kInstance };

const Node* dagNodeOf(const MObject& object) {
    return dagNode(MApiBridge::handle(object));
}

/// Whether `parent` may receive new nodes: the null object stands for the world.
bool isParent(const MObject& parent) {
    return MApiBridge::isBlank(parent) || dagNodeOf(parent);
}

bool contains(const std::vector<NodeHandle>& nodes, const MObject& wanted) {
    const NodeHandle handle = MApiBridge::handle(wanted);
    return !handle.isNull() && std::find(nodes.begin(), nodes.end(), handle) != nodes.end();
}

}  // namespace

MFnDagNode::MFnDagNode() : fPath{} {}

MFnDagNode::MFnDagNode(MObject& object, MStatus* ReturnStatus) : fPath{} {
    report(ReturnStatus, attach(object, MFn::kDagNode).statusCode());
}

MFnDagNode::MFnDagNode(const MObject& object, MStatus* ReturnStatus) : fPath{} {
    report(ReturnStatus, attach(object, MFn::kDagNode).statusCode());
}

MFnDagNode::MFnDagNode(const MDagPath& path, MStatus* ReturnStatus) : fPath{} {
    report(ReturnStatus, MFnDagNode::setObject(path).statusCode());
}

MFnDagNode::~MFnDagNode() = default;

MFn::Type MFnDagNode::type() const {
    return MFn::kDagNode;
}

MStatus MFnDagNode::setObject(MObject& object) {
    fPath[kAttached] = 0;
    return attach(object, type());
}

MStatus MFnDagNode::setObject(const MObject& object) {
    fPath[kAttached] = 0;
    return attach(object, type());
}

MStatus MFnDagNode::setObject(const MDagPath& path) {
    const MStatus status = attach(path.node(), type());
    fPath[kAttached] = status ? 1u : 0u;
    fPath[kInstance] = status ? static_cast<unsigned int>(MApiBridge::instance(path)) : 0u;
    return status;
}

MObject MFnDagNode::create(const MString& type, const MObject& parent, MStatus* ReturnStatus) {
    return create(type, MString(), parent, ReturnStatus);
}

MObject MFnDagNode::create(const MString& type, const MString& name, const MObject& parent,
                           MStatus* ReturnStatus) {
    const std::string typeText = MApiBridge::text(type);
    const torvel::NodeType* row = scene() ? scene()->types().find(typeText) : nullptr;
    NodeHandle made;
    const bool good =
        row && row->is(torvel::kDagType) && isParent(parent) &&
        createNode(typeText, MApiBridge::text(name), MApiBridge::handle(parent), made).isOk();
    MFnDagNode::setObject(MApiBridge::object(good ? made : NodeHandle()));
    return check(ReturnStatus, good) ? MApiBridge::object(made) : MObject();
}

// The host's types have names only.
MObject MFnDagNode::create(const MTypeId&, const MObject&, MStatus* ReturnStatus) {
    report(ReturnStatus, MStatus::kInvalidParameter);
    return MObject();
}

unsigned int MFnDagNode::parentCount(MStatus* ReturnStatus) const {
    const Node* node = dagNodeOf(fObject);
    return check(ReturnStatus, node) ? static_cast<unsigned int>(node->parents.size()) : 0;
}

MObject MFnDagNode::parent(unsigned int index, MStatus* ReturnStatus) const {
    const Node* node = dagNodeOf(fObject);
    const bool good = node && index < node->parents.size();
    return check(ReturnStatus, good) ? MApiBridge::object(node->parents[index]) : MObject();
}

bool MFnDagNode::hasParent(const MObject& node, MStatus* ReturnStatus) const {
    const Node* own = dagNodeOf(fObject);
    return check(ReturnStatus, own) && contains(own->parents, node);
}

unsigned int MFnDagNode::childCount(MStatus* ReturnStatus) const {
    const Node* node = dagNodeOf(fObject);
    return check(ReturnStatus, node) ? static_cast<unsigned int>(node->children.size()) : 0;
}

MObject MFnDagNode::child(unsigned int index, MStatus* ReturnStatus) const {
    const Node* node = dagNodeOf(fObject);
    const bool good = node && index < node->children.size();
    return check(ReturnStatus, good) ? MApiBridge::object(node->children[index]) : MObject();
}

bool MFnDagNode::hasChild(const MObject& node, MStatus* ReturnStatus) const {
    const Node* own = dagNodeOf(fObject);
    return check(ReturnStatus, own) && contains(own->children, node);
}

bool MFnDagNode::isParentOf(const MObject& node, MStatus* ReturnStatus) const {
    const Node* own = dagNodeOf(fObject);
    const Node* other = dagNodeOf(node);
    return check(ReturnStatus, own && other) && own != other &&
           scene()->isAncestor(own->self, other->self);
}

bool MFnDagNode::isChildOf(const MObject& node, MStatus* ReturnStatus) const {
    const Node* own = dagNodeOf(fObject);
    const Node* other = dagNodeOf(node);
    return check(ReturnStatus, own && other) && own != other &&
           scene()->isAncestor(other->self, own->self);
}

MStatus MFnDagNode::addChild(MObject& child, unsigned int index, bool keepExistingParents) {
    const Node* own = dagNodeOf(fObject);
    const Node* moved = dagNodeOf(child);
    if (!own || !moved)
        return MStatus::kInvalidParameter;
    // A place other than the last is not offered by the graph.
    if (index != kNextPos && index < own->children.size())
        return MStatus::kNotImplemented;
    return statusOf(keepExistingParents ? scene()->addParent(moved->self, own->self)
                                        : scene()->reparent(moved->self, own->self));
}

MStatus MFnDagNode::removeChild(MObject& child) {
    const Node* own = dagNodeOf(fObject);
    const Node* removed = dagNodeOf(child);
    if (!own || !removed || !contains(own->children, child))
        return MStatus::kInvalidParameter;
    return statusOf(removed->parents.size() > 1
                        ? scene()->removeParent(removed->self, own->self)
                        : scene()->reparent(removed->self, scene()->world()));
}

MObject MFnDagNode::duplicate(bool instance, bool instanceLeaf, MStatus* ReturnStatus) const {
    const Node* own = dagNodeOf(fObject);
    if (!check(ReturnStatus, own && own->self != scene()->world()))
        return MObject();
    if (!check(ReturnStatus, !instance && !instanceLeaf, MStatus::kNotImplemented))
        return MObject();
    NodeHandle copy;
    const bool good = duplicateSubtree(own->self, copy).isOk();
    return check(ReturnStatus, good, MStatus::kFailure) ? MApiBridge::object(copy) : MObject();
}

MString MFnDagNode::fullPathName(MStatus* ReturnStatus) const {
    MDagPath path;
    report(ReturnStatus, readPath(path).statusCode());
    return path.fullPathName();
}

MString MFnDagNode::partialPathName(MStatus* ReturnStatus) const {
    MDagPath path;
    report(ReturnStatus, readPath(path).statusCode());
    return path.partialPathName();
}

MStatus MFnDagNode::getPath(MDagPath& path) {
    return readPath(path);
}

MStatus MFnDagNode::readPath(MDagPath& path) const {
    const Node* node = dagNodeOf(fObject);
    path = node ? MApiBridge::path(node->self,
                                   fPath[kAttached] ? static_cast<int>(fPath[kInstance]) : 0)
                : MDagPath();
    return node ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

MDagPath MFnDagNode::dagPath(MStatus* ReturnStatus) const {
    MDagPath path;
    if (fPath[kAttached])
        readPath(path);
    check(ReturnStatus, path.isValid());
    return path;
}

bool MFnDagNode::isIntermediateObject(MStatus* ReturnStatus) const {
    const Node* node = dagNodeOf(fObject);
    return check(ReturnStatus, node) && isIntermediate(*node);
}

MAYA_API_NAMESPACE_CLOSE
